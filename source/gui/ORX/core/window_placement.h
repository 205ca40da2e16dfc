// window_placement.h: where windows go and where they stand. Device pixels of the root window;
// every operation takes x_lock.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

// Half the root window's width and height; 0, 0 when closed or on failure.
void screen_centre(UiEngine* engine, std::int32_t* x, std::int32_t* y);

// Puts a window of width x height design pixels under the pointer when *x and *y are both 0, kept
// on the screen; a position of the caller's stays. false, with 0, 0, when the pointer cannot be
// asked for.
[[nodiscard]] bool place_near_pointer(UiEngine* engine, std::int32_t* x, std::int32_t* y,
                                      std::int32_t width, std::int32_t height, float scale);

// Position of the window manager's frame round the window; 0, 0 on failure.
void window_root_position(UiEngine* engine, WindowId id, std::int32_t* x, std::int32_t* y);
