// drawable_access.h: reaching a window's or pixmap's pixels on the server.
//
// Everything here is called with x_lock held. A drawable that the server has just lost makes no
// error that ends the process: the calls are trapped and answered before they return.
#pragma once

#include "gui/ORX/core/engine.h"
#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/wire_area.h"

// The record of an open window, or null for a free slot, a number out of range or a closed display.
[[nodiscard]] WindowSlot* drawable_slot(UiEngine* engine, WindowId id);

// Ends a trap that trap_x_errors began: waits for the server's answers and returns the error code,
// 0 = none.
int answer_trapped_calls(UiEngine* engine);

// Copies a rectangle of the surface into the drawable; nothing for a null surface.
void put_surface(UiEngine* engine, Drawable drawable, ImageSurface* surface, CopyArea area);
