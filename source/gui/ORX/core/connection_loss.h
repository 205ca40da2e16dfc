// connection_loss.h: outliving the end of the X server or of the connection to it.
//
// Xlib ends the process when a connection breaks, which would leave behind whatever the program
// still has to tidy up. A watched display reports the loss instead, and the program unwinds.
#pragma once

#include <X11/Xlib.h>

#include <atomic>

// XOpenDisplay(nullptr), which also gives null when the server goes away in the middle of it. What
// Xlib had allocated for that display is not freed then.
[[nodiscard]] Display* open_display_or_none();

// Makes the loss of this display's connection set *lost (if not null) on the thread that meets it.
// The Xlib call in progress then returns to its caller as failed, and the display may not be used
// again, not even to close it. Call it right after opening, with the lock held under which the
// display is used. lost must live as long as the display.
//
// Xlib older than 1.7 has no way to return: there the loss ends the process with exit status 0,
// after last_act and the functions registered with atexit.
void watch_connection(Display* display, std::atomic<bool>* lost);

// What is to be done before such an end; null for nothing. It runs on the thread that met the loss,
// in the middle of an Xlib call, with that thread's locks held: it must call nothing of the engine.
// The process has one. Any thread.
void set_last_act(void (*last_act)());
