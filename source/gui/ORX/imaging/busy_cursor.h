// busy_cursor.h: the watch cursor.
#pragma once

#include "gui/ORX/core/window_id.h"

// Shows the watch cursor on the window (busy) or takes it away. Takes x_lock. Does nothing for a
// free slot or a closed display.
void orx_window_set_busy_cursor(UiEngine* engine, WindowId id, bool busy);
