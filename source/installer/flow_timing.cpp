// flow_timing.cpp: tick measurement and waits.
#include "installer/flow_timing.h"

#include "gui/ORX/core/elapsed_time.h"
#include "installer/installer_state.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace {

constexpr std::int32_t measured_sleeps = 50;

} // namespace

std::int32_t measure_tick() {
    const MonotonicTime start = monotonic_now();
    for (std::int32_t i = 0; i < measured_sleeps; ++i) {
        usleep(1000);
    }
    const std::int32_t elapsed = elapsed_milliseconds_in_second(start, monotonic_now());
    return std::max(elapsed / measured_sleeps, 1);
}

void wait_seconds(std::int32_t seconds) {
    const std::int32_t rounds = (seconds * 1000) / installer.tick_ms;
    for (std::int32_t i = 0; i < rounds && installer.cancel_requested == 0; ++i) {
        installer.steps += 1;
        usleep(1000);
    }
}

void sleep_milliseconds(std::int32_t milliseconds) {
    installer.steps += 1;
    timespec rest{milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}
