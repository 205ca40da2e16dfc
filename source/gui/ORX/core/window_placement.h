// window_placement.h: where windows go and where they stand. Device pixels of the default screen's
// root window; every operation takes x_lock and may be called on any thread.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

// Half the root window's width and height; 0, 0 when closed or on failure.
void screen_centre(UiEngine* engine, std::int32_t* x, std::int32_t* y);

// Puts a window of width x height design pixels under the pointer when *x and *y are both 0:
// centred on it, with the top edge 16 design pixels above it, and kept on the screen. A position of
// the caller's stays. false, with 0, 0, when the pointer cannot be asked for (display closed,
// pointer on another screen).
[[nodiscard]] bool place_near_pointer(UiEngine* engine, std::int32_t* x, std::int32_t* y,
                                      std::int32_t width, std::int32_t height, float scale);

// Position of the window manager's frame round the window, or of the window itself without a frame;
// 0, 0 for a free slot, a closed display, or more than 10 levels of frames.
void window_root_position(UiEngine* engine, WindowId id, std::int32_t* x, std::int32_t* y);
