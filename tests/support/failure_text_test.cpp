// failure_text_test.cpp: what a failing test says first.

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What comes out for the tests of that name.
std::string text_of(const std::string& tests) {
    support::ChildProcess program({.command = {FAILING_TEST, "--gtest_filter=" + tests}});
    EXPECT_TRUE(program.wait_for_end());
    return program.output();
}

TEST(FailedTest, SaysFirstWhatIsNotSoAndOnlyOnce) {
    const std::string text = text_of("With/PaintedLogo.*");
    const std::string line = "Not so: painted logo is a picture of the PNG on an X server (sudo)\n";
    EXPECT_TRUE(text.starts_with(line)) << text;
    EXPECT_EQ(text.find("Not so", line.size()), std::string::npos) << text;
    EXPECT_NE(text.find("failing_test.cpp:12"), std::string::npos) << text;
    EXPECT_NE(text.find("failing_test.cpp:13"), std::string::npos) << text;
}

TEST(FailedTest, ThatThrowsSaysItToo) {
    const std::string text = text_of("AFolder.*");
    EXPECT_TRUE(text.starts_with("Not so: a folder with blanks may throw\n")) << text;
    EXPECT_NE(text.find("unexpected"), std::string::npos) << text;
    EXPECT_EQ(text.find("that is fine"), std::string::npos) << text;
}

} // namespace
