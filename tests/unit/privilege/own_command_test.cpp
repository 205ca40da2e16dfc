// A command by the person's own rights gets all of its words, or is not run.

#include "privilege/own_command.h"
#include "unit/privilege/quiet_runner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A shell that succeeds when it has been given as many words as it says.
CommandOutcome outcome_with(std::size_t count) {
    std::vector<std::string> texts = {"sh", "-c", "test $# -eq " + std::to_string(count - 4), "sh"};
    while (texts.size() < count) {
        texts.push_back("two words");
    }
    std::vector<const char*> words;
    for (const std::string& text : texts) {
        words.push_back(text.c_str());
    }
    words.push_back(nullptr);
    PrivilegedCommand command{};
    command.words = words.data();
    QuietRunner quiet;
    return own_run(&quiet.runner, command).outcome;
}

TEST(OwnCommand, GetsEachOfAsManyWordsAsThereMayBe) {
    EXPECT_EQ(outcome_with(privileged_words_most - 1), CommandOutcome::succeeded);
    EXPECT_EQ(outcome_with(privileged_words_most), CommandOutcome::succeeded)
        << "the longest command is not run";
}

TEST(OwnCommand, WithTooManyWordsIsNotRun) {
    EXPECT_EQ(outcome_with(privileged_words_most + 1), CommandOutcome::not_made);
}

} // namespace
