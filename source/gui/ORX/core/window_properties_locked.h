// window_properties_locked.h: property writing for the core's own files, with x_lock held and
// errors trapped.
#pragma once

#include <X11/Xlib.h>

// Sets a property of type ATOM, format 32, to one atom; both are named.
void set_atom_property(Display* display, Window window, const char* property, const char* value);

// Sets _NET_WM_WINDOW_TYPE.
void set_window_type(Display* display, Window window, const char* type);
