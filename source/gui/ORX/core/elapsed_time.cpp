// elapsed_time.cpp: differences between two times of the monotonic clock.
#include "gui/ORX/core/elapsed_time.h"

namespace {

constexpr long nanoseconds_per_second = 1'000'000'000;
constexpr long nanoseconds_per_millisecond = 1'000'000;

} // namespace

MonotonicTime monotonic_now() {
    MonotonicTime now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

float elapsed_seconds(const MonotonicTime& a, const MonotonicTime& b) {
    long seconds = static_cast<long>(b.tv_sec - a.tv_sec);
    long nanoseconds = b.tv_nsec - a.tv_nsec;
    if (nanoseconds < 0) {
        seconds -= 1;
        nanoseconds += nanoseconds_per_second;
    } else if (seconds < 0) {
        return -1.0F;
    }
    return static_cast<float>(static_cast<double>(seconds) +
                              static_cast<double>(nanoseconds) / 1e9);
}

std::int32_t elapsed_milliseconds_in_second(const MonotonicTime& a, const MonotonicTime& b) {
    long nanoseconds = b.tv_nsec - a.tv_nsec;
    if (nanoseconds < 0) {
        nanoseconds += nanoseconds_per_second;
    }
    return static_cast<std::int32_t>(nanoseconds / nanoseconds_per_millisecond);
}
