// window_input.cpp: which events a window gets, the keyboard, and grabs of it and the pointer.
#include "gui/ORX/core/window_properties.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

namespace {

constexpr long usual_events = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask |
                              ButtonMotionMask | ExposureMask | StructureNotifyMask;

// Only one client can ask for this event of the root window, and a window manager must.
bool has_window_manager(Display* display) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(display, DefaultRootWindow(display), &attributes) == 0 ||
           (attributes.all_event_masks & SubstructureRedirectMask) != 0;
}

} // namespace

void window_select_input(UiEngine* engine, WindowId id) {
    window_select_input_with_motion(engine, id, false);
}

void window_select_input_with_motion(UiEngine* engine, WindowId id, bool motion) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XSelectInput(display, engine->windows[id].window,
                 motion ? usual_events | PointerMotionMask : usual_events);
}

void window_take_keyboard_without_manager(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    // A window that is not on screen cannot take the focus, and the server says so with an error.
    const XErrorTrap trap(engine);
    if (!has_window_manager(display)) {
        XSetInputFocus(display, engine->windows[id].window, RevertToPointerRoot, CurrentTime);
    }
}

void window_grab_pointer(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XGrabPointer(display, engine->windows[id].window, True,
                 ButtonPressMask | ButtonReleaseMask | ButtonMotionMask, GrabModeAsync,
                 GrabModeAsync, 0, 0, CurrentTime);
}

void window_ungrab_pointer(UiEngine* engine) {
    const XLockGuard x_guard(engine);
    if (Display* display = engine_display(engine); display != nullptr) {
        const XErrorTrap trap(engine);
        XUngrabPointer(display, CurrentTime);
    }
}

void window_grab_keyboard(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XGrabKeyboard(display, engine->windows[id].window, True, GrabModeAsync, GrabModeAsync,
                  CurrentTime);
}

void window_ungrab_keyboard(UiEngine* engine) {
    const XLockGuard x_guard(engine);
    if (Display* display = engine_display(engine); display != nullptr) {
        const XErrorTrap trap(engine);
        XUngrabKeyboard(display, CurrentTime);
    }
}

void window_grab_all_keys(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XGrabKey(display, AnyKey, AnyModifier, engine->windows[id].window, True, GrabModeAsync,
             GrabModeAsync);
}

void window_ungrab_all_keys(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XUngrabKey(display, AnyKey, AnyModifier, engine->windows[id].window);
}
