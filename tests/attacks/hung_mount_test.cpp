// A mount that never answers, among what is listed, behind a link, as the folder that is entered,
// or as the person's home: whatever waits for it, the person gets away at once.

#include "attacks/hung_mount.h"
#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"
#include "faults/memory_scan.h"
#include "faults/surroundings.h"

#include <csignal>
#include <filesystem>

namespace {

using namespace end_to_end;

using faults::at_once;

// What is still to be done first takes a second or two: see below.
constexpr std::chrono::milliseconds after_copying{8'000};

// A leak checker stops all threads at the end, and waits for ever for one that waits for a mount.
ScenarioOptions without_leak_checker() {
    ScenarioOptions options;
    options.environment.emplace_back("LSAN_OPTIONS=detect_leaks=0");
    return options;
}

void expect_end_within(Scenario& scenario, std::chrono::milliseconds time) {
    const auto end = scenario.installer().wait_for_end(time);
    ASSERT_TRUE(end) << scenario.report();
    EXPECT_TRUE(ended_clean(*end));
    EXPECT_TRUE(scenario.console().ends_with(info("Exiting") + "\n")) << scenario.console();
}

// A press soon after the one on CANCEL is the second of a double click, which OK does not hear.
void leave_last_screen(Scenario& scenario) {
    scenario.reach_last_screen();
    EXPECT_TRUE(support::wait_until([&] {
        scenario.press_ok();
        return scenario.installer().wait_for_end(std::chrono::milliseconds{600}).has_value();
    }));
    expect_end_within(scenario, at_once);
}

void reach_browser_window(Scenario& scenario) {
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    (void)scenario.view().wait_for_title(browser_title, std::chrono::milliseconds{30'000});
}

TEST(HungMount, AmongTheEntriesDisturbsNobody) {
    Scenario scenario(without_leak_checker());
    const HungMount mount(scenario.account().home + "/mount");
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.accept_folder();
    scenario.reach_last_screen();
    EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

class HungListing : public testing::Test {
protected:
    HungListing() {
        std::filesystem::create_symlink(mount_.folder() + "/folder",
                                        scenario_.account().home + "/link");
        reach_browser_window(scenario_);
        browser_ = scenario_.view().wait_for_title(browser_title);
    }

    Scenario scenario_{without_leak_checker()};
    HungMount mount_{"/run/hung"};
    support::XWindow browser_ = 0;
};

TEST_F(HungListing, IsLeftByCancel) {
    scenario_.click(browser_, 96 + 32, 368 + 8);
    EXPECT_TRUE(scenario_.view().wait_until_gone(browser_));
    leave_last_screen(scenario_);
    EXPECT_NE(scenario_.console().find(info("Install cancelled by user.")), std::string::npos);
}

TEST_F(HungListing, IsLeftByClosing) {
    scenario_.view().ask_to_close(browser_);
    leave_last_screen(scenario_);
}

TEST_F(HungListing, CanBeTheFolderToInstallInto) {
    scenario_.click(browser_, 16 + 32, 368 + 8);
    scenario_.reach_last_screen();
    EXPECT_EQ(plugin_in(scenario_.account().home), plugin_of_archive());
    scenario_.press_ok();
    expect_end_within(scenario_, at_once);
}

// A signal at this screen installs into the default folder first.
TEST_F(HungListing, IsLeftByASignal) {
    scenario_.installer().send_signal(SIGTERM);
    expect_end_within(scenario_, after_copying);
}

class HungFolder : public testing::Test {
protected:
    HungFolder() {
        scenario_.reach_password_screen();
        scenario_.give_password(user_password);
        scenario_.reach_folder_browser();
        // Rows: the folder itself, the one above, the mount.
        scenario_.click(scenario_.browser_window(), 40, 82 + 2 * 16 + 10);
    }

    Scenario scenario_{without_leak_checker()};
    HungMount mount_{scenario_.account().home + "/0mount"};
};

TEST_F(HungFolder, IsLeftByCancel) {
    scenario_.cancel_folder();
    EXPECT_TRUE(scenario_.view().wait_until_gone(scenario_.browser_window()));
    leave_last_screen(scenario_);
}

TEST_F(HungFolder, IsLeftByClosing) {
    scenario_.view().ask_to_close(scenario_.browser_window());
    leave_last_screen(scenario_);
}

TEST_F(HungFolder, IsNotWhereOkInstalls) {
    scenario_.accept_folder();
    EXPECT_TRUE(
        support::holds_for([&] { return scenario_.view().viewable(scenario_.browser_window()); },
                           std::chrono::milliseconds{700}));
    EXPECT_EQ(scenario_.console().find("Installing to"), std::string::npos);
    scenario_.installer().send_signal(SIGINT);
    expect_end_within(scenario_, after_copying);
}

// The home is asked first for what opens the screen, and then to be where the browser begins.
class HungHome : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(For, HungHome,
                         testing::Values("", "XAUTHORITY=/dev/null XCOMPOSEFILE=/dev/null"),
                         [](const auto& variable) {
                             return *variable.param == '\0' ? "TheScreen" : "TheBrowser";
                         });

TEST_P(HungHome, IsLeftByASignal) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        Scenario scenario(without_leak_checker());
        const HungMount mount("/run/hung");
        faults::start_through_shell(scenario, std::string("export HOME=/run/hung ") + GetParam());
        if (*GetParam() == '\0') {
            scenario.start();
            scenario.wait_for("the start", [&] {
                return scenario.console().find("for authentication") != std::string::npos;
            });
        } else {
            scenario.reach_splash();
            scenario.click(scenario.splash_window(), 300, 200);
            EXPECT_TRUE(scenario.view().wait_until_gone(scenario.splash_window()));
        }
        EXPECT_TRUE(support::holds_for([&] { return scenario.installer().running(); },
                                       std::chrono::milliseconds{500}));
        scenario.installer().send_signal(signal);
        expect_end_within(scenario, at_once);
        EXPECT_NE(scenario.console().find("Caught SIG"), std::string::npos);
    }
}

} // namespace
