// The whole installation with sudo, into a folder that the person browses to.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"

#include <sys/stat.h>

#include <filesystem>

namespace end_to_end {
namespace {

using support::Colour;
using support::Picture;
using support::WindowManagerKind;

class SudoPath : public testing::TestWithParam<WindowManagerKind> {};

INSTANTIATE_TEST_SUITE_P(InEveryWorld, SudoPath,
                         testing::Values(WindowManagerKind::none, WindowManagerKind::twm,
                                         WindowManagerKind::openbox),
                         [](const auto& kind) { return window_manager_name(kind.param); });

// The bar's middle row at full brightness, blended on the bar's own grey.
constexpr Colour full_bar{204, 49, 204};
constexpr Colour accent{255, 47, 255};

TEST_P(SudoPath, InstallsIntoAFolderFoundByBrowsing) {
    Scenario scenario({.manager = GetParam()});
    const std::string music = scenario.account().home + "/Music";
    for (const std::string& folder : {music, music + "/vst9", music + "/vst10"}) {
        std::filesystem::create_directory(folder);
    }

    scenario.reach_password_screen();
    Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 0, "- QB20-VST V3.0.0 Installer -"));
    EXPECT_TRUE(line_reads(picture, 2, "To authenticate the installation"));
    EXPECT_TRUE(line_reads(picture, 3, "please enter your user password"));
    EXPECT_TRUE(shows_background(picture, false));

    scenario.give_password(user_password);
    scenario.reach_unpacking();
    EXPECT_TRUE(line_reads(scenario.picture_of(scenario.main_window()), 2, "Installing..."));
    scenario.wait_for("a full bar", [&] {
        return near_colour(scenario.picture_of(scenario.main_window()).at(560, 368), full_bar, 1);
    });
    EXPECT_TRUE(std::filesystem::exists(archive_path));

    scenario.reach_folder_browser();
    scenario.enter_folder_row(2); // Music, after "." and ".."
    scenario.enter_folder_row(3); // vst10 sorts behind vst9
    scenario.accept_folder();
    scenario.reach_copying();
    scenario.wait_for("the file in its place",
                      [&] { return plugin_in(music + "/vst10") == plugin_of_archive(); });
    struct stat status {};
    ASSERT_EQ(stat((music + "/vst10/" + plugin_name).c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 0U);
    EXPECT_EQ(status.st_gid, 0U);
    EXPECT_EQ(status.st_mode & 07777, 0666U);

    scenario.reach_last_screen();
    picture = scenario.picture_of(scenario.main_window());
    EXPECT_EQ(scenario.lines_shown(picture), "0 2");
    EXPECT_TRUE(line_reads(picture, 2, "Installation Complete"));
    EXPECT_FALSE(scenario.bar_shown(picture));
    EXPECT_FALSE(std::filesystem::exists(archive_path));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(
        scenario.console(),
        console_text("sudo", {info("Password OK"), info("Unpacking Files - 001027C4 Bytes"),
                              info("Installing to - " + music + "/vst10"), info("Copying Files"),
                              info("Removing Temporary Files"), info("Installation Complete")}));
    EXPECT_EQ(scenario.installer().error_output(), "");
}

TEST(ProgressBar, NamesEachStep) {
    Scenario scenario;
    const auto names = [&](const char* step) {
        scenario.wait_for(std::string("the bar's ") + step, [&] {
            return caption_reads(scenario.picture_of(scenario.main_window()), step);
        });
    };
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    names("Unpacking Files");
    scenario.reach_folder_browser();
    scenario.accept_folder();
    names("Copying Files");
    names("Removing Temporary Files");
    scenario.reach_last_screen();
}

TEST(LastScreen, ReturnDoesWhatTheButtonDoes) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    scenario.reach_last_screen();
    scenario.focus_main_window();
    scenario.person().press_return();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

TEST(LastScreen, TheButtonFiresWhenItIsReleasedElsewhere) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    scenario.reach_last_screen();
    const support::Place place = scenario.view().place_on_root(scenario.main_window());
    scenario.press(scenario.main_window(), 300, 366);
    scenario.wait_for("the pressed button in the accent colour", [&] {
        return near_colour(scenario.picture_of(scenario.main_window()).at(275, 359), accent, 2);
    });
    EXPECT_TRUE(scenario.installer().running());
    scenario.person().move_pointer(place.x + 100, place.y + 100);
    scenario.person().release_button();
    EXPECT_TRUE(ended_clean(scenario.finish()));
}

// The button's place takes clicks also while it does not show: one there ends the last screen at
// once.
TEST(LastScreen, IsLeftAtOnceAfterAClickWhereItsButtonWillBe) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.press(scenario.main_window(), 300, 366);
    const support::Place place = scenario.view().place_on_root(scenario.main_window());
    scenario.person().move_pointer(place.x + 100, place.y + 100);
    scenario.person().release_button();
    EXPECT_FALSE(scenario.button_shown(scenario.picture_of(scenario.main_window())));
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    EXPECT_TRUE(ended_clean(scenario.finish())) << "without the button being pressed";
    EXPECT_NE(scenario.console().find(info("Install cancelled by user.")), std::string::npos);
}

} // namespace
} // namespace end_to_end
