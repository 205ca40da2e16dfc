// flow_timing.h: the flow's sleeps, which end early when the installation is cancelled.
#pragma once

#include <cstdint>

// Milliseconds that a nominal 1 ms sleep takes here, rounded down, at least 1.
[[nodiscard]] std::int32_t measure_tick();

// Sleeps for n seconds by the measured tick, or until the installation is cancelled.
void wait_seconds(std::int32_t seconds);

// Sleeps for the whole time, signals notwithstanding.
void sleep_milliseconds(std::int32_t milliseconds);
