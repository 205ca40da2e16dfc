// A child that does not ask, or is not waited for any more, is no reason to type a password.

#include "privilege/password_dialogue.h"
#include "unit/privilege/quiet_runner.h"

#include <gtest/gtest.h>

namespace {

class NoPrompt : public testing::Test {
protected:
    bool asks(const char* script, bool given_up) {
        quiet_.cancel_requested = given_up ? 1 : 0;
        const char* const arguments[] = {"/bin/sh", "-c", script, nullptr};
        Dialogue dialogue{};
        EXPECT_TRUE(dialogue_start(&dialogue, &quiet_.runner, arguments, PromptRule::named,
                                   DialoguePurpose::check));
        const bool asked = dialogue_await_prompt(&dialogue);
        quiet_.cancel_requested = 1;
        static_cast<void>(dialogue_finish(&dialogue));
        pty_child_hang_up(&dialogue.child);
        return asked;
    }

private:
    QuietRunner quiet_;
};

TEST_F(NoPrompt, ComesFromAChildThatEnds) {
    EXPECT_FALSE(asks("echo 'no password is needed'", false))
        << "the password is typed to a child that has ended";
}

TEST_F(NoPrompt, IsWaitedForOnceThePersonHasGivenUp) {
    EXPECT_FALSE(asks("sleep 60", true)) << "the password is typed after CANCEL";
}

TEST_F(NoPrompt, IsToldFromOneThatHidesTheAnswer) {
    EXPECT_TRUE(asks("stty -echo; printf 'Password: '; read answer", false));
}

} // namespace
