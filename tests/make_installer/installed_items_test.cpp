// installed_items_test.cpp: what is installed along with the plug-in, all of it or nothing.
#include "faults/surroundings.h"
#include "make_installer/lantern_set.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;
using lantern_set::folder;
using support::output_of;

namespace {

constexpr const char* manual_folder = "/usr/local/share/doc/lantern-set";
constexpr const char* manual = "/usr/local/share/doc/lantern-set/lantern-tilt.html";

class InstalledItems : public testing::TestWithParam<Rights> {
protected:
    InstalledItems() : scenario_(lantern_set::options(GetParam())) {
        fs::create_directories(folder);
        fs::remove_all("/usr/local/share/doc");
    }

    static std::string tree() {
        return output_of(
            {"sh", "-c", "cd /usr/local && find . -printf '%y %m %U %p %l\\n' | sort"});
    }

    void choose_offered_folder() {
        before_ = tree();
        lantern_set::choose_offered_folder(scenario_, GetParam());
    }

    bool tells_of(const std::string& text) {
        return scenario_.console().find("Lantern Set 1.0 Installer: " + text + "\n") !=
               std::string::npos;
    }

    void expect_refused(const std::string& reason) {
        choose_offered_folder();
        scenario_.reach_last_screen();
        EXPECT_TRUE(tells_of("Failed to copy files - " + reason)) << scenario_.console();
        EXPECT_EQ(scenario_.lines_shown(scenario_.picture_of(scenario_.main_window())), "0 2 3 5");
        EXPECT_EQ(tree(), before_);
        scenario_.press_ok();
        EXPECT_EQ(scenario_.finish().exit_status, 0);
    }

    Scenario scenario_;
    std::string before_;
};

INSTANTIATE_TEST_SUITE_P(With, InstalledItems, testing::Values(Rights::sudo, Rights::only_su),
                         [](const auto& rights) {
                             return rights.param == Rights::sudo ? "sudo" : "su";
                         });

} // namespace

TEST_P(InstalledItems, GoToTheirFoldersByOnePassword) {
    choose_offered_folder();
    scenario_.reach_last_screen();
    EXPECT_TRUE(tells_of(std::string("Installing to - ") + folder)) << scenario_.console();
    EXPECT_TRUE(tells_of(std::string("Installing to - ") + manual_folder)) << scenario_.console();
    EXPECT_TRUE(tells_of("Installation Complete"));
    EXPECT_EQ(faults::text_of(manual),
              faults::text_of(ZEPH_SOURCE "/products/lantern-set/lantern-tilt.html"));
    EXPECT_EQ(fs::status(manual_folder).permissions(), fs::perms(0755));
    // A host finds the presets for the plug-in.
    const std::string info =
        output_of({"env", std::string("LV2_PATH=") + folder, "lv2info", "urn:lantern:tilt"});
    EXPECT_NE(info.find("Bright"), std::string::npos) << info;
    scenario_.press_ok();
    EXPECT_EQ(scenario_.finish().exit_status, 0);
    EXPECT_EQ(output_of({"/usr/local/bin/uninstall-lantern-set"}),
              "uninstall-lantern-set: removed\n");
    EXPECT_FALSE(fs::exists("/usr/local/share/doc"));
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_P(InstalledItems, WhoseFolderIsAFileLeaveEverythingAsItWas) {
    support::write_file(manual_folder, "a file");
    expect_refused("Something else of the same name is in the way");
}

TEST_P(InstalledItems, WithoutRoomForOneLeaveEverythingAsItWas) {
    fs::create_directories("/usr/local/share/doc");
    ASSERT_EQ(mount("tmpfs", "/usr/local/share/doc", "tmpfs", 0, "size=8k"), 0);
    support::write_file("/usr/local/share/doc/full", std::string(8192, 'f'));
    const auto last_change = fs::last_write_time(folder);
    expect_refused("There is no room left on the disk");
    EXPECT_EQ(fs::last_write_time(folder), last_change); // nothing has been tried
}

// There is room for the bytes, not for another file.
TEST_P(InstalledItems, OnADiskThatFillsUpLeaveEverythingAsItWas) {
    fs::create_directories("/usr/local/share/doc");
    ASSERT_EQ(mount("tmpfs", "/usr/local/share/doc", "tmpfs", 0, "size=64k,nr_inodes=3"), 0);
    expect_refused("There is no room left on the disk");
}

TEST_P(InstalledItems, InAReadOnlyFolderLeaveEverythingAsItWas) {
    fs::create_directories(manual_folder);
    ASSERT_EQ(mount("tmpfs", manual_folder, "tmpfs", MS_RDONLY, "size=64k"), 0);
    expect_refused("The folder is read-only");
}

TEST_P(InstalledItems, ThatAreCancelledWhileTheyAreCopiedLeaveNoFolder) {
    choose_offered_folder();
    scenario_.wait_for("the manual beside",
                       [] { return fs::exists(std::string(manual_folder) + "/.lantern-set-new"); });
    scenario_.installer().send_signal(SIGTERM);
    EXPECT_EQ(scenario_.finish().exit_status, 0);
    EXPECT_EQ(tree(), before_);
}
