// clipboard.cpp: asking the owner of the desktop's clipboard for its text.
#include "gui/ORX/core/clipboard.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/paste_transfer.h"
#include "gui/ORX/core/reply_memory.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

#include <X11/Xatom.h>

void clipboard_request_paste(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    // A window that is not on screen cannot take the focus, and the server says so with an error.
    const XErrorTrap trap(engine);
    const Window window = engine->windows[id].window;
    const Atom clipboard = XInternAtom(display, "CLIPBOARD", False);
    XSetInputFocus(display, window, RevertToPointerRoot, CurrentTime);
    if (XGetSelectionOwner(display, clipboard) == 0) {
        return;
    }
    if (engine->converted_paste) {
        return paste_begin(engine, window);
    }
    // The answer of an earlier paste may still stand there, and a refusal must not bring it back.
    XDeleteProperty(display, window, XA_PRIMARY);
    XConvertSelection(display, clipboard, XA_STRING, XA_PRIMARY, window, CurrentTime);
    XFlush(display);
}

void clipboard_forget_paste(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display != nullptr) {
        const XErrorTrap trap(engine);
        XDeleteProperty(display, engine->windows[id].window, XA_PRIMARY);
    }
}

void clipboard_free_text(unsigned char* text) {
    free_reply(text);
}
