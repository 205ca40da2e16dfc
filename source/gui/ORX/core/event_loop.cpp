// event_loop.cpp: the event thread's body: events, damage, ticks, and the end of all windows.
#include "gui/ORX/core/event_loop.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/event_dispatch.h"
#include "gui/ORX/core/paste_transfer.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr useconds_t pause_microseconds = 1'000;
// How much longer the system may let the pause last.
constexpr unsigned long pause_slack_nanoseconds = 500'000;

enum class Fetched { nothing, filtered, event };

int pending_events(UiEngine* engine) {
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    paste_give_up_when_late(engine);
    return display == nullptr ? 0 : XPending(display);
}

// An input method takes events off the queue by itself, so the count that was seen may be too
// high; waiting for an event that is no longer there would hold x_lock for ever.
Fetched fetch_event(UiEngine* engine, XEvent* event) {
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr || XEventsQueued(display, QueuedAlready) == 0) {
        return Fetched::nothing;
    }
    const XErrorTrap trap(engine);
    XNextEvent(display, event);
    return XFilterEvent(event, 0) != False ? Fetched::filtered : Fetched::event;
}

void drain_events(UiEngine* engine) {
    const int count = pending_events(engine);
    for (int i = 0; i < count; ++i) {
        XEvent event;
        const Fetched fetched = fetch_event(engine, &event);
        if (fetched == Fetched::nothing) {
            return;
        }
        if (fetched == Fetched::event) {
            dispatch_event(engine, &event);
        }
    }
}

struct PaintCall {
    DamageRect rect;
    PaintCallback callback;
    void* user_data;
};

bool take_paint_call(UiEngine* engine, WindowId id, PaintCall* call) {
    const XLockGuard x_guard(engine);
    WindowSlot& slot = engine->windows[id];
    if (window_display(engine, id) == nullptr) {
        return false;
    }
    while (damage_count(&slot.damage) > 0) {
        const DamageRect rect = damage_pop(&slot.damage);
        if (rect.left != rect.right && rect.top != rect.bottom) {
            *call = {rect, slot.on_paint, slot.user_data};
            return true;
        }
    }
    return false;
}

void paint_window(UiEngine* engine, WindowId id) {
    const TableLockGuard table_guard(engine);
    PaintCall call;
    while (take_paint_call(engine, id, &call)) {
        if (call.callback != nullptr) {
            call.callback(call.rect.left, call.rect.top, call.rect.right - call.rect.left,
                          call.rect.bottom - call.rect.top, id, call.user_data);
        }
    }
}

// The walks go over a copy, so that a callback that ends a window makes them skip no other one.
void paint_damage(UiEngine* engine) {
    WindowId ids[window_capacity];
    const std::int32_t count = copy_live_order(engine, ids);
    for (std::int32_t i = 0; i < count; ++i) {
        if (engine->windows[ids[i]].in_use != 0) {
            paint_window(engine, ids[i]);
        }
    }
}

bool is_due(std::int32_t interval_ms, const MonotonicTime& last, const MonotonicTime& now) {
    return interval_ms != 0 && interval_ms < elapsed_milliseconds_in_second(last, now);
}

void run_engine_tick(UiEngine* engine) {
    EngineTickCallback callback = engine->tick_callback;
    if (callback != nullptr && !callback()) {
        // Only this one: it may have put another in its own place.
        engine->tick_callback.compare_exchange_strong(callback, nullptr);
    }
}

void run_window_tick(UiEngine* engine, WindowId id) {
    WindowSlot& slot = engine->windows[id];
    const Window window = slot.window;
    TickCallback callback = slot.on_tick;
    if (callback == nullptr || callback(slot.user_data)) {
        return;
    }
    if (slot.window == window) {
        slot.on_tick.compare_exchange_strong(callback, nullptr);
    }
}

void run_window_ticks(UiEngine* engine) {
    WindowId ids[window_capacity];
    const std::int32_t count = copy_live_order(engine, ids);
    for (std::int32_t i = 0; i < count; ++i) {
        run_window_tick(engine, ids[i]);
    }
}

struct TickClock {
    MonotonicTime last_tick;
    MonotonicTime last_window_tick;
};

void run_ticks(UiEngine* engine, TickClock* clock) {
    const MonotonicTime now = monotonic_now();
    const TableLockGuard table_guard(engine);
    if (is_due(engine->tick_interval_ms, clock->last_tick, now)) {
        run_engine_tick(engine);
        clock->last_tick = now;
    }
    if (is_due(engine->window_tick_interval_ms, clock->last_window_tick, now)) {
        run_window_ticks(engine);
        clock->last_window_tick = now;
    }
}

void tear_down_windows(UiEngine* engine) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    const XErrorTrap trap(engine);
    end_all_windows(engine);
}

} // namespace

void event_loop_run(UiEngine* engine) {
    // Waking up is nearly all that an idle loop costs; a third fewer times is not seen.
    prctl(PR_SET_TIMERSLACK, pause_slack_nanoseconds);
    TickClock clock{monotonic_now(), monotonic_now()};
    const LoopLockGuard loop_guard(engine);
    while (!engine->stop_requested) {
        drain_events(engine);
        paint_damage(engine);
        usleep(pause_microseconds);
        run_ticks(engine, &clock);
    }
    tear_down_windows(engine);
    engine->stop_requested = false;
}

void event_loop_stop(UiEngine* engine) {
    engine->stop_requested = true;
}
