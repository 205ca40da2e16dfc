// one_person_test.cpp: an installation for one person, who has no way to become root.
#include "end_to_end/expectations.h"
#include "end_to_end/scenario.h"
#include "faults/surroundings.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;
using support::output_of;

namespace {

class OnePerson : public testing::Test {
protected:
    OnePerson()
        : scenario_({.rights = Rights::none,
                     .browser_title = "- Select your LV2 plug-in folder -",
                     .keep_visible = {ZEPH_SOURCE}}),
          home_(scenario_.account().home) {}

    // A home of the person's whose name a shell would take apart.
    void move_to_odd_home() {
        home_ += "/it's \"my\" $(touch trap) home & \\n";
        give(home_);
    }

    void give(const std::string& folder) const {
        fs::create_directories(folder);
        support::give_to(scenario_.account(), folder);
    }

    void start_in_home() { start_with({"HOME=" + home_}); }

    // change is what env is told before the program.
    void start_with(const std::vector<std::string>& change) {
        before_ = tree();
        std::vector<std::string> command = {"env"};
        command.insert(command.end(), change.begin(), change.end());
        command.push_back(scenario_.program_path());
        scenario_.start_program(
            support::run_as(scenario_.account(), command,
                            {"DISPLAY=" + scenario_.display_name(), "LC_ALL=C", "ORXDPI=96"}));
        scenario_.await_splash();
        scenario_.reach_main_window_from_splash();
    }

    void choose_offered_folder() {
        start_in_home();
        scenario_.reach_folder_browser();
        scenario_.accept_folder();
    }

    void finish() {
        scenario_.press_ok();
        EXPECT_EQ(scenario_.finish().exit_status, 0);
        for (const fs::directory_entry& entry : fs::directory_iterator("/tmp")) {
            EXPECT_EQ(entry.path().string().find("zeph-installer"), std::string::npos)
                << entry.path();
        }
    }

    void install() {
        choose_offered_folder();
        scenario_.reach_last_screen();
        EXPECT_TRUE(tells_of("Installation Complete")) << scenario_.console();
        finish();
    }

    // Everything in the home, a line each.
    [[nodiscard]] std::string tree() const {
        return output_of({"sh", "-c",
                          "cd \"$1\" && { find . -mindepth 1 -printf '%y %m %u %p %l\\n'; "
                          "find . -type f -exec sha256sum {} +; } | sort",
                          "tree", home_});
    }

    bool tells_of(const std::string& text) {
        return scenario_.console().find("Lantern Solo 1.0 Installer: " + text + "\n") !=
               std::string::npos;
    }

    void expect_refused(const std::string& reason) {
        scenario_.reach_last_screen();
        EXPECT_TRUE(tells_of("Failed to copy files - " + reason)) << scenario_.console();
        const support::Picture screen = scenario_.picture_of(scenario_.main_window());
        EXPECT_EQ(scenario_.lines_shown(screen), "0 2 3 5");
        EXPECT_TRUE(end_to_end::line_reads(screen, 3, "Failed to copy files"));
        EXPECT_EQ(tree(), before_);
        finish();
    }

    // As the person would, who has the home folder.
    [[nodiscard]] std::string run(const std::vector<std::string>& command) const {
        std::vector<std::string> words = {"env", "HOME=" + home_};
        words.insert(words.end(), command.begin(), command.end());
        support::ChildProcess child(support::run_as(scenario_.account(), words, {}));
        const auto end = child.wait_for_end();
        EXPECT_TRUE(end && end->exit_status == 0);
        return child.output() + child.error_output();
    }

    [[nodiscard]] std::string uninstaller() const {
        return home_ + "/.local/bin/uninstall-lantern-solo";
    }

    Scenario scenario_;
    std::string home_;
    std::string before_;
};

} // namespace

TEST_F(OnePerson, InstallsWithoutAPasswordIntoTheHomeAndRemovesItAgain) {
    move_to_odd_home();
    give(home_ + "/Desktop");
    choose_offered_folder();
    scenario_.reach_last_screen();
    EXPECT_EQ(scenario_.lines_shown(scenario_.picture_of(scenario_.main_window())), "0 2 5");
    for (const std::string& text :
         {"Installing to - " + home_ + "/.lv2",
          "Installing to - " + home_ + "/.local/share/doc/lantern-solo",
          std::string("Installation Complete"), "To remove it - " + uninstaller()}) {
        EXPECT_TRUE(tells_of(text)) << text << "\n" << scenario_.console();
    }
    for (const char* word : {"sudo", "'su'", "Password"}) {
        EXPECT_EQ(scenario_.console().find(word), std::string::npos) << scenario_.console();
    }
    finish();

    const std::string lv2 = home_ + "/.lv2";
    EXPECT_EQ(output_of({"diff", "-r", ZEPH_SOURCE "/products/lantern-tilt/lantern-tilt.lv2",
                         lv2 + "/lantern-tilt.lv2"}),
              "");
    EXPECT_TRUE(fs::exists(home_ + "/.local/share/doc/lantern-solo/lantern-tilt.html"));
    EXPECT_EQ(tree().find(" root "), std::string::npos) << tree();
    EXPECT_EQ(run({"lv2ls"}), "urn:lantern:tilt\n"); // where hosts look by themselves
    const std::string entry = home_ + "/.local/share/applications/lantern-solo.desktop";
    EXPECT_EQ(run({"desktop-file-validate", entry}).find("error"), std::string::npos);
    EXPECT_TRUE(fs::exists(home_ + "/.local/share/icons/lantern-solo.png"));
    EXPECT_TRUE(fs::exists(home_ + "/Desktop/lantern-solo.desktop"));

    EXPECT_EQ(run({uninstaller()}), "uninstall-lantern-solo: removed\n");
    EXPECT_EQ(tree(), before_);
    EXPECT_FALSE(fs::exists(scenario_.account().home + "/trap"));
}

TEST_F(OnePerson, HasALaterVersionTakeAwayWhatItDoesNotHave) {
    install();
    const std::string bundle = home_ + "/.lv2/lantern-tilt.lv2";
    const std::string list = home_ + "/.local/share/uninstall-lantern-solo/installed";
    support::write_file(bundle + "/dropped.ttl", "old");
    support::write_file(bundle + "/my preset.ttl", "mine");
    support::write_file(list, "file 3 " +
                                  output_of({"sh", "-c", "printf old | sha256sum"}).substr(0, 64) +
                                  " " + bundle + "/dropped.ttl\n" + faults::text_of(list));
    install();
    EXPECT_FALSE(fs::exists(bundle + "/dropped.ttl"));
    EXPECT_TRUE(fs::exists(bundle + "/my preset.ttl"));
    fs::remove(bundle + "/my preset.ttl");
    EXPECT_EQ(run({uninstaller()}), "uninstall-lantern-solo: removed\n");
    EXPECT_FALSE(fs::exists(home_ + "/.lv2"));
}

TEST_F(OnePerson, WithoutAHomeIsTold) {
    start_with({"-u", "HOME"});
    expect_refused("The home folder is not known (HOME)");
}

TEST_F(OnePerson, WhoMayNotWriteThereIsTold) {
    give(home_ + "/.lv2");
    fs::permissions(home_ + "/.lv2", fs::perms(0555));
    choose_offered_folder();
    expect_refused("The folder is read-only");
}

// There is room for the bytes, not for the files: of the plug-in, of an item, of the list.
TEST_F(OnePerson, OnADiskThatFillsUpKeepsEverythingAsItWas) {
    give(home_ + "/.lv2");
    ASSERT_EQ(mount("tmpfs", (home_ + "/.lv2").c_str(), "tmpfs", 0, "size=1m,nr_inodes=6"), 0);
    support::give_to(scenario_.account(), home_ + "/.lv2");
    choose_offered_folder();
    expect_refused("There is no room left on the disk");
}

TEST_F(OnePerson, WithoutRoomForTheListKeepsEverythingAsItWas) {
    give(home_ + "/.lv2");
    give(home_ + "/.local");
    ASSERT_EQ(mount("tmpfs", (home_ + "/.local").c_str(), "tmpfs", 0, "size=1m,nr_inodes=9"), 0);
    support::give_to(scenario_.account(), home_ + "/.local");
    choose_offered_folder();
    expect_refused("There is no room left on the disk");
}

TEST_F(OnePerson, WithAFileInPlaceOfTheFolderIsToldAndMayCancel) {
    support::write_file(home_ + "/.lv2", "a file");
    start_in_home();
    scenario_.reach_folder_browser();
    EXPECT_TRUE(tells_of("Unable to open folder - " + home_ + "/.lv2")) << scenario_.console();
    scenario_.cancel_folder();
    scenario_.reach_last_screen();
    EXPECT_TRUE(tells_of("Install cancelled by user."));
    EXPECT_EQ(tree(), before_);
    finish();
}

TEST_F(OnePerson, WhoCancelsWhileItCopiesKeepsEverythingAsItWas) {
    give(home_ + "/.lv2");
    choose_offered_folder();
    const std::string beside = home_ + "/.lv2/.lantern-solo-new";
    scenario_.wait_for("the new files beside", [&] { return fs::exists(beside); });
    scenario_.installer().send_signal(SIGTERM);
    EXPECT_EQ(scenario_.finish().exit_status, 0);
    EXPECT_EQ(tree(), before_);
}
