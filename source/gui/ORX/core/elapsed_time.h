// elapsed_time.h: differences between two times of the monotonic clock. Pure, no display.
#pragma once

#include <cstdint>
#include <ctime>

using MonotonicTime = timespec;

[[nodiscard]] MonotonicTime monotonic_now();

// Seconds from a (earlier) to b (later); negative when b lies before a, and then -1 unless the
// nanoseconds had to borrow.
[[nodiscard]] float elapsed_seconds(const MonotonicTime& a, const MonotonicTime& b);

// Milliseconds from a to b within the second: whole seconds are ignored on purpose, so that 1.5 s
// gives 500 and 2 s gives 0.
[[nodiscard]] std::int32_t elapsed_milliseconds_in_second(const MonotonicTime& a,
                                                          const MonotonicTime& b);
