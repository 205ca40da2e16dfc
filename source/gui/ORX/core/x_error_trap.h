// x_error_trap.h: a scope in which X protocol errors are collected instead of ending the process.
//
// Any window may be destroyed by the server or by another client between two requests, so every
// group of requests that names a window stands in such a scope. Errors come back asynchronously:
// the scope ends with a round trip to the server if a request was made within it, so that no error
// of its own requests arrives later, outside. One XErrorTrap per hold of x_lock at a time; traps do
// not nest.
#pragma once

#include "gui/ORX/core/window_id.h"

class XErrorTrap {
public:
    // With x_lock held, and until the trap has ended. The display may be closed: then nothing is
    // sent and the answer is 0.
    explicit XErrorTrap(UiEngine* engine);
    ~XErrorTrap();
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

    // Ends the trap early. Returns the last X error code seen in it, 0 = none.
    int finish();

private:
    UiEngine* engine_;
    unsigned long first_request_ = 0;
    bool active_ = true;
};
