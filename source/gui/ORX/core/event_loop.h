// event_loop.h: the event thread's body and how to end it.
#pragma once

#include "gui/ORX/core/window_id.h"

// Runs the loop until stop_requested: drains events, paints damage, sleeps 1 ms, ticks. Destroys
// every window before it returns; the display stays open. Holds loop_lock throughout.
void event_loop_run(UiEngine* engine);

// Asks the loop to end after the iteration in which it sees the request. Any thread, no lock.
void event_loop_stop(UiEngine* engine);
