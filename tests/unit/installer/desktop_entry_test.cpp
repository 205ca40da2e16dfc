// desktop_entry_test.cpp: the desktop entry, byte for byte.
#include "installer/desktop_entry.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

TEST(DesktopEntry, HasTheTenLinesOfTheProduct) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* file = open_memstream(&text, &size);
    ASSERT_TRUE(write_desktop_entry(file));
    std::fclose(file);
    EXPECT_EQ(std::string(text, size), "[Desktop Entry]\n"
                                       "Encoding=UTF-8\n"
                                       "Version=1.0\n"
                                       "Type=Application\n"
                                       "Terminal=false\n"
                                       "Exec=/usr/lib/lv2/qb20-i686\n"
                                       "Name=qb20\n"
                                       "Icon=/usr/share/icons/wmx-4c_icon_48px.png\n"
                                       "Comment=Vintage Marlow Limiter Plug-in\n"
                                       "Categories=AudioVideo;AudioEditing;Audio;Recorder;\n");
    std::free(text);
}

std::string line_of_entry(const std::string& start, const char* program_folder,
                          const char* icon_folder) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* file = open_memstream(&text, &size);
    EXPECT_TRUE(write_desktop_entry(file, program_folder, icon_folder));
    std::fclose(file);
    const std::string entry(text, size);
    std::free(text);
    const std::size_t begin = entry.find("\n" + start) + 1;
    return entry.substr(begin, entry.find('\n', begin) - begin);
}

// Read as a value first, and then as a command line.
TEST(DesktopEntry, QuotesFoldersThatAreNotPlain) {
    EXPECT_EQ(line_of_entry("Exec=", "/home/a/.lv2", "/i"), "Exec=/home/a/.lv2/qb20-i686");
    EXPECT_EQ(line_of_entry("Exec=", "/home/A B's/.lv2", "/i"),
              R"(Exec="/home/A B's/.lv2/qb20-i686")");
    EXPECT_EQ(line_of_entry("Exec=", "/\"a$`b\\%\n", "/i"),
              R"(Exec="/\\"a\\$\\`b\\\\%%\n/qb20-i686")");
    EXPECT_EQ(line_of_entry("Icon=", "/a", "/home/A \"B\"\\\n"),
              R"(Icon=/home/A "B"\\\n/wmx-4c_icon_48px.png)");
}

TEST(DesktopEntry, ReportsAStreamThatTakesNothing) {
    std::FILE* file = std::fopen("/dev/null", "rb");
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(write_desktop_entry(file));
    std::fclose(file);
}

} // namespace
