// elapsed_time_test.cpp: both measures between two times of the monotonic clock.
#include <gtest/gtest.h>

#include "gui/ORX/core/elapsed_time.h"

namespace {

MonotonicTime at(time_t seconds, long nanoseconds) {
    MonotonicTime time{};
    time.tv_sec = seconds;
    time.tv_nsec = nanoseconds;
    return time;
}

TEST(ElapsedSeconds, AddsSecondsAndNanoseconds) {
    EXPECT_FLOAT_EQ(elapsed_seconds(at(10, 100'000'000), at(12, 350'000'000)), 2.25F);
}

TEST(ElapsedSeconds, BorrowsASecondWhenNanosecondsRunBackwards) {
    EXPECT_FLOAT_EQ(elapsed_seconds(at(10, 900'000'000), at(11, 100'000'000)), 0.2F);
}

TEST(ElapsedSeconds, SaysMinusOneForAnEarlierSecondTime) {
    EXPECT_FLOAT_EQ(elapsed_seconds(at(12, 0), at(10, 500'000'000)), -1.0F);
}

TEST(ElapsedSeconds, StaysNegativeWhenAnEarlierTimeHadToBorrow) {
    EXPECT_FLOAT_EQ(elapsed_seconds(at(10, 500'000'000), at(10, 0)), -0.5F);
}

TEST(ElapsedMilliseconds, IgnoresWholeSeconds) {
    EXPECT_EQ(elapsed_milliseconds_in_second(at(10, 0), at(11, 500'000'000)), 500);
    EXPECT_EQ(elapsed_milliseconds_in_second(at(10, 0), at(12, 0)), 0);
    EXPECT_EQ(elapsed_milliseconds_in_second(at(10, 0), at(11, 20'000'000)), 20);
}

TEST(ElapsedMilliseconds, WrapsWithinTheSecondAndTruncates) {
    EXPECT_EQ(elapsed_milliseconds_in_second(at(10, 990'000'000), at(11, 5'999'999)), 15);
}

} // namespace
