// ui_scale.h: the density of the screen and the one factor by which everything is enlarged.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

// The UI scale, 1.0 to 2.0 in steps of 0.125, computed once from the screen's density, or from
// ORXDPI, and then kept. Opens a connection of its own; takes no lock; main thread. 1.0 without a
// display.
[[nodiscard]] float orx_ui_scale(UiEngine* engine);

// Dots per inch of each axis of the default screen. Returns the number of screens, or 0 with the
// outputs untouched when the display is closed. Takes x_lock.
std::int32_t orx_screen_dpi(UiEngine* engine, std::int32_t* vertical, std::int32_t* horizontal);
