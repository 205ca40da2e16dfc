// main of every test program: a failed test first says, in words, what a person would not find so.
//
// Tests are named as sentences about what is seen, so the name is that line. What was compared and
// where follows it, as GoogleTest prints it. Tests that pass print nothing; with --gtest_brief=0
// each is named.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <regex>
#include <string>

namespace {

// "TheLogoIsAPictureOfThePNG" as "the logo is a picture of the PNG".
std::string words_of(const std::string& name) {
    static const std::regex word("[A-Z]+(?=[A-Z][a-z]|[0-9]|$)|[A-Z][a-z0-9]*|[a-z0-9]+");
    std::string words;
    for (std::sregex_iterator found(name.begin(), name.end(), word), none; found != none; ++found) {
        std::string next = found->str();
        if (next == "A" || std::any_of(next.begin(), next.end(), islower)) {
            std::transform(next.begin(), next.end(), next.begin(), tolower);
        }
        words += (words.empty() ? "" : " ") + next;
    }
    return words;
}

// The suite and the test are one sentence; what a suite or a test is instantiated with is aside.
std::string sentence_of(const testing::TestInfo& test) {
    const std::string suite = test.test_suite_name();
    const std::string name = test.name();
    const std::size_t aside = name.find('/');
    return words_of(suite.substr(suite.find('/') + 1) + name.substr(0, aside)) +
           (aside == std::string::npos ? "" : " (" + name.substr(aside + 1) + ")");
}

class SaysWhatIsNotSo : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& test) override { unsaid_ = sentence_of(test); }
    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.failed() && !unsaid_.empty()) {
            std::printf("Not so: %s\n", unsaid_.c_str());
            unsaid_.clear();
        }
    }
    std::string unsaid_;
};

} // namespace

int main(int argument_count, char** arguments) {
    GTEST_FLAG_SET(brief, true);
    testing::InitGoogleTest(&argument_count, arguments);
    testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
    testing::TestEventListener* printer = listeners.Release(listeners.default_result_printer());
    listeners.Append(new SaysWhatIsNotSo);
    listeners.Append(printer);
    return RUN_ALL_TESTS();
}
