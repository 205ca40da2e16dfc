// window_properties.h: what the window manager is told about a window, its input and its size.
//
// Every operation takes x_lock (window_resize table_lock before it), may be called on any thread
// and in callbacks, and does nothing for a slot not in use or a closed display. Sizes and positions
// are device pixels, texts zero-terminated and copied. No X error ends the process: what the server
// refuses has no effect. Each operation has reached the server when it returns.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

// WM_NAME as STRING and _NET_WM_NAME as UTF8_STRING, both with the same bytes.
void window_set_title(UiEngine* engine, WindowId id, const char* utf8_text);
// WM_CLASS: the text as both the instance's and the class's name.
void window_set_class_hint(UiEngine* engine, WindowId id, const char* text);
// Makes the window one of its owner's: the owner's WM_CLASS, and WM_TRANSIENT_FOR, by which window
// managers keep it above the owner. Nothing without an owner that is in use.
void window_set_owner(UiEngine* engine, WindowId id, WindowId owner);
// _NET_WM_WINDOW_TYPE and, for above, _NET_WM_STATE: one atom each, which window managers read when
// the window is mapped.
void window_set_type_utility(UiEngine* engine, WindowId id);
void window_set_type_splash(UiEngine* engine, WindowId id);
void window_set_above(UiEngine* engine, WindowId id);
// WM_PROTOCOLS: this one atom, in place of the close request set at creation.
void window_set_protocols(UiEngine* engine, WindowId id, unsigned long atom);

// WM_NORMAL_HINTS. The size is the window's own, the minimum always set, and the base size the
// same; maximum, fixed aspect and position are each set only when one of its two numbers is not 0.
void window_set_size_hints(UiEngine* engine, std::int32_t min_width, std::int32_t min_height,
                           std::int32_t max_width, std::int32_t max_height, std::int32_t aspect_x,
                           std::int32_t aspect_y, std::int32_t x, std::int32_t y, WindowId id);

void window_map(UiEngine* engine, WindowId id);
// The events a window gets: keys, buttons, exposure, structure, and motion while a button is held;
// with the motion flag also motion without one. An earlier choice is replaced.
void window_select_input(UiEngine* engine, WindowId id);
void window_select_input_with_motion(UiEngine* engine, WindowId id, bool motion);

// Gives the window the keyboard when there is no window manager, whose task that is otherwise. The
// window is mapped; when it ends, the keyboard follows the pointer again.
void window_take_keyboard_without_manager(UiEngine* engine, WindowId id);

// Resizing; sides outside 1 to 65535 do nothing. The first one records the size in the slot.
void window_resize(UiEngine* engine, WindowId id, std::int32_t width, std::int32_t height);
void x_window_resize(UiEngine* engine, unsigned long x_window, std::int32_t width,
                     std::int32_t height);

// Size of any X window; 0, 0 when it does not exist or the display is closed.
void x_window_size(UiEngine* engine, unsigned long x_window, std::int32_t* width,
                   std::int32_t* height);

// Grabs, asynchronous, with events for the program's other windows reported as usual. A grab of a
// window that is not viewable, or that another client holds, has no effect.
void window_grab_pointer(UiEngine* engine, WindowId id);
void window_ungrab_pointer(UiEngine* engine);
void window_grab_keyboard(UiEngine* engine, WindowId id);
void window_ungrab_keyboard(UiEngine* engine);
void window_grab_all_keys(UiEngine* engine, WindowId id);
void window_ungrab_all_keys(UiEngine* engine, WindowId id);
