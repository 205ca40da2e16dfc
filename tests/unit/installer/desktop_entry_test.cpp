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

TEST(DesktopEntry, ReportsAStreamThatTakesNothing) {
    std::FILE* file = std::fopen("/dev/null", "rb");
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(write_desktop_entry(file));
    std::fclose(file);
}

} // namespace
