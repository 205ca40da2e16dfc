// How command lines are split for sudo, and how words become one for a shell.

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

TEST(PlainLine, JoinsWordsWithBlanks) {
    char line[command_line_size];
    const char* const words[] = {"tar", "-xf", "a.tar.gz", "-C", "/home/a b/lv2", nullptr};
    ASSERT_TRUE(plain_line(line, words));
    EXPECT_STREQ(line, "tar -xf a.tar.gz -C /home/a b/lv2");
    const char* const one[] = {"echo", nullptr};
    ASSERT_TRUE(plain_line(line, one));
    EXPECT_STREQ(line, "echo");
}

TEST(PlainLine, IsNotMadeWithHalfAWord) {
    char line[command_line_size];
    const std::size_t rest = command_line_size - 1 - std::string("tar ").size();
    const std::string fitting(rest, 'f');
    const char* const words[] = {"tar", fitting.c_str(), nullptr};
    EXPECT_TRUE(plain_line(line, words));
    EXPECT_EQ(line, "tar " + fitting);
    const std::string longer(rest + 1, 'f');
    const char* const too_long[] = {"tar", longer.c_str(), nullptr};
    EXPECT_FALSE(plain_line(line, too_long));
    const char* const blank_too_much[] = {fitting.c_str(), "abc", "", nullptr};
    EXPECT_FALSE(plain_line(line, blank_too_much));
}

// What a shell makes of the quoted word.
std::string through_shell(const std::string& word) {
    const char* const words[] = {"printf", "%s|", word.c_str(), nullptr};
    char* line = quoted_line(words);
    FILE* shell = popen(line != nullptr ? line : "false", "r");
    std::free(line);
    std::string output;
    for (int c = shell != nullptr ? std::fgetc(shell) : EOF; c != EOF; c = std::fgetc(shell)) {
        output += static_cast<char>(c);
    }
    EXPECT_EQ(shell != nullptr ? pclose(shell) : -1, 0);
    return output;
}

TEST(QuotedLine, KeepsWordsInOnePieceForAShell) {
    for (const std::string word :
         {"/usr/lib/lv2", "/home/a b/ lv2 ", "/it's", "/''", "/$(id)`id`", "/a;b&c|d>e", "/\"x\"",
          "/back\\slash", "/line\nfeed", "/ümläut*?[a]", "/~", "/#", ""}) {
        EXPECT_EQ(through_shell(word), word + "|");
    }
    const std::string very_long(20'000, '\'');
    EXPECT_EQ(through_shell(very_long), very_long + "|");
}

} // namespace
