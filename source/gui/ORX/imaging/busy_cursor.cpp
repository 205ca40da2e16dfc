// busy_cursor.cpp: the watch cursor.
#include "gui/ORX/imaging/busy_cursor.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/x_error_trap.h"

#include <X11/cursorfont.h>

void orx_window_set_busy_cursor(UiEngine* engine, WindowId id, bool busy) {
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    const WindowSlot& slot = engine->windows[id];
    if (display == nullptr || slot.in_use == 0) {
        return;
    }
    const XErrorTrap trap(engine);
    if (engine->busy_cursor == 0) {
        engine->busy_cursor = XCreateFontCursor(display, XC_watch);
    }
    if (busy) {
        XDefineCursor(display, slot.window, engine->busy_cursor);
    } else {
        XUndefineCursor(display, slot.window);
    }
    XFlush(display);
}
