// clipboard.h: asking the desktop's clipboard for its text.
#pragma once

#include "gui/ORX/core/window_id.h"

// Gives the window the input focus (if it is viewable) and asks the owner of CLIPBOARD for STRING
// text (with engine_set_converted_paste for any text). The answer reaches the window's on_selection
// on the event thread: the whole text, or null when the owner refused or would send it in pieces.
// With no owner, or one that dies before it answers, nothing comes. Takes x_lock, any thread. Does
// nothing for a free slot or a closed display.
void clipboard_request_paste(UiEngine* engine, WindowId id);

// Takes the text of the last answer off the window. It stays there otherwise, for every client to
// read, until the next request or the window's end. Takes x_lock, any thread.
void clipboard_forget_paste(UiEngine* engine, WindowId id);

// Overwrites and frees the text that on_selection was given. Null is ignored. No lock, any thread.
void clipboard_free_text(unsigned char* text);
