// pointer_tracking.h: how far the pointer moved since it was last looked at. Device pixels, event
// thread only, no lock. Store an origin before the first delta.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

void pointer_set_origin(UiEngine* engine, double x, double y);
void pointer_get_origin(const UiEngine* engine, double* x, double* y);

// x - last x, and last y - y (a downward move is negative); each stores its argument.
[[nodiscard]] float pointer_delta_x(UiEngine* engine, double x);
[[nodiscard]] float pointer_delta_y(UiEngine* engine, double y);
[[nodiscard]] std::int32_t pointer_delta_x_int(UiEngine* engine, std::int32_t x);
[[nodiscard]] std::int32_t pointer_delta_y_int(UiEngine* engine, std::int32_t y);
