// What cannot be started is said at once, and leaves nothing to undo.

#include "privilege/pty_child.h"

#include <gtest/gtest.h>

namespace {

TEST(ChildStart, WithNothingToRunStartsNothing) {
    const char* const nothing[] = {nullptr};
    PtyChild child{};
    EXPECT_FALSE(pty_child_start(&child, nothing)) << "a child that runs nothing is waited for";
    EXPECT_EQ(child.process, 0);
    EXPECT_EQ(child.master, -1);
    EXPECT_FALSE(pty_child_at_work());
}

} // namespace
