// event_loop.h: the event thread's body and how to end it.
#pragma once

#include "gui/ORX/core/window_id.h"

// Runs the loop until stop_requested: drains events, paints damage, sleeps 1 to 1.5 ms, ticks, in
// this order. Destroys every window before it returns and clears stop_requested; the display stays
// open. May start before the display is opened and outlives a lost connection: then it only ticks.
// Holds loop_lock throughout; call it with no lock held, on one thread at a time.
void event_loop_run(UiEngine* engine);

// Asks the loop to end after the iteration in which it sees the request, or at once when it has not
// begun. Any thread, callbacks too; no lock.
void event_loop_stop(UiEngine* engine);
