// desktop_steps_test.cpp: the desktop entry's steps of the second product, where they go wrong.
#include "end_to_end/scenario.h"
#include "faults/surroundings.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>

namespace fs = std::filesystem;

using end_to_end::Rights;
using end_to_end::Scenario;

namespace {

constexpr const char* icon_file = "/tmp/zeph-installer-desktop-icon.png";
constexpr const char* entry_file = "/tmp/zeph-installer-desktop-file.desktop";
constexpr const char* installed_icon = "/usr/share/icons/lantern-tilt.png";
constexpr const char* installed_entry = "/usr/share/applications/lantern-tilt.desktop";
constexpr const char* presets_folder = "/usr/share/lantern-tilt-presets";

end_to_end::ScenarioOptions options_of(Rights rights) {
    return {.rights = rights, .keep_visible = {ZEPH_SOURCE}};
}

void make_desktop(const Scenario& scenario) {
    const std::string desktop = scenario.account().home + "/Desktop";
    fs::create_directory(desktop);
    support::give_to(scenario.account(), desktop);
}

void install(Scenario& scenario, const char* password) {
    scenario.reach_password_screen();
    scenario.give_password(password);
    scenario.reach_folder_browser();
    scenario.accept_folder();
    scenario.reach_last_screen();
}

void expect_clean_end(Scenario& scenario) {
    scenario.press_ok();
    EXPECT_EQ(scenario.finish().exit_status, 0);
    for (const fs::directory_entry& entry : fs::directory_iterator("/tmp")) {
        EXPECT_EQ(entry.path().string().find("zeph-installer"), std::string::npos) << entry.path();
    }
}

bool tells_of(Scenario& scenario, const std::string& text) {
    return scenario.console().find("Lantern Tilt 1.2.0 Installer: " + text) != std::string::npos;
}

} // namespace

TEST(DesktopSteps, WithoutAHomeThePersonIsToldAfterTheTwoCommonCopies) {
    Scenario scenario(options_of(Rights::sudo));
    make_desktop(scenario);
    faults::start_through_shell(scenario, "unset HOME");
    install(scenario, end_to_end::user_password);
    EXPECT_FALSE(tells_of(scenario, "Installation Complete")) << scenario.console();
    EXPECT_EQ(scenario.lines_shown(scenario.picture_of(scenario.main_window())), "0 2 3");
    EXPECT_TRUE(fs::exists(installed_icon));
    EXPECT_TRUE(fs::exists(installed_entry));
    EXPECT_FALSE(fs::exists(scenario.account().home + "/Desktop/lantern-tilt.desktop"));
    EXPECT_FALSE(fs::exists(presets_folder));
    expect_clean_end(scenario);
}

// With sudo the outcome of a step is not looked at, and the others are carried out.
TEST(DesktopSteps, AFailedStepWithSudoKeepsNoneOfTheOthersBack) {
    Scenario scenario(options_of(Rights::sudo));
    make_desktop(scenario);
    ASSERT_EQ(mount("tmpfs", "/usr/share/icons", "tmpfs", MS_RDONLY, nullptr), 0);
    install(scenario, end_to_end::user_password);
    EXPECT_TRUE(tells_of(scenario, "Installation Complete")) << scenario.console();
    EXPECT_FALSE(fs::exists(installed_icon));
    EXPECT_TRUE(fs::exists(installed_entry));
    EXPECT_TRUE(fs::exists(scenario.account().home + "/Desktop/lantern-tilt.desktop"));
    EXPECT_TRUE(fs::exists(presets_folder));
    expect_clean_end(scenario);
}

// Checking, putting the files beside and moving them into place take a terminal each; none is left
// for the icon.
TEST(DesktopSteps, AStepWithSuThatGetsNoTerminalEndsTheSteps) {
    Scenario scenario(options_of(Rights::only_su));
    make_desktop(scenario);
    faults::allow_terminals(3);
    install(scenario, end_to_end::root_password);
    EXPECT_TRUE(tells_of(scenario, "failed to fork pty for su")) << scenario.console();
    EXPECT_FALSE(tells_of(scenario, "Installation Complete"));
    EXPECT_EQ(scenario.lines_shown(scenario.picture_of(scenario.main_window())), "0 2 3 5");
    EXPECT_FALSE(fs::exists(installed_icon));
    EXPECT_FALSE(fs::exists(installed_entry));
    EXPECT_FALSE(fs::exists(presets_folder));
    expect_clean_end(scenario);
}

TEST(DesktopSteps, AnExtraFolderThatIsThereStaysAsItIs) {
    Scenario scenario(options_of(Rights::sudo));
    make_desktop(scenario);
    fs::create_directory(presets_folder);
    fs::permissions(presets_folder, fs::perms::owner_all);
    install(scenario, end_to_end::user_password);
    EXPECT_TRUE(tells_of(scenario, "Installation Complete")) << scenario.console();
    EXPECT_EQ(fs::status(presets_folder).permissions(), fs::perms::owner_all);
    expect_clean_end(scenario);
}

// Root would write through it, and open what it leads to for everybody.
TEST(DesktopSteps, ALinkOnTheDesktopIsReplacedAndWhatItLeadsToStaysAsItIs) {
    for (const Rights rights : {Rights::sudo, Rights::only_su}) {
        Scenario scenario(options_of(rights));
        make_desktop(scenario);
        const std::string entry = scenario.account().home + "/Desktop/lantern-tilt.desktop";
        support::write_file("/etc/precious", "precious", 0600);
        fs::create_symlink("/etc/precious", entry);
        ASSERT_EQ(lchown(entry.c_str(), scenario.account().uid, scenario.account().gid), 0);
        install(scenario,
                rights == Rights::sudo ? end_to_end::user_password : end_to_end::root_password);
        EXPECT_EQ(faults::text_of("/etc/precious"), "precious");
        EXPECT_EQ(fs::status("/etc/precious").permissions(),
                  fs::perms::owner_read | fs::perms::owner_write);
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(entry)));
        EXPECT_NE(faults::text_of(entry).find("Type=Application"), std::string::npos);
        expect_clean_end(scenario);
    }
}

TEST(DesktopSteps, TheEntryGoesToADesktopOfAnotherNameInAHomeWithBlanksAndQuotes) {
    for (const Rights rights : {Rights::sudo, Rights::only_su}) {
        Scenario scenario(options_of(rights));
        const std::string home = scenario.account().home + "/It's \"my\" home";
        for (const char* folder : {"", "/.config", "/Mein Schreibtisch", "/Desktop"}) {
            fs::create_directory(home + folder);
            support::give_to(scenario.account(), home + folder);
        }
        support::write_file(home + "/.config/user-dirs.dirs",
                            "# comment\nXDG_DESKTOP_DIR=\"$HOME/Mein Schreibtisch\"\n");
        faults::start_through_shell(scenario, "export HOME=\"$HOME/It's \\\"my\\\" home\"");
        install(scenario,
                rights == Rights::sudo ? end_to_end::user_password : end_to_end::root_password);
        const std::string entry = home + "/Mein Schreibtisch/lantern-tilt.desktop";
        EXPECT_NE(faults::text_of(entry).find("Type=Application"), std::string::npos)
            << scenario.console();
        EXPECT_EQ(fs::status(entry).permissions(), fs::perms::all);
        EXPECT_TRUE(fs::is_empty(home + "/Desktop"));
        expect_clean_end(scenario);
    }
}

class PreparedDesktopFile : public testing::TestWithParam<const char*> {
protected:
    // The run must not write, and must say so.
    static void expect_refusal(Scenario& scenario) {
        scenario.reach_password_screen();
        scenario.give_password(end_to_end::user_password);
        scenario.reach_last_screen();
        EXPECT_EQ(scenario.lines_shown(scenario.picture_of(scenario.main_window())), "0 2 3");
        EXPECT_FALSE(tells_of(scenario, "Copying Files")) << scenario.console();
        scenario.press_ok();
        EXPECT_EQ(scenario.finish().exit_status, 0);
    }
};

INSTANTIATE_TEST_SUITE_P(In, PreparedDesktopFile, testing::Values(icon_file, entry_file),
                         [](const auto& file) {
                             return std::string(file.param) == icon_file ? "Icon" : "Entry";
                         });

TEST_P(PreparedDesktopFile, ThatIsALinkToAFileIsNotWrittenThrough) {
    for (const bool of_root : {false, true}) {
        Scenario scenario(options_of(Rights::sudo));
        const std::string target =
            of_root ? "/etc/precious" : scenario.account().home + "/precious";
        support::write_file(target, "precious");
        if (!of_root) {
            support::give_to(scenario.account(), target);
        }
        fs::create_symlink(target, GetParam());
        expect_refusal(scenario);
        EXPECT_EQ(faults::text_of(target), "precious");
    }
}

TEST_P(PreparedDesktopFile, OfAnotherUserIsNotTouched) {
    Scenario scenario(options_of(Rights::sudo));
    const support::Account neighbour = support::add_account("neighbour", "else");
    support::write_file(GetParam(), "the neighbour's", 0666);
    support::give_to(neighbour, GetParam());
    expect_refusal(scenario);
    EXPECT_EQ(faults::text_of(GetParam()), "the neighbour's");
}

TEST_P(PreparedDesktopFile, OfAKilledRunIsReplaced) {
    Scenario scenario(options_of(Rights::sudo));
    make_desktop(scenario);
    support::write_file(GetParam(), "half a file");
    support::give_to(scenario.account(), GetParam());
    install(scenario, end_to_end::user_password);
    EXPECT_TRUE(tells_of(scenario, "Installation Complete")) << scenario.console();
    EXPECT_NE(faults::text_of(installed_entry).find("Type=Application"), std::string::npos);
    EXPECT_GT(fs::file_size(installed_icon), 100U);
    expect_clean_end(scenario);
}
