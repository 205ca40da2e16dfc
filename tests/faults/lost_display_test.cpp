// The display goes away: the server dies, or only the connection, at every screen.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"
#include "faults/surroundings.h"

#include <xcb/xcb.h>

#include <filesystem>

namespace faults {
namespace {

using namespace end_to_end;

std::string lost_line() {
    return std::string("** ERROR ** ") + title + ": Lost connection to X server\n";
}

int times_said(const std::string& console, const std::string& line) {
    int count = 0;
    for (auto at = console.find(line); at != std::string::npos; at = console.find(line, at + 1)) {
        ++count;
    }
    return count;
}

void expect_said_why(Scenario& scenario) {
    EXPECT_EQ(times_said(scenario.console(), lost_line()), 1) << scenario.console();
    EXPECT_TRUE(scenario.console().ends_with("\n" + info("Exiting") + "\n"));
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
}

class LostServer : public testing::TestWithParam<Stage> {};

INSTANTIATE_TEST_SUITE_P(At, LostServer,
                         testing::Values(Stage::password, Stage::wrong_password, Stage::unpacking,
                                         Stage::browser, Stage::copying, Stage::removing,
                                         Stage::complete),
                         [](const auto& stage) { return stage_name(stage.param); });

TEST_P(LostServer, EndsTheRunAndLeavesNothing) {
    Scenario scenario;
    reach(scenario, GetParam());
    scenario.lose_screen();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    expect_said_why(scenario);
    EXPECT_EQ(plugin_in(default_folder), std::nullopt) << "nobody has chosen this folder";
    if (GetParam() <= Stage::browser) {
        EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
    } else if (GetParam() >= Stage::removing) {
        EXPECT_EQ(plugin_in(scenario.account().home), plugin_of_archive());
    }
}

TEST(LostServerAt, TheSplash) {
    Scenario scenario;
    scenario.reach_splash();
    scenario.lose_screen();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    expect_said_why(scenario);
}

TEST(LostServerAt, TheAnotherInstanceScreen) {
    Scenario scenario;
    support::write_file(lock_path, "somebody's");
    scenario.reach_main_window();
    scenario.reach_last_screen();
    scenario.lose_screen();
    EXPECT_EQ(scenario.finish().exit_status, 0);
    expect_said_why(scenario);
    EXPECT_EQ(text_of(lock_path), "somebody's");
}

TEST(LostServerAt, TheScreenThatNamesNoWayToBecomeRoot) {
    Scenario scenario({.rights = Rights::none});
    scenario.reach_main_window();
    scenario.lose_screen();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    expect_said_why(scenario);
}

TEST(LostServerAt, ThePasswordCheck) {
    Scenario scenario;
    support::install_program("/usr/bin/sudo.real", "/usr/bin/sudo", 04755);
    support::install_script("/usr/bin/sudo",
                            "#!/bin/bash\n"
                            "case \"$*\" in *-S*) touch /tmp/at-work; sleep 2;; esac\n"
                            "exec /usr/bin/sudo.real \"$@\"\n");
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.wait_for("sudo", [] { return std::filesystem::exists("/tmp/at-work"); });
    scenario.lose_screen();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    expect_said_why(scenario);
}

class LostConnection : public testing::TestWithParam<Stage> {};

INSTANTIATE_TEST_SUITE_P(At, LostConnection,
                         testing::Values(Stage::password, Stage::unpacking, Stage::browser,
                                         Stage::copying, Stage::complete),
                         [](const auto& stage) { return stage_name(stage.param); });

// The server lives and goes on with other programs, as after a network failure.
TEST_P(LostConnection, EndsTheRunAndLeavesNothing) {
    Scenario scenario;
    reach(scenario, GetParam());
    xcb_kill_client(scenario.view().connection(), scenario.main_window());
    xcb_flush(scenario.view().connection());
    EXPECT_TRUE(ended_clean(scenario.finish()));
    expect_said_why(scenario);
    EXPECT_EQ(plugin_in(default_folder), std::nullopt);
}

} // namespace
} // namespace faults
