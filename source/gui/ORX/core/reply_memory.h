// reply_memory.h: a window property's text in memory that is overwritten once it is let go of.
//
// The text may be a password. Xlib keeps what the server answers in memory of its own, which it
// frees as it is, and reads the connection through a buffer that stays as it was. For the core's
// own files; x_lock held, errors trapped.
#pragma once

#include <X11/Xlib.h>

struct PropertyText {
    unsigned char* data = nullptr; // zero-terminated, for free_reply; null when there is none
    unsigned long size = 0;        // bytes, without the zero
    Atom type = 0;                 // of the property, 0 = there is none
};

// The property's value if its type is the wanted one (AnyPropertyType: whatever it is) and its
// format that of text; the property stays. Of another value, and of the answer itself, nothing is
// left in memory that this can reach: the freed answer and the connection's buffer are overwritten
// by asking for something harmless as large, through a property of the window that is there only
// meanwhile.
[[nodiscard]] PropertyText read_text_property(Display* display, Window window, Atom property,
                                              Atom wanted);

// Overwrites and frees what XGetWindowProperty gave, whatever zeros stand in it. Null is ignored.
// Needs no lock.
void free_reply(unsigned char* data);
