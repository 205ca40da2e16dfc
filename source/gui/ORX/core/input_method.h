// input_method.h: what turns keys into text: the person's input method, or the keyboard alone.
//
// An input method may be a program of its own, and Xlib waits for its answers without end. So the
// operations that ask it first learn whether it has ended.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <X11/Xlib.h>

// Types without the person's input method from now on, when there is none or it has ended: opens
// the one that Xlib brings along, and gives every window a context of it. Does nothing while there
// is an input method, or without a display. Takes table_lock and x_lock, any thread.
void engine_use_keyboard_alone(UiEngine* engine);

// The rest is for the core, with x_lock held and the display open.

// Opens the input method that the locale modifiers name; a line says when that fails.
void open_input_method(UiEngine* engine);

// The contexts of all windows must have been destroyed. Errors trapped.
void close_input_method(UiEngine* engine);

// A context for that window; null without an input method. Errors trapped.
[[nodiscard]] XIC make_input_context(UiEngine* engine, Window window);

// Ends a context and sets it to null; one that has ended with its input method is only forgotten.
// Errors trapped.
void destroy_input_context(UiEngine* engine, XIC* context);
