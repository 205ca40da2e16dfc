// failed_upgrade_test.cpp: an upgrade that cannot be done leaves the version that is there, and the
// person is told why.
#include "end_to_end/scenario.h"
#include "faults/surroundings.h"
#include "support/worlds/small_disk.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;

namespace {

constexpr const char* folder = "/usr/local/lib/lv2";
constexpr const char* bundle = "/usr/local/lib/lv2/lantern-tilt.lv2";

class FailedUpgrade : public testing::TestWithParam<Rights> {
protected:
    FailedUpgrade()
        : scenario_({.rights = GetParam(),
                     .browser_title = "- Select your LV2 plug-in folder -",
                     .keep_visible = {ZEPH_SOURCE}}) {
        fs::create_directories(folder);
    }

    // An earlier version, on a disk of so many bytes.
    void install_old_version(const std::string& size) {
        ASSERT_EQ(mount("tmpfs", folder, "tmpfs", 0, ("size=" + size).c_str()), 0);
        support::write_file(std::string(bundle) + "/lantern-tilt.so", "old library");
        support::write_file(std::string(bundle) + "/dropped.ttl", "old");
        support::write_file(std::string(bundle) + "/my preset.ttl", "mine");
        before_ = tree();
    }

    static std::string tree() {
        return support::output_of({"sh", "-c",
                                   "cd /usr/local/lib/lv2 && { find . -mindepth 1 -printf "
                                   "'%y %m %U %p\\n'; find . -type f -exec sha256sum {} +; } | "
                                   "sort"});
    }

    void reach_browser() {
        scenario_.reach_password_screen();
        scenario_.give_password(GetParam() == Rights::sudo ? end_to_end::user_password
                                                           : end_to_end::root_password);
        scenario_.reach_folder_browser();
    }

    bool tells_of(const std::string& text) {
        return scenario_.console().find("Lantern Set 1.0 Installer: " + text) != std::string::npos;
    }

    void expect_told(const std::string& text) {
        scenario_.reach_last_screen();
        EXPECT_TRUE(tells_of(text + "\n")) << scenario_.console();
        EXPECT_FALSE(tells_of("Installation Complete"));
        EXPECT_EQ(scenario_.lines_shown(scenario_.picture_of(scenario_.main_window())), "0 2 3 5");
        support::save_png(scenario_.picture_of(scenario_.main_window()),
                          ZEPH_PICTURES "/failed-upgrade.png");
        scenario_.press_ok();
        EXPECT_EQ(scenario_.finish().exit_status, 0);
        expect_nothing_left_in_tmp();
    }

    static void expect_nothing_left_in_tmp() {
        for (const fs::directory_entry& entry : fs::directory_iterator("/tmp")) {
            EXPECT_EQ(entry.path().string().find("zeph-installer"), std::string::npos)
                << entry.path();
        }
    }

    void expect_old_version() const { EXPECT_EQ(tree(), before_); }

    Scenario scenario_;

private:
    std::string before_;
};

INSTANTIATE_TEST_SUITE_P(With, FailedUpgrade, testing::Values(Rights::sudo, Rights::only_su),
                         [](const auto& rights) {
                             return rights.param == Rights::sudo ? "sudo" : "su";
                         });

} // namespace

TEST_P(FailedUpgrade, ForWantOfRoomIsFoundOutBeforeTheWork) {
    install_old_version("24k");
    const auto last_change = fs::last_write_time(folder);
    reach_browser();
    scenario_.accept_folder();
    expect_told("Failed to copy files - There is no room left on the disk");
    expect_old_version();
    EXPECT_EQ(fs::last_write_time(folder), last_change); // nothing has been tried
}

// There is room for the bytes, not for the files.
TEST_P(FailedUpgrade, OnADiskThatFillsUpLeavesTheOldVersion) {
    install_old_version("1m,nr_inodes=9");
    reach_browser();
    scenario_.accept_folder();
    expect_told("Failed to copy files - There is no room left on the disk");
    expect_old_version();
}

TEST_P(FailedUpgrade, InAReadOnlyFolderLeavesTheOldVersion) {
    install_old_version("1m");
    ASSERT_EQ(mount(nullptr, folder, nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    reach_browser();
    scenario_.accept_folder();
    expect_told("Failed to copy files - The folder is read-only");
    expect_old_version();
}

TEST_P(FailedUpgrade, ThatIsNotAllowedAnyMoreLeavesTheOldVersion) {
    install_old_version("1m");
    reach_browser();
    const bool sudo = GetParam() == Rights::sudo;
    (void)support::output_of(
        {"sh", "-c",
         "echo '" + (sudo ? scenario_.account().name : "root") + ":another' | chpasswd"});
    scenario_.accept_folder();
    expect_told(std::string("Failed to copy files - ") + (sudo ? "sudo" : "su") +
                " does not allow it");
    expect_old_version();
}

TEST_P(FailedUpgrade, ThatIsCancelledWhileItCopiesLeavesTheOldVersion) {
    install_old_version("1m");
    reach_browser();
    scenario_.accept_folder();
    scenario_.wait_for("the new files beside",
                       [] { return fs::exists(std::string(folder) + "/.lantern-set-new"); });
    scenario_.installer().send_signal(SIGTERM);
    EXPECT_EQ(scenario_.finish().exit_status, 0);
    EXPECT_FALSE(tells_of("Failed to copy files")) << scenario_.console();
    expect_old_version();
    expect_nothing_left_in_tmp();
}

TEST_P(FailedUpgrade, WithoutRoomInTmpIsFoundOutBeforeTheWork) {
    install_old_version("1m");
    scenario_.reach_password_screen();
    Scenario::leave_room_in_tmp(0);
    scenario_.give_password(GetParam() == Rights::sudo ? end_to_end::user_password
                                                       : end_to_end::root_password);
    expect_told("Unable to extract installer data - There is no room left in /tmp");
    EXPECT_FALSE(tells_of("Unpacking Files"));
    expect_old_version();
}

TEST_P(FailedUpgrade, WithoutRoomForAFileInTmpIsTold) {
    install_old_version("1m");
    scenario_.reach_password_screen();
    const support::SmallDisk disk("/tmp");
    disk.leave_room_for_files(0);
    scenario_.give_password(GetParam() == Rights::sudo ? end_to_end::user_password
                                                       : end_to_end::root_password);
    expect_told("Unable to extract installer data - There is no room left in /tmp");
    expect_old_version();
}

TEST_P(FailedUpgrade, IsFollowedByOneThatSucceeds) {
    install_old_version("1m");
    // What a loss of power has left.
    support::write_file(std::string(folder) + "/.lantern-set-new/lantern-tilt.lv2/half", "half");
    reach_browser();
    scenario_.accept_folder();
    scenario_.reach_last_screen();
    EXPECT_TRUE(tells_of("Installation Complete")) << scenario_.console();
    EXPECT_EQ(scenario_.lines_shown(scenario_.picture_of(scenario_.main_window())), "0 2");
    EXPECT_EQ(faults::text_of(std::string(bundle) + "/my preset.ttl"), "mine");
    EXPECT_EQ(support::output_of({"sh", "-c",
                                  "cd " ZEPH_SOURCE "/products/lantern-tilt && "
                                  "diff -r lantern-tilt.lv2 /usr/local/lib/lv2/lantern-tilt.lv2 | "
                                  "sort"}),
              "Only in /usr/local/lib/lv2/lantern-tilt.lv2: dropped.ttl\n"
              "Only in /usr/local/lib/lv2/lantern-tilt.lv2: my preset.ttl\n");
    scenario_.press_ok();
    EXPECT_EQ(scenario_.finish().exit_status, 0);
}
