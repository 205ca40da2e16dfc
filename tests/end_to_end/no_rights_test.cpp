// Runs that cannot install: no way to become root, already root, no screen, a closed or full /tmp.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

namespace end_to_end {
namespace {

TEST(NoRights, AreReportedForTenSeconds) {
    Scenario scenario({.rights = Rights::none});
    scenario.reach_main_window();
    const auto shown = std::chrono::steady_clock::now();
    scenario.wait_for("the error screen", [&] {
        return scenario.lines_shown(scenario.picture_of(scenario.main_window())) == "0 2 3 4 5 7";
    });
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** ERROR **"));
    EXPECT_TRUE(line_reads(picture, 3, "Unable to find a working authentication method"));
    EXPECT_TRUE(line_reads(picture, 4, "on this system.  A working sudo configuration"));
    EXPECT_TRUE(line_reads(picture, 5, "or a root / admin user account is required"));
    EXPECT_TRUE(line_reads(picture, 7, "The installation could not complete"));
    EXPECT_TRUE(ended_clean(scenario.finish()));
    const auto time = std::chrono::steady_clock::now() - shown;
    EXPECT_GT(time, std::chrono::milliseconds{8000});
    EXPECT_LT(time, std::chrono::milliseconds{25'000});
    EXPECT_EQ(scenario.console(), console_text("", {}));
}

TEST(AsRoot, NothingHappensButAMessage) {
    Scenario scenario;
    support::write_file(lock_path, "somebody's");
    support::ChildProcess installer(
        {.command = {scenario.program_path()},
         .environment = std::vector<std::string>{"DISPLAY=" + scenario.display_name(), "HOME=/root",
                                                 "PATH=/usr/bin:/bin"}});
    const auto end = installer.wait_for_end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->exit_status, 255);
    EXPECT_EQ(installer.output(), std::string("\n- ") + title +
                                      " -\n\n"
                                      "You appear to be running the installer as root.\n"
                                      "Restart the installer as a normal user and you\n"
                                      "will be prompted for your password when required.\n\n");
    EXPECT_TRUE(std::filesystem::exists(lock_path));
    EXPECT_EQ(std::filesystem::file_size(lock_path), 10U);
}

TEST(AsRoot, NoLockIsWritten) {
    Scenario scenario;
    support::ChildProcess installer({.command = {scenario.program_path()}});
    ASSERT_TRUE(installer.wait_for_end());
    EXPECT_FALSE(std::filesystem::exists(lock_path));
}

TEST(NoDisplay, IsReportedAndTheRunEnds) {
    Scenario scenario;
    for (const char* display : {"DISPLAY=:987", "DISPLAY="}) {
        support::ChildProcess installer(support::run_as(
            scenario.account(), {scenario.program_path()}, {display, "LC_ALL=C", "ORXDPI=96"}));
        const auto end = installer.wait_for_end();
        ASSERT_TRUE(end);
        EXPECT_TRUE(ended_clean(*end));
        EXPECT_EQ(installer.output(), std::string("\n- ") + title + " -\n\n" +
                                          info("Using 'sudo' for authentication") + "** ERROR ** " +
                                          title + ": Unable to connect to X server\n\n" +
                                          info("Exiting") + "\n");
    }
}

TEST(NoDisplay, AServerThatGoesAwayEndsTheRunCleanly) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.lose_screen();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_NE(scenario.console().find(info("Exiting")), std::string::npos);
}

TEST(ClosedTmp, LetsNoLockBeWrittenAndReportsThatNothingCanBeUnpacked) {
    Scenario scenario;
    ASSERT_EQ(chmod("/tmp", 0755), 0);
    scenario.reach_main_window();
    scenario.wait_for("the password screen", [&] {
        const support::Picture picture = scenario.picture_of(scenario.main_window());
        return scenario.lines_shown(picture) == "0 2 3" && scenario.field_shown(picture);
    });
    scenario.give_password(user_password);
    scenario.reach_last_screen();
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** FATAL ERROR **"));
    EXPECT_TRUE(line_reads(picture, 3, "Unable to extract installer data"));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

TEST(FullTmp, IsReportedAndThePartIsRemoved) {
    Scenario scenario;
    scenario.reach_password_screen();
    // What is left of /tmp is less than the archive.
    scenario.leave_room_in_tmp(256UL * 1024);
    scenario.give_password(user_password);
    scenario.reach_last_screen();
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** FATAL ERROR **"));
    EXPECT_TRUE(line_reads(picture, 3, "Unable to extract installer data"));
    EXPECT_FALSE(std::filesystem::exists(archive_path));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

} // namespace
} // namespace end_to_end
