// How command lines are split for sudo, and how a folder is put into one.

#include "privilege/command_words.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Words = std::vector<std::string>;

Words split(const std::string& line) {
    CommandWords words;
    split_command(&words, line.c_str());
    return Words(words.text, words.text + words.count);
}

TEST(CommandWords, AreSplitAtSingleBlanks) {
    EXPECT_EQ(split("echo"), Words({"echo"}));
    EXPECT_EQ(split("tar -xf a -C b"), Words({"tar", "-xf", "a", "-C", "b"}));
    EXPECT_EQ(split("a\tb 'c d'"), Words({"a\tb", "'c", "d'"}));
}

TEST(CommandWords, TwoBlanksMakeAnEmptyWord) {
    EXPECT_EQ(split("a  b"), Words({"a", "", "b"}));
    EXPECT_EQ(split("a "), Words({"a", ""}));
    EXPECT_EQ(split(" a"), Words({"", "a"}));
    EXPECT_EQ(split(""), Words({""}));
}

TEST(CommandWords, AreSixAtMost) {
    EXPECT_EQ(split("1 2 3 4 5 6"), Words({"1", "2", "3", "4", "5", "6"}));
    EXPECT_EQ(split("1 2 3 4 5 6 7 8"), Words({"1", "2", "3", "4", "5", "6"}));
}

TEST(CommandWords, AreCutAfter253Bytes) {
    const std::string longest(253, 'x');
    EXPECT_EQ(split(longest + " b"), Words({longest, "b"}));
    EXPECT_EQ(split(longest + "yz b"), Words({longest, "b"}));
}

TEST(ExtractionCommand, NamesArchiveAndFolder) {
    char command[command_line_size];
    ASSERT_TRUE(extraction_command(command, "/home/a b/lv2"));
    EXPECT_STREQ(command, "tar -xf /tmp/zeph-installer-data.tar.gz -C /home/a b/lv2");
}

TEST(ExtractionCommand, IsNotMadeWithHalfAFolder) {
    char command[command_line_size];
    const std::size_t rest =
        command_line_size - 1 - std::string("tar -xf /tmp/zeph-installer-data.tar.gz -C ").size();
    EXPECT_TRUE(extraction_command(command, std::string(rest, 'f').c_str()));
    EXPECT_FALSE(extraction_command(command, std::string(rest + 1, 'f').c_str()));
}

// What a shell makes of the quoted folder, the rest of the command left out.
std::string through_shell(const std::string& folder) {
    char* command = quoted_extraction_command(folder.c_str());
    const std::string start = "tar -xf /tmp/zeph-installer-data.tar.gz -C ";
    const std::string text = command != nullptr ? command : "";
    std::free(command);
    EXPECT_EQ(text.substr(0, start.size()), start);
    const std::string line = "printf '%s|' " + text.substr(start.size());
    FILE* shell = popen(line.c_str(), "r");
    std::string output;
    for (int c = shell != nullptr ? std::fgetc(shell) : EOF; c != EOF; c = std::fgetc(shell)) {
        output += static_cast<char>(c);
    }
    EXPECT_EQ(shell != nullptr ? pclose(shell) : -1, 0);
    return output;
}

TEST(ExtractionCommand, QuotedStaysOneWordForAShell) {
    for (const std::string folder :
         {"/usr/lib/lv2", "/home/a b/ lv2 ", "/it's", "/''", "/$(id)`id`", "/a;b&c|d>e", "/\"x\"",
          "/back\\slash", "/line\nfeed", "/ümläut*?[a]", "/~", "/#"}) {
        EXPECT_EQ(through_shell(folder), folder + "|");
    }
    const std::string very_long(20'000, '\'');
    EXPECT_EQ(through_shell(very_long), very_long + "|");
}

} // namespace
