// clipboard.h: asking the desktop's clipboard for its text.
#pragma once

#include "gui/ORX/core/window_id.h"

// Gives the window the input focus and asks the owner of CLIPBOARD for STRING text. The answer
// reaches the window's on_selection; with no owner none comes. Takes x_lock, any thread. Does
// nothing for a free slot or a closed display.
void clipboard_request_paste(UiEngine* engine, WindowId id);
