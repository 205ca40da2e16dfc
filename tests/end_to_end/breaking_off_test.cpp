// Breaking off at every screen: by closing the main window, by Control-C, by a request to end.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"

#include <csignal>
#include <tuple>

namespace end_to_end {
namespace {

enum class Ending { close, interrupt, terminate };

void break_off(Scenario& scenario, Ending ending) {
    switch (ending) {
    case Ending::close:
        scenario.view().ask_to_close(scenario.main_window());
        break;
    case Ending::interrupt:
        scenario.installer().send_signal(SIGINT);
        break;
    case Ending::terminate:
        scenario.installer().send_signal(SIGTERM);
        break;
    }
}

std::vector<std::string> lines_of(Ending ending) {
    switch (ending) {
    case Ending::interrupt:
        return {info("Caught SIGINT")};
    case Ending::terminate:
        return {info("Caught SIGTERM")};
    default:
        return {};
    }
}

const char* ending_name(Ending ending) {
    return ending == Ending::close ? "Close" : ending == Ending::interrupt ? "Sigint" : "Sigterm";
}

std::ostream& operator<<(std::ostream& stream, Ending ending) {
    return stream << ending_name(ending);
}

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

class BreakingOff : public testing::TestWithParam<std::tuple<Ending, Stage>> {};

INSTANTIATE_TEST_SUITE_P(
    AtEveryScreen, BreakingOff,
    testing::Combine(testing::Values(Ending::close, Ending::interrupt, Ending::terminate),
                     testing::Values(Stage::password, Stage::wrong_password, Stage::unpacking,
                                     Stage::browser, Stage::copying, Stage::removing,
                                     Stage::complete)),
    [](const auto& parameters) {
        return std::string(ending_name(std::get<0>(parameters.param))) + "At" +
               stage_name(std::get<1>(parameters.param));
    });

TEST_P(BreakingOff, UnwindsAndLeavesNothingInTmp) {
    const auto [ending, stage] = GetParam();
    Scenario scenario;
    reach(scenario, stage);
    std::vector<std::string> expected = lines_before(scenario, stage);
    break_off(scenario, ending);
    EXPECT_TRUE(ended_clean(scenario.finish()));

    append(expected, lines_of(ending));
    if (stage == Stage::browser) {
        // Nobody chose a folder, so the files go where they go by default, and no last screen
        // comes.
        append(expected, {info("Copying Files")});
        EXPECT_EQ(plugin_in(default_folder), plugin_of_archive());
    }
    EXPECT_EQ(scenario.console(), console_text("sudo", expected));
    if (stage < Stage::browser) {
        EXPECT_EQ(plugin_in(default_folder), std::nullopt);
        EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
    }
    if (stage >= Stage::removing) {
        EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
    }
}

TEST(Splash, GoesByItselfAfterSixSeconds) {
    Scenario scenario;
    scenario.reach_splash();
    const auto shown = std::chrono::steady_clock::now();
    EXPECT_NE(scenario.view().wait_for_class("zeph-installer"), 0U);
    const auto time = std::chrono::steady_clock::now() - shown;
    // Six thousand sleeps of a millisecond, each a little longer; seen just after it appeared.
    EXPECT_GT(time, std::chrono::milliseconds{5000});
    EXPECT_LT(time, std::chrono::milliseconds{16'000});
    EXPECT_FALSE(scenario.view().exists(scenario.splash_window()));
}

class SplashClick : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Of, SplashClick,
                         testing::Values(support::left_button, support::right_button),
                         [](const auto& button) {
                             return button.param == support::left_button ? "LeftButton"
                                                                         : "RightButton";
                         });

TEST_P(SplashClick, EndsItAtOnce) {
    Scenario scenario;
    scenario.reach_splash();
    scenario.click(scenario.splash_window(), 300, 200, GetParam());
    const auto clicked = std::chrono::steady_clock::now();
    EXPECT_TRUE(scenario.view().wait_until_gone(scenario.splash_window()));
    // By itself it would have stayed for six seconds.
    EXPECT_LT(std::chrono::steady_clock::now() - clicked, std::chrono::milliseconds{3000});
    EXPECT_NE(scenario.view().wait_for_class("zeph-installer"), 0U);
}

TEST(Splash, ThatIsClosedEarlyDoesNotHurryTheMainWindow) {
    Scenario scenario;
    scenario.reach_splash();
    const auto shown = std::chrono::steady_clock::now();
    scenario.view().ask_to_close(scenario.splash_window());
    EXPECT_TRUE(scenario.view().wait_until_gone(scenario.splash_window()));
    EXPECT_NE(scenario.view().wait_for_class("zeph-installer"), 0U);
    EXPECT_GT(std::chrono::steady_clock::now() - shown, std::chrono::milliseconds{5000});
}

class SignalAtSplash : public testing::TestWithParam<Ending> {};

INSTANTIATE_TEST_SUITE_P(Signals, SignalAtSplash,
                         testing::Values(Ending::interrupt, Ending::terminate),
                         [](const auto& ending) { return ending_name(ending.param); });

TEST_P(SignalAtSplash, EndsTheRun) {
    Scenario scenario;
    scenario.reach_splash();
    break_off(scenario, GetParam());
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(scenario.console(), console_text("sudo", lines_of(GetParam())));
}

class BreakingOffWithoutRights : public testing::TestWithParam<Ending> {};

INSTANTIATE_TEST_SUITE_P(Endings, BreakingOffWithoutRights,
                         testing::Values(Ending::close, Ending::interrupt, Ending::terminate),
                         [](const auto& ending) { return ending_name(ending.param); });

TEST_P(BreakingOffWithoutRights, EndsTheErrorScreenAtOnce) {
    Scenario scenario({.rights = Rights::none});
    scenario.reach_main_window();
    const auto asked = std::chrono::steady_clock::now();
    break_off(scenario, GetParam());
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds{8000});
    EXPECT_EQ(scenario.console(), console_text("", lines_of(GetParam())));
}

} // namespace
} // namespace end_to_end
