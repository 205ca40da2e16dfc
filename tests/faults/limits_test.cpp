// Too little: no room in /tmp, no /tmp, limits on the size of files, and no terminals.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"
#include "end_to_end/stages.h"
#include "faults/surroundings.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace faults {
namespace {

namespace files = std::filesystem;

using namespace end_to_end;

void expect_unpack_failure(Scenario& scenario) {
    scenario.reach_last_screen();
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** FATAL ERROR **"));
    EXPECT_TRUE(line_reads(picture, 3, "Unable to extract installer data"));
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
    EXPECT_EQ(processes_left(scenario.account()), std::vector<std::string>{});
    EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
    EXPECT_TRUE(scenario.console().ends_with(info("Exiting") + "\n"));
}

void expect_installation(Scenario& scenario) {
    install_from_password_screen(scenario, user_password);
    expect_installed(scenario);
}

// The password screen where no lock file can come.
void reach_password_screen_without_lock(Scenario& scenario) {
    scenario.reach_main_window();
    scenario.wait_for("the password screen", [&] {
        const support::Picture picture = scenario.picture_of(scenario.main_window());
        return scenario.lines_shown(picture) == "0 2 3" && scenario.field_shown(picture);
    });
}

TEST(Tmp, ThatIsTooSmallIsReportedAndCleaned) {
    Scenario scenario;
    remount_tmp(0, "size=512k");
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    expect_unpack_failure(scenario);
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
}

TEST(Tmp, ThatFillsUpBeforeTheLockLetsTheRunGoOn) {
    Scenario scenario;
    remount_tmp(0, "size=256k");
    // Exactly full: the lock file can be made but not written.
    support::ChildProcess filler({.command = {"dd", "if=/dev/zero", "of=/tmp/filler", "bs=4096"}});
    ASSERT_TRUE(filler.wait_for_end());
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    expect_unpack_failure(scenario);
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
}

TEST(Tmp, ThatIsReadOnlyIsReported) {
    Scenario scenario;
    // Read-only for this world, whatever is open for writing there.
    ASSERT_EQ(mount("/tmp", "/tmp", nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(mount(nullptr, "/tmp", nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
    reach_password_screen_without_lock(scenario);
    scenario.give_password(user_password);
    expect_unpack_failure(scenario);
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
}

TEST(Tmp, ThatIsClosedToThePersonIsReported) {
    Scenario scenario;
    ASSERT_EQ(chmod("/tmp", 0700), 0);
    reach_password_screen_without_lock(scenario);
    scenario.give_password(user_password);
    expect_unpack_failure(scenario);
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
}

TEST(Tmp, ThatRunsNoProgramsServesAnInstallation) {
    Scenario scenario;
    remount_tmp(MS_NOEXEC | MS_NOSUID);
    scenario.reach_password_screen();
    expect_installation(scenario);
}

// A file system without /tmp: every other folder of the root, under a root of its own.
class RootWithoutTmp {
public:
    RootWithoutTmp() {
        const files::path root = "/run/root";
        files::create_directories(root);
        for (const auto& entry : files::directory_iterator("/")) {
            const files::path copy = root / entry.path().filename();
            if (entry.path() == "/tmp") {
                continue;
            }
            if (entry.is_symlink()) {
                files::copy_symlink(entry.path(), copy);
            } else if (entry.is_directory()) {
                files::create_directory(copy);
                EXPECT_EQ(
                    mount(entry.path().c_str(), copy.c_str(), nullptr, MS_BIND | MS_REC, nullptr),
                    0);
            }
        }
        EXPECT_EQ(chroot(root.c_str()), 0);
        EXPECT_EQ(chdir("/"), 0);
    }
    RootWithoutTmp(const RootWithoutTmp&) = delete;
    RootWithoutTmp& operator=(const RootWithoutTmp&) = delete;
};

// The world is left through its own way out, which takes the test back to the machine's root.
TEST(Tmp, ThatIsMissingIsReported) {
    Scenario scenario;
    const RootWithoutTmp root;
    ASSERT_FALSE(files::exists("/tmp"));
    reach_password_screen_without_lock(scenario);
    scenario.give_password(user_password);
    expect_unpack_failure(scenario);
    EXPECT_FALSE(files::exists("/tmp"));
}

TEST(FileSizeLimit, BelowTheArchiveIsReportedAndNothingStays) {
    Scenario scenario;
    start_through_shell(scenario, "ulimit -f 512");
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    expect_unpack_failure(scenario);
    EXPECT_EQ(installer_files_in_tmp(), std::vector<std::string>{});
}

std::string no_terminal_for(const std::string& tool) {
    return std::string("** ERROR ** ") + title + ": failed to fork pty for " + tool + "\n";
}

TEST(NoTerminal, ForTheSearchOfSudoLeadsToSu) {
    Scenario scenario;
    allow_terminals(0);
    scenario.reach_password_screen();
    EXPECT_TRUE(line_reads(scenario.picture_of(scenario.main_window()), 3,
                           "please enter the admin / root password"));
    EXPECT_TRUE(scenario.console().starts_with(std::string("\n- ") + title + " -\n\n" +
                                               no_terminal_for("sudo") +
                                               info("Using 'su' for authentication")))
        << scenario.console();
    scenario.give_password(root_password);
    scenario.reach_wrong_password_screen();
    EXPECT_NE(scenario.console().find(no_terminal_for("su")), std::string::npos)
        << scenario.console();
    scenario.installer().send_signal(SIGTERM);
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

// The check of the password takes the only one and keeps it.
TEST(NoTerminal, ForTheExtractionIsReportedAndTheArchiveIsRemoved) {
    Scenario scenario({.rights = Rights::only_su});
    allow_terminals(1);
    scenario.reach_password_screen();
    install_from_password_screen(scenario, root_password);
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** FATAL ERROR **"));
    EXPECT_TRUE(line_reads(picture, 3, "Failed to copy files"));
    EXPECT_EQ(scenario.lines_shown(picture), "0 2 3");
    EXPECT_FALSE(scenario.bar_shown(picture));
    EXPECT_FALSE(files::exists(archive_path));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
    EXPECT_EQ(scenario.console(),
              console_text("su", {info("Password OK"), info("Unpacking Files - 001027C4 Bytes"),
                                  info("Installing to - " + scenario.account().home),
                                  info("Copying Files"), no_terminal_for("su")}));
}

} // namespace
} // namespace faults
