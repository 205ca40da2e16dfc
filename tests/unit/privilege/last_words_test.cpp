// What a child says between its last reading and its end counts, however much it is.

#include "privilege/password_dialogue.h"
#include "unit/privilege/quiet_runner.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>

#include <string>

namespace {

constexpr int much = 8 * static_cast<int>(reading_length);

// Asks, says what is given once it has its answer, and ends, all before anybody listens again.
CommandOutcome outcome_of_last_words(const std::string& words) {
    QuietRunner quiet;
    const std::string script = "stty -echo; printf 'Password: '; read answer; " + words;
    const char* const arguments[] = {"/bin/sh", "-c", script.c_str(), nullptr};
    Dialogue dialogue{};
    EXPECT_TRUE(dialogue_start(&dialogue, &quiet.runner, arguments, PromptRule::named,
                               DialoguePurpose::check));
    EXPECT_TRUE(dialogue_await_prompt(&dialogue));
    dialogue_answer(&dialogue, "secret");
    siginfo_t ended{};
    EXPECT_EQ(waitid(P_PID, static_cast<id_t>(dialogue.child.process), &ended, WEXITED | WNOWAIT),
              0);
    const CommandOutcome outcome = dialogue_finish(&dialogue).outcome;
    pty_child_hang_up(&dialogue.child);
    return outcome;
}

TEST(LastWords, AComplaintBehindALotOfTextIsARefusal) {
    const std::string text = "printf '%0" + std::to_string(much) + "d\\n' 7; ";
    EXPECT_EQ(outcome_of_last_words(text + "printf 'Sorry, try again.\\n'; exit 1"),
              CommandOutcome::refused)
        << "a refused password is taken for a command that failed";
    EXPECT_EQ(outcome_of_last_words(text + "exit 1"), CommandOutcome::failed);
    EXPECT_EQ(outcome_of_last_words(text + "exit 0"), CommandOutcome::succeeded);
}

} // namespace
