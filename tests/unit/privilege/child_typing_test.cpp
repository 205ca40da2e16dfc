// Typing ends when the child does not read, and says so.

#include "privilege/pty_child.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>

#include <string>

namespace {

TEST(ChildTyping, ToAChildThatDoesNotReadIsGivenUp) {
    const char* const arguments[] = {"/bin/sh", "-c", "stty raw; echo; sleep 60", nullptr};
    PtyChild child{};
    ASSERT_TRUE(pty_child_start(&child, arguments));
    char output = 0;
    while (pty_child_read(&child, &output, 1, 100) == 0) {
    }
    ASSERT_NE(fcntl(child.master, F_GETFL) & O_NONBLOCK, 0) << "typing would wait for ever";

    const std::string more_than_it_takes(1'000'000, 'x');
    const std::int64_t start = monotonic_ms();
    EXPECT_FALSE(pty_child_type(&child, more_than_it_takes.data(), more_than_it_takes.size(), 200))
        << "what the child has not taken counts as typed";
    EXPECT_GE(monotonic_ms() - start, 200);

    kill(child.process, SIGKILL);
    while (!pty_child_ended(&child)) {
        pause_ms(1);
    }
    pty_child_hang_up(&child);
    pty_child_finish(&child);
}

} // namespace
