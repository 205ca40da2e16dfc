// event_target.h: which window an event belongs to, for the files that deliver events.
//
// A callback and its user_data are copied together under x_lock, while the slot still holds the
// event's window, and called with the lock released. Another thread may destroy the window or clear
// the callback in between; the call that is under way then still comes.
#pragma once

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_table.h"

template <typename Callback> struct EventTarget {
    WindowId id = no_window; // -1 when no slot holds the window
    void* user_data = nullptr;
    Callback callback = nullptr; // null when it is not set
};

// Looks a window up and copies one of its callbacks. With x_lock held.
template <typename Callback>
EventTarget<Callback> target_with_lock(const UiEngine* engine, Window window,
                                       std::atomic<Callback> WindowSlot::*member) {
    const WindowId id = window_from_x_window(engine, window);
    if (id == no_window) {
        return {};
    }
    const WindowSlot& slot = engine->windows[id];
    return {id, slot.user_data, slot.*member};
}

// The same, taking x_lock.
template <typename Callback>
EventTarget<Callback> find_target(UiEngine* engine, Window window,
                                  std::atomic<Callback> WindowSlot::*member) {
    const XLockGuard x_guard(engine);
    return target_with_lock(engine, window, member);
}
