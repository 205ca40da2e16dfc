// The folder browser: left without a folder, and led to folders that cannot take the plug-in.

#include "end_to_end/expectations.h"
#include "end_to_end/installed_file.h"

#include <filesystem>

namespace end_to_end {
namespace {

void expect_cancelled(Scenario& scenario) {
    scenario.reach_last_screen();
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_TRUE(line_reads(picture, 2, "** USER CANCELLED INSTALLATION **"));
    EXPECT_TRUE(line_reads(picture, 3, "Exiting..."));
    EXPECT_FALSE(scenario.bar_shown(picture));
    EXPECT_FALSE(scenario.view().exists(scenario.browser_window()));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(scenario.console(),
              console_text("sudo", {info("Password OK"), info("Unpacking Files - 001027C4 Bytes"),
                                    info("Install cancelled by user.")}));
    EXPECT_EQ(plugin_in(default_folder), std::nullopt);
    EXPECT_EQ(plugin_in(scenario.account().home), std::nullopt);
}

TEST(FolderBrowser, CancelButtonInstallsNothing) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.cancel_folder();
    expect_cancelled(scenario);
}

TEST(FolderBrowser, ClosingItInstallsNothing) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.view().ask_to_close(scenario.browser_window());
    expect_cancelled(scenario);
}

TEST(FolderBrowser, LeadsUpTheTreeToo) {
    Scenario scenario;
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.enter_folder_row(1); // ".."
    scenario.accept_folder();
    scenario.reach_last_screen();
    EXPECT_EQ(plugin_in("/home"), plugin_of_archive());
    EXPECT_NE(scenario.console().find("Installing to - /home\n"), std::string::npos);
}

// How the extraction ended is not looked at: the person is told what they always are.
void expect_complete_without_plugin(Scenario& scenario, const std::string& folder) {
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.enter_folder_row(2); // after "." and ".."
    scenario.accept_folder();
    scenario.reach_last_screen();
    const support::Picture picture = scenario.picture_of(scenario.main_window());
    EXPECT_EQ(scenario.lines_shown(picture), "0 2");
    EXPECT_TRUE(line_reads(picture, 2, "Installation Complete"));
    scenario.press_ok();
    EXPECT_TRUE(ended_clean(scenario.finish()));
    EXPECT_EQ(
        scenario.console(),
        console_text("sudo", {info("Password OK"), info("Unpacking Files - 001027C4 Bytes"),
                              info("Installing to - " + folder), info("Copying Files"),
                              info("Removing Temporary Files"), info("Installation Complete")}));
    for (const std::string& place :
         {folder, scenario.account().home, std::string(default_folder)}) {
        EXPECT_EQ(plugin_in(place), std::nullopt) << place;
    }
}

TEST(FolderBrowser, AFolderWithABlankGetsNothing) {
    Scenario scenario;
    const std::string folder = scenario.account().home + "/My plugins";
    std::filesystem::create_directory(folder);
    expect_complete_without_plugin(scenario, folder);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    EXPECT_FALSE(std::filesystem::exists(scenario.account().home + "/My"));
}

TEST(FolderBrowser, AFolderInThePluginsPlaceStaysAsItIs) {
    Scenario scenario;
    const std::string folder = scenario.account().home + "/vst";
    const std::string own_file = folder + "/" + plugin_name + "/notes";
    std::filesystem::create_directories(folder + "/" + plugin_name);
    support::write_file(own_file, "the person's");
    expect_complete_without_plugin(scenario, folder);
    EXPECT_EQ(std::filesystem::file_size(own_file), 12U);
}

TEST(FolderBrowser, IsRedrawnAfterAnotherWindowCoveredIt) {
    Scenario scenario({.manager = support::WindowManagerKind::none});
    scenario.reach_password_screen();
    scenario.give_password(user_password);
    scenario.reach_folder_browser();
    scenario.person().move_pointer(1, 1);
    support::Picture before;
    scenario.wait_for("the browser at rest", [&] {
        before = scenario.picture_of(scenario.browser_window());
        return support::holds_for(
            [&] {
                return count_differences(scenario.picture_of(scenario.browser_window()), before) ==
                       0;
            },
            std::chrono::milliseconds(300));
    });
    {
        // Another program's window on top, for a moment.
        support::ChildProcess cover(
            {.command = {"xmessage", "-geometry", "1200x900+50+50", "x"},
             .environment = std::vector<std::string>{"DISPLAY=" + scenario.display_name(),
                                                     "PATH=/usr/bin:/bin"}});
        (void)scenario.view().wait_for_class("xmessage");
    }
    scenario.wait_for("the browser as it was", [&] {
        return count_differences(scenario.picture_of(scenario.browser_window()), before) == 0;
    });
}

} // namespace
} // namespace end_to_end
