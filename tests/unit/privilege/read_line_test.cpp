// How a line is read from a child's terminal: its end, its cut, and what stands for what is
// missing.

#include "privilege/password_dialogue.h"
#include "unit/privilege/quiet_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace {

constexpr std::size_t most = pty_line_size - 1;

// A child whose terminal passes on its output as it is.
class ReadLine : public testing::Test {
protected:
    void start(const std::string& script) {
        const std::string text = "stty -opost; " + script;
        const char* const arguments[] = {"/bin/sh", "-c", text.c_str(), nullptr};
        ASSERT_TRUE(dialogue_start(&dialogue_, &quiet_.runner, arguments, PromptRule::any,
                                   DialoguePurpose::check));
    }

    void TearDown() override {
        quiet_.cancel_requested = 1;
        static_cast<void>(dialogue_finish(&dialogue_));
        pty_child_hang_up(&dialogue_.child);
    }

    // The whole buffer after reading, which held something else before.
    std::string read_line() {
        char line[pty_line_size];
        std::fill(std::begin(line), std::end(line), '#');
        read_pty_line(&dialogue_, line);
        return std::string(std::begin(line), std::end(line));
    }

    // The text with a zero behind it, in a buffer that is not touched beyond.
    static std::string ended(const std::string& text) {
        return text + '\0' + std::string(most - text.size(), '#');
    }

private:
    QuietRunner quiet_;
    Dialogue dialogue_{};
};

TEST_F(ReadLine, ALineFeedBecomesAZeroAndTheNextLineFollows) {
    start("printf 'one\\n\\ntwo words\\n'; sleep 60");
    EXPECT_EQ(read_line(), ended("one"));
    EXPECT_EQ(read_line(), ended(""));
    EXPECT_EQ(read_line(), ended("two words"));
}

TEST_F(ReadLine, ALineThatComesInPiecesIsWaitedFor) {
    start("printf 'one '; sleep 1; printf 'line\\n'; sleep 60");
    EXPECT_EQ(read_line(), ended("one line"));
}

TEST_F(ReadLine, TheLongestLineThatKeepsItsLineFeedHas253Bytes) {
    start("printf '%0253d\\n%s\\n' 7 next; sleep 60");
    EXPECT_EQ(read_line(), ended(std::string(252, '0') + "7"));
    EXPECT_EQ(read_line(), ended("next"));
}

TEST_F(ReadLine, ALineOf254BytesFillsTheBufferAndLeavesItsLineFeedBehind) {
    start("printf '%0254d\\n%s\\n' 7 next; sleep 60");
    EXPECT_EQ(read_line(), std::string(253, '0') + '7' + '\0');
    EXPECT_EQ(read_line(), ended(""));
    EXPECT_EQ(read_line(), ended("next"));
}

TEST_F(ReadLine, ALongerLineIsCutAfter254BytesAndGoesOnInTheNext) {
    start("printf '%0254d%s\\n' 7 'the rest'; sleep 60");
    EXPECT_EQ(read_line(), std::string(253, '0') + '7' + '\0');
    EXPECT_EQ(read_line(), ended("the rest"));
}

TEST_F(ReadLine, AtTheEndOfTheOutputEveryMissingByteIsAZero) {
    start("printf 'one\\nhalf a line'");
    EXPECT_EQ(read_line(), ended("one"));
    const std::string half = "half a line";
    EXPECT_EQ(read_line(), half + std::string(pty_line_size - half.size(), '\0'));
    EXPECT_EQ(read_line(), std::string(pty_line_size, '\0'));
}

} // namespace
