// blank_answer.h: an answer of zeros from the server, through the same memory as an answer before.
//
// For reply_memory alone; x_lock held, errors trapped.
#pragma once

#include <X11/Xlib.h>

// The buffer through which xcb reads the connection has 16 KiB.
inline constexpr unsigned long more_than_the_buffer = 20'000;

// Has the server answer with so many bytes of zeros, at most more_than_the_buffer, by way of the
// window's property, which stays, and lets go of them. With more_than_the_buffer all of the buffer
// is overwritten: the server sends the head of an answer by itself, and what follows a head that
// was read alone goes past the buffer, so nothing is read before all of it is there. A server that
// takes longer than a tenth of a second is not waited for.
void take_blank_answer(Display* display, Window window, Atom property, unsigned long size);
