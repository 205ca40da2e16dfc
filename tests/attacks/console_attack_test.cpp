// The console: one that nobody reads, and names that somebody has made up for it.

#include "attacks/unread_console.h"
#include "end_to_end/expectations.h"
#include "faults/surroundings.h"

#include <csignal>
#include <filesystem>

namespace {

using namespace end_to_end;

void expect_end_at_once(Scenario& scenario) {
    const auto end = scenario.installer().wait_for_end(faults::at_once);
    ASSERT_TRUE(end);
    EXPECT_TRUE(ended_clean(*end));
}

class SignalWithFullConsole : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signals, SignalWithFullConsole, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_P(SignalWithFullConsole, EndsTheRun) {
    Scenario scenario;
    const UnreadConsole console(scenario);
    scenario.reach_password_screen();
    console.fill();
    scenario.installer().send_signal(GetParam());
    expect_end_at_once(scenario);
}

TEST(ClosingWithFullConsole, EndsTheRun) {
    Scenario scenario;
    const UnreadConsole console(scenario);
    scenario.reach_password_screen();
    console.fill();
    scenario.view().ask_to_close(scenario.main_window());
    expect_end_at_once(scenario);
}

TEST(LostDisplayWithFullConsole, EndsTheRun) {
    Scenario scenario;
    const UnreadConsole console(scenario);
    scenario.reach_password_screen();
    console.fill();
    scenario.lose_screen();
    expect_end_at_once(scenario);
}

TEST(FolderName, WritesNothingButItselfOnTheConsole) {
    Scenario scenario;
    const std::string folder =
        scenario.account().home + "/0\x1b]0;title\x07\n** INFO **\x7f\xc2\x9b";
    std::filesystem::create_directory(folder);
    support::give_to(scenario.account(), folder);
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.enter_folder_row(2);
    scenario.accept_folder();
    scenario.reach_copying();
    EXPECT_NE(scenario.console().find(info("Installing to - " + scenario.account().home +
                                           "/0\\x1B]0;title\\x07\\x0A** INFO **\\x7F\\x9B")),
              std::string::npos)
        << scenario.console();
    EXPECT_EQ(scenario.console().find('\x1b'), std::string::npos);
    scenario.reach_last_screen();
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
}

} // namespace
