// input_method.cpp: opening, using and outliving an input method.
#include "gui/ORX/core/input_method.h"

#include "gui/ORX/core/console_line.h"
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/core/x_error_trap.h"

namespace {

// Xlib frees the input method and every context of it when the server of the input method ends.
// It finds out inside some Xlib call, so x_lock is held here.
void forget_input_method(XIM, XPointer engine_pointer, XPointer) {
    auto* engine = reinterpret_cast<UiEngine*>(engine_pointer);
    engine->input_method = nullptr;
    for (WindowSlot& slot : engine->windows) {
        slot.input_context = nullptr;
    }
}

Bool is_end_of_another_window(Display*, XEvent* event, XPointer engine_pointer) {
    const auto* engine = reinterpret_cast<const UiEngine*>(engine_pointer);
    return event->type == DestroyNotify &&
                   window_from_x_window(engine, event->xdestroywindow.event) == no_window
               ? True
               : False;
}

// Shows Xlib the end of the input method's window, should that be waiting in the queue. Xlib looks
// for it once there has been a context.
void notice_end_of_input_method(UiEngine* engine) {
    if (engine->input_method == nullptr || engine->connection_lost) {
        return;
    }
    XSync(engine->display, False);
    XEvent event;
    while (!engine->connection_lost &&
           XCheckIfEvent(engine->display, &event, is_end_of_another_window,
                         reinterpret_cast<XPointer>(engine)) != False) {
        static_cast<void>(XFilterEvent(&event, 0));
    }
}

void open_and_watch(UiEngine* engine) {
    engine->input_method = XOpenIM(engine->display, nullptr, nullptr, nullptr);
    if (engine->input_method != nullptr) {
        XIMCallback ended{reinterpret_cast<XPointer>(engine), forget_input_method};
        XSetIMValues(engine->input_method, XNDestroyCallback, &ended, nullptr);
    }
}

} // namespace

void open_input_method(UiEngine* engine) {
    engine->keyboard_alone = false;
    open_and_watch(engine);
    if (engine->input_method == nullptr) {
        print_line("** ORX-UI Engine: Could not open Input Method (XIM)");
    }
}

void close_input_method(UiEngine* engine) {
    notice_end_of_input_method(engine);
    if (engine->input_method != nullptr) {
        print_line("ORX-UI Engine: Closing Input Method (XIM)");
        XCloseIM(engine->input_method);
    }
    engine->input_method = nullptr;
}

XIC make_input_context(UiEngine* engine, Window window) {
    notice_end_of_input_method(engine);
    if (engine->input_method == nullptr) {
        return nullptr;
    }
    return XCreateIC(engine->input_method, XNInputStyle,
                     static_cast<XIMStyle>(XIMPreeditNothing | XIMStatusNothing), XNClientWindow,
                     window, XNFocusWindow, window, nullptr);
}

void destroy_input_context(UiEngine* engine, XIC* context) {
    if (*context != nullptr) {
        notice_end_of_input_method(engine);
    }
    if (*context != nullptr && engine->input_method != nullptr) {
        XDestroyIC(*context);
    }
    *context = nullptr;
}

void engine_use_keyboard_alone(UiEngine* engine) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    if (engine_display(engine) == nullptr || engine->input_method != nullptr ||
        engine->keyboard_alone) {
        return;
    }
    engine->keyboard_alone = true; // once: what Xlib brings along never ends
    const XErrorTrap trap(engine);
    if (XSetLocaleModifiers("@im=none") == nullptr) {
        return;
    }
    open_and_watch(engine);
    for (WindowSlot& slot : engine->windows) {
        if (slot.in_use != 0) {
            slot.input_context = make_input_context(engine, slot.window);
        }
    }
}
