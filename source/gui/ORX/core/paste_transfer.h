// paste_transfer.h: fetching the clipboard's text in the ways that today's programs offer it.
//
// UTF8_STRING is asked for first, then STRING; text that comes in pieces (INCR) is put together.
// One transfer is under way at a time, for one window, and a newer one takes its place. What cannot
// be had, has more than a megabyte, or does not go on for five seconds comes to nothing. No copy of
// the text stays: it may be a password. For the core's own files; x_lock held.
#pragma once

#include "gui/ORX/core/elapsed_time.h"
#include "gui/ORX/core/window_id.h"

#include <X11/Xlib.h>

#include <cstddef>

struct PasteTransfer {
    Window window = 0; // that the text is for, 0 = none is under way
    Atom target = 0;   // what was asked for last
    bool in_pieces = false;
    unsigned char* text = nullptr; // the pieces so far, owned
    std::size_t size = 0;
    std::size_t capacity = 0;
    MonotonicTime last_sign; // when the owner was last asked, or has last sent something
};

// Asks the owner of the clipboard. Errors trapped.
void paste_begin(UiEngine* engine, Window window);

// Each takes an event that may belong to the transfer. true when that has ended: then text is the
// whole of it in the locale's encoding, for clipboard_free_text, or null when there is none. Errors
// trapped.
[[nodiscard]] bool paste_take_answer(UiEngine* engine, const XSelectionEvent& event,
                                     unsigned char** text);
[[nodiscard]] bool paste_take_piece(UiEngine* engine, const XPropertyEvent& event,
                                    unsigned char** text);

// Forgets a transfer that does not go on. Traps errors itself.
void paste_give_up_when_late(UiEngine* engine);

// Forgets the transfer and wipes what it had, without a word to the server.
void paste_forget(UiEngine* engine);
