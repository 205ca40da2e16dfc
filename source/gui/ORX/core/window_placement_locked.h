// window_placement_locked.h: window positions for the core's own files.
#pragma once

#include <X11/Xlib.h>

#include <cstdint>

// Position of the outermost window round this one below the root; 0, 0 when it cannot be found.
// With x_lock held and errors trapped.
void outer_position(Display* display, Window window, std::int32_t* x, std::int32_t* y);
