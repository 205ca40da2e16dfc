// window_id.h: the handle by which every window of the program is named.
#pragma once

#include <cstdint>

// Index 0 to 254 into the engine's table of windows; -1 reports failure.
using WindowId = std::int32_t;

inline constexpr WindowId no_window = -1;
inline constexpr std::int32_t window_capacity = 255;

struct UiEngine;
