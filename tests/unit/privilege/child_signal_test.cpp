// What the process does with its children's ends stays as it was while one of ours is at work,
// unless that would lose the child's exit status; and is as it was afterwards.

#include "privilege/pty_child.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>

namespace {

void own_handler(int /*signal*/) {}

class ChildSignal : public testing::Test {
protected:
    ChildSignal() { sigaction(SIGCHLD, nullptr, &before_); }
    ~ChildSignal() override { sigaction(SIGCHLD, &before_, nullptr); }

    static void set(void (*handler)(int), int flags) {
        struct sigaction action {};
        action.sa_handler = handler;
        action.sa_flags = flags;
        sigemptyset(&action.sa_mask);
        ASSERT_EQ(sigaction(SIGCHLD, &action, nullptr), 0);
    }
    static struct sigaction now() {
        struct sigaction action {};
        sigaction(SIGCHLD, nullptr, &action);
        return action;
    }
    // The exit status of a child that ends with 3; while_it_works is what the signal does
    // meanwhile.
    static int status_of_three(struct sigaction& while_it_works) {
        const char* const arguments[] = {"/bin/sh", "-c", "exit 3", nullptr};
        PtyChild child{};
        EXPECT_TRUE(pty_child_start(&child, arguments));
        while_it_works = now();
        while (!pty_child_ended(&child)) {
            pause_ms(1);
        }
        pty_child_hang_up(&child);
        pty_child_finish(&child);
        return pty_child_exit_status(&child);
    }

private:
    struct sigaction before_ {};
};

TEST_F(ChildSignal, KeepsAHandlerThatLosesNothing) {
    set(own_handler, SA_RESTART);
    struct sigaction meanwhile {};
    EXPECT_EQ(status_of_three(meanwhile), 3);
    EXPECT_EQ(meanwhile.sa_handler, own_handler) << "the program misses its other children's ends";
    EXPECT_EQ(now().sa_handler, own_handler);
}

TEST_F(ChildSignal, ThatWouldLoseTheExitStatusIsPutAsideAndBack) {
    struct sigaction meanwhile {};
    set(SIG_IGN, 0);
    EXPECT_EQ(status_of_three(meanwhile), 3) << "ignored";
    EXPECT_EQ(now().sa_handler, SIG_IGN);
    set(own_handler, SA_NOCLDWAIT);
    EXPECT_EQ(status_of_three(meanwhile), 3) << "not to be waited for";
    EXPECT_EQ(now().sa_handler, own_handler);
    EXPECT_EQ(now().sa_flags & SA_NOCLDWAIT, SA_NOCLDWAIT);
}

} // namespace
