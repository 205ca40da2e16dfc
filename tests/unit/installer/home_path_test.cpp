// home_path_test.cpp: what is meant by a place in the home.
#include "installer/home_path.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(HomePath, PutsHomeInFront) {
    char path[PATH_MAX];
    ASSERT_TRUE(path_at_home(path, "/home/A \"B\"", "~/.local/bin"));
    EXPECT_STREQ(path, "/home/A \"B\"/.local/bin");
    ASSERT_TRUE(path_at_home(path, "/home/a//", "~/.lv2"));
    EXPECT_STREQ(path, "/home/a/.lv2");
    ASSERT_TRUE(path_at_home(path, "/", "~/.lv2"));
    EXPECT_STREQ(path, "/.lv2");
}

TEST(HomePath, NeedsAHomeThatIsAbsoluteAndNotTooLong) {
    char path[PATH_MAX];
    EXPECT_FALSE(path_at_home(path, nullptr, "~/.lv2"));
    EXPECT_FALSE(path_at_home(path, "", "~/.lv2"));
    EXPECT_FALSE(path_at_home(path, "home/a", "~/.lv2"));
    EXPECT_FALSE(path_at_home(path, "/home/a", ""));
    const std::string longest = "/" + std::string(PATH_MAX - 7, 'h');
    EXPECT_TRUE(path_at_home(path, longest.c_str(), "~/.lv2"));
    EXPECT_FALSE(path_at_home(path, (longest + "h").c_str(), "~/.lv2"));
    EXPECT_FALSE(path_at_home(path, (longest + longest).c_str(), "~/.lv2"));
}

} // namespace
