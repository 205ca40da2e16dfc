// folder_levels_test.cpp: which of a path's folders are still to be made.
#include "installer/folder_levels.h"

#include "support/worlds/private_world.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

TEST(FolderLevels, AreTakenOffFromTheEnd) {
    EXPECT_EQ(length_without_levels("/a/bc/d", 0), 7);
    EXPECT_EQ(length_without_levels("/a/bc/d", 1), 5);
    EXPECT_EQ(length_without_levels("/a/bc/d", 2), 2);
    EXPECT_EQ(length_without_levels("/a/bc/d", 3), 1);
    EXPECT_EQ(length_without_levels("/a/bc/d", 9), 1);
    EXPECT_EQ(length_without_levels("/", 1), 1);
}

TEST(FolderLevels, ThatAreMissingAreCounted) {
    const support::PrivateWorld world;
    std::filesystem::create_directory("/tmp/here");
    std::filesystem::create_symlink("/tmp/here", "/tmp/link");
    std::ofstream("/tmp/file") << "some";
    EXPECT_EQ(missing_levels("/"), 0);
    EXPECT_EQ(missing_levels("/tmp/here"), 0);
    EXPECT_EQ(missing_levels("/tmp/link"), 0);
    EXPECT_EQ(missing_levels("/tmp/here/a"), 1);
    EXPECT_EQ(missing_levels("/tmp/link/a/b/c"), 3);
    EXPECT_EQ(missing_levels("/nowhere/a"), 2);
    EXPECT_EQ(missing_levels("/tmp/file"), 0); // something is there
    EXPECT_EQ(missing_levels("/tmp/file/a"), 1);
    EXPECT_EQ(missing_levels(("/tmp/" + std::string(300, 'n')).c_str()), 0); // nobody can make it
}

} // namespace
