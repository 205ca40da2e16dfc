// window_records.h: the bookkeeping of the window table, for the core's own files.
//
// Everything here is called with table_lock and x_lock held, except where it says otherwise.
#pragma once

#include "gui/ORX/core/window_slot.h"

#include <cstdint>

// Puts every entry of live_order to -1. The engine may still be without locks.
void clear_live_order(UiEngine* engine);

// Appends a handle at the first free entry of live_order; without one it is not listed.
void add_to_live_order(UiEngine* engine, WindowId id);

// Takes a handle out of live_order; those after it move to the front in their old order.
void remove_from_live_order(UiEngine* engine, WindowId id);

// Copies live_order as it stands. Returns how many windows it lists. Takes table_lock.
std::int32_t copy_live_order(UiEngine* engine, WindowId ids[window_capacity]);

// The lowest slot that holds no window, or -1.
[[nodiscard]] WindowId first_free_slot(const UiEngine* engine);

// The lowest slot that holds a window, or -1. Needs no lock.
[[nodiscard]] WindowId first_used_slot(const UiEngine* engine);

// Puts a slot to its defaults and frees its damage. on_close, aux_pointer, x, y and delete_atom
// stay as they were.
void window_reset_slot(UiEngine* engine, WindowId id);

// Destroys the input context and the pixmap that belong to a window, with errors trapped.
void free_window_resources(UiEngine* engine, WindowSlot* slot);

// Gives back a slot, with its resources and its place in live_order; the X window is left to the
// caller. Errors trapped.
void give_back_slot(UiEngine* engine, WindowId id);

// Destroys a window that is in use with its resources and resets its slot; live_order is left to
// the caller. Errors trapped.
void end_window(UiEngine* engine, WindowId id);

// Ends every window and empties live_order. Errors trapped.
void end_all_windows(UiEngine* engine);

// The display when it is open and the slot holds a window, else null. With x_lock held, table_lock
// is not needed.
[[nodiscard]] Display* window_display(const UiEngine* engine, WindowId id);
