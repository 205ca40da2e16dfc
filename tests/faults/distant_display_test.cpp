// A screen at the end of a long line: everything comes late, or the line breaks while drawing.

#include "end_to_end/expectations.h"
#include "faults/surroundings.h"
#include "support/wait_until.h"

namespace faults {
namespace {

using namespace end_to_end;

class DistantScreen : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Late, DistantScreen, testing::Values(20, 150), [](const auto& delay) {
    return "By" + std::to_string(delay.param) + "ms";
});

TEST_P(DistantScreen, ServesAnInstallation) {
    Scenario scenario({.line = {.delay = std::chrono::milliseconds{GetParam()}}});
    scenario.reach_password_screen();
    scenario.give_password("not it");
    scenario.reach_wrong_password_screen();
    install_from_password_screen(scenario, user_password);
    expect_installed(scenario);
    EXPECT_GT(scenario.line().bytes_sent(), 0U);
}

struct Break {
    const char* name;
    std::size_t after; // bytes of requests; a splash or a main window is about a million
};

constexpr Break breaks[] = {
    {"InTheGreeting", 8},
    {"InTheFirstQuestion", 20},
    {"WhileItIsBeingOpened", 60},
    {"SoonAfter", 200},
    {"AtTheFirstWindow", 3'000},
    {"InTheSplash", 400'000},
    {"NearTheEndOfTheSplash", 950'000},
    {"InTheWindow", 1'500'000},
    {"NearTheEndOfTheWindow", 1'900'000},
};

constexpr std::size_t after_opening = 1'000;

class BrokenLine : public testing::TestWithParam<Break> {};

INSTANTIATE_TEST_SUITE_P(At, BrokenLine, testing::ValuesIn(breaks),
                         [](const auto& line) { return line.param.name; });

TEST_P(BrokenLine, WhileDrawingEndsTheRunAndLeavesNothing) {
    std::vector<std::string> environment = {"LC_ALL=C", "ORXDPI=96"};
    if (GetParam().after < after_opening) {
        environment.emplace_back(
            "LSAN_OPTIONS=detect_leaks=0"); // Xlib cannot free what it has made
    }
    Scenario scenario({.environment = environment, .line = {.cut_after = GetParam().after}});
    scenario.start();
    // An impatient person who clicks splash and window while they are drawn.
    const support::Place root = scenario.view().root_place();
    const bool ended = support::wait_until(
        [&] {
            scenario.person().click_at(root.width / 2, root.height / 2 - 50);
            return !scenario.installer().running();
        },
        std::chrono::milliseconds{60'000}, [&] { return scenario.report(); });
    ASSERT_TRUE(ended);
    EXPECT_TRUE(scenario.line().cut());
    EXPECT_EQ(scenario.line().bytes_sent(), GetParam().after);
    EXPECT_TRUE(ended_clean(scenario.finish()));
    const std::string console = scenario.console();
    // That the server is out of reach or lost, or that it gave no window.
    EXPECT_NE(console.find("** ERROR ** " + std::string(title)), std::string::npos) << console;
    EXPECT_TRUE(console.ends_with("\n" + info("Exiting") + "\n")) << console;
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

} // namespace
} // namespace faults
