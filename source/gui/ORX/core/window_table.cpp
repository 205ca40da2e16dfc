// window_table.cpp: ending windows, and questions about them.
#include "gui/ORX/core/window_table.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

int window_destroy(UiEngine* engine, WindowId id) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return 0;
    }
    XErrorTrap trap(engine);
    XDestroyWindow(display, engine->windows[id].window);
    give_back_slot(engine, id);
    return trap.finish();
}

void window_forget(UiEngine* engine, WindowId id) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    if (window_display(engine, id) == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    give_back_slot(engine, id);
}

void window_destroy_all(UiEngine* engine) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    for (WindowId id = 0; id < window_capacity; ++id) {
        end_window(engine, id);
    }
    XFlush(display);
}

void window_clear_callbacks_unlocked(UiEngine* engine, WindowId id) {
    WindowSlot& slot = engine->windows[id];
    slot.on_configure = nullptr;
    slot.on_paint = nullptr;
    slot.on_button_press = nullptr;
    slot.on_button_release = nullptr;
    slot.on_motion = nullptr;
    slot.on_reparent = nullptr;
    slot.on_client_message = nullptr;
    slot.on_create_notify = nullptr;
    slot.spare_callback = nullptr;
    slot.on_double_click = nullptr;
    slot.on_key_press = nullptr;
    slot.on_key_release = nullptr;
    slot.on_selection = nullptr;
    slot.on_tick = nullptr;
}

void window_clear_callbacks(UiEngine* engine, WindowId id) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    window_clear_callbacks_unlocked(engine, id);
}

int window_is_valid(UiEngine* engine, unsigned long x_window) {
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return 0;
    }
    XErrorTrap trap(engine);
    XWindowAttributes attributes{};
    XGetWindowAttributes(display, x_window, &attributes);
    return trap.finish();
}

bool window_is_gone(UiEngine* engine, WindowId id) {
    const unsigned long x_window = window_x_window(engine, id);
    return x_window == 0 || window_is_valid(engine, x_window) != 0;
}

int window_reparent(UiEngine* engine, WindowId id, unsigned long new_parent) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return 0;
    }
    XErrorTrap trap(engine);
    XReparentWindow(display, engine->windows[id].window, new_parent, 0, 0);
    return trap.finish();
}

unsigned long window_x_window(const UiEngine* engine, WindowId id) {
    if (id < 0 || engine->windows[id].in_use == 0) {
        return 0;
    }
    return engine->windows[id].window;
}

WindowId window_from_x_window(const UiEngine* engine, unsigned long x_window) {
    if (x_window == 0) {
        return no_window; // every free slot holds 0
    }
    for (WindowId id = 0; id < window_capacity; ++id) {
        if (engine->windows[id].window == x_window) {
            return id;
        }
    }
    return no_window;
}

std::uint32_t window_width(const UiEngine* engine, WindowId id) {
    return engine->windows[id].width;
}

std::uint32_t window_height(const UiEngine* engine, WindowId id) {
    return engine->windows[id].height;
}

bool window_table_empty(const UiEngine* engine) {
    return first_used_slot(engine) == no_window;
}
