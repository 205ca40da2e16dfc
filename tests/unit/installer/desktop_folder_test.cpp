// desktop_folder_test.cpp: where the person's desktop is, by what the desktop's settings say.
#include "installer/desktop_folder.h"

#include "payload/scratch_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string folder_of(const std::string& line, const char* home = "/home/me") {
    char folder[PATH_MAX] = "untouched";
    return desktop_folder_of_line(folder, line.c_str(), home) ? folder
                                                              : "none, " + std::string(folder);
}

TEST(DesktopFolderLine, NamesAFolderInHomeOrAnywhere) {
    EXPECT_EQ(folder_of("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"), "/home/me/Schreibtisch");
    EXPECT_EQ(folder_of("  \tXDG_DESKTOP_DIR=\"/data/desk top\""), "/data/desk top");
    EXPECT_EQ(folder_of("XDG_DESKTOP_DIR=\"$HOME/it's \\\"mine\\\" \\$1 \\\\\""),
              "/home/me/it's \"mine\" $1 \\");
}

TEST(DesktopFolderLine, ThatIsAboutSomethingElseOrWrongNamesNone) {
    for (const char* line :
         {"", "\n", "# XDG_DESKTOP_DIR=\"$HOME/x\"", "XDG_MUSIC_DIR=\"$HOME/Music\"",
          "XDG_DESKTOP_DIR=\"$HOME\"", "XDG_DESKTOP_DIR=\"$HOME/\"", "XDG_DESKTOP_DIR=\"//\"",
          "XDG_DESKTOP_DIR=\"Schreibtisch\"", "XDG_DESKTOP_DIR=\"$HOMES/x\"",
          "XDG_DESKTOP_DIR=$HOME/x", "XDG_DESKTOP_DIR='/data/x\"", "XDG_DESKTOP_DIR=\"$HOME/no end",
          "XDG_DESKTOP_DIR=\"$HOME/\\", "XDG_DESKTOP_DIR=\""}) {
        EXPECT_EQ(folder_of(line), "none, untouched") << line;
    }
}

TEST(DesktopFolderLine, ThatIsTooLongNamesNone) {
    const std::string start = "XDG_DESKTOP_DIR=\"/";
    const std::string fitting(PATH_MAX - 2, 'd');
    EXPECT_EQ(folder_of(start + fitting + "\""), "/" + fitting);
    EXPECT_EQ(folder_of(start + fitting + "d\""), "none, untouched");
    EXPECT_EQ(folder_of("XDG_DESKTOP_DIR=\"$HOME/x\"", ("/" + fitting).c_str()), "none, untouched");
}

class DesktopFolder : public testing::Test {
protected:
    DesktopFolder() { unsetenv("XDG_CONFIG_HOME"); }

    [[nodiscard]] std::string home() const { return scratch_.file("home"); }
    void settle(const std::string& text) const {
        std::filesystem::create_directories(home() + "/.config");
        std::ofstream(home() + "/.config/user-dirs.dirs") << text;
    }
    [[nodiscard]] std::string found() const {
        char folder[PATH_MAX];
        return find_desktop_folder(folder, home().c_str()) ? folder : "none";
    }

private:
    ScratchFolder scratch_;
};

TEST_F(DesktopFolder, IsTheOneThatTheSettingsNameLast) {
    settle("XDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_DESKTOP_DIR=\"$HOME/Bureau\"\n");
    std::filesystem::create_directory(home() + "/Bureau");
    EXPECT_EQ(found(), home() + "/Bureau");
}

TEST_F(DesktopFolder, IsDesktopWhereTheSettingsNameNoFolderThatIsThere) {
    EXPECT_EQ(found(), home() + "/Desktop") << "no settings";
    settle("XDG_DESKTOP_DIR=\"$HOME/Bureau\"\n");
    EXPECT_EQ(found(), home() + "/Desktop") << "no such folder";
    std::ofstream(home() + "/Bureau") << "a file";
    EXPECT_EQ(found(), home() + "/Desktop") << "a file";
    settle("XDG_DESKTOP_DIR=\"$HOME/\"\n");
    EXPECT_EQ(found(), home() + "/Desktop") << "none wished for";
}

TEST_F(DesktopFolder, IsDesktopWhereTheSettingsAreAPipe) {
    std::filesystem::create_directories(home() + "/.config");
    ASSERT_EQ(mkfifo((home() + "/.config/user-dirs.dirs").c_str(), 0600), 0);
    EXPECT_EQ(found(), home() + "/Desktop");
}

TEST_F(DesktopFolder, FollowsTheFolderOfThePersonsSettings) {
    std::filesystem::create_directories(home() + "/settings");
    std::filesystem::create_directory(home() + "/Bureau");
    std::ofstream(home() + "/settings/user-dirs.dirs") << "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\n";
    setenv("XDG_CONFIG_HOME", (home() + "/settings").c_str(), 1);
    EXPECT_EQ(found(), home() + "/Bureau");
    setenv("XDG_CONFIG_HOME", "settings", 1);
    EXPECT_EQ(found(), home() + "/Desktop") << "a relative path means nothing";
}

} // namespace
