// window_records.cpp: slots, their defaults and the order in which windows live.
#include "gui/ORX/core/window_records.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/input_method.h"
#include "gui/ORX/core/window_table.h"

#include <algorithm>
#include <iterator>

void clear_live_order(UiEngine* engine) {
    std::fill(std::begin(engine->live_order), std::end(engine->live_order), no_window);
}

void add_to_live_order(UiEngine* engine, WindowId id) {
    WindowId* end = std::end(engine->live_order);
    WindowId* place = std::find_if(std::begin(engine->live_order), end,
                                   [](WindowId listed) { return listed < 0; });
    if (place != end) {
        *place = id;
    }
}

void remove_from_live_order(UiEngine* engine, WindowId id) {
    WindowId* end = std::end(engine->live_order);
    WindowId* packed = std::remove_if(std::begin(engine->live_order), end,
                                      [id](WindowId listed) { return listed == id || listed < 0; });
    std::fill(packed, end, no_window);
}

std::int32_t copy_live_order(UiEngine* engine, WindowId ids[window_capacity]) {
    const TableLockGuard table_guard(engine);
    std::int32_t count = 0;
    while (count < window_capacity && engine->live_order[count] >= 0) {
        ids[count] = engine->live_order[count];
        count += 1;
    }
    return count;
}

namespace {

WindowId first_slot(const UiEngine* engine, std::uint8_t in_use) {
    for (WindowId id = 0; id < window_capacity; ++id) {
        if (engine->windows[id].in_use == in_use) {
            return id;
        }
    }
    return no_window;
}

} // namespace

WindowId first_free_slot(const UiEngine* engine) {
    return first_slot(engine, 0);
}

WindowId first_used_slot(const UiEngine* engine) {
    return first_slot(engine, 1);
}

void window_reset_slot(UiEngine* engine, WindowId id) {
    WindowSlot& slot = engine->windows[id];
    slot.in_use = 0;
    slot.scale = 1.0F;
    slot.inverse_scale = 0x10000U;
    slot.width = 0;
    slot.height = 0;
    slot.window = 0;
    slot.pixmap = 0;
    window_clear_callbacks_unlocked(engine, id);
    slot.user_data = nullptr;
    slot.input_context = nullptr;
    damage_free(&slot.damage);
}

void free_window_resources(UiEngine* engine, WindowSlot* slot) {
    Display* display = engine_display(engine);
    if (display != nullptr && slot->pixmap != 0) {
        XFreePixmap(display, slot->pixmap);
    }
    slot->pixmap = 0;
    if (display != nullptr) {
        destroy_input_context(engine, &slot->input_context);
    }
    slot->input_context = nullptr;
}

void give_back_slot(UiEngine* engine, WindowId id) {
    free_window_resources(engine, &engine->windows[id]);
    window_reset_slot(engine, id);
    remove_from_live_order(engine, id);
}

void end_window(UiEngine* engine, WindowId id) {
    WindowSlot& slot = engine->windows[id];
    if (slot.in_use == 0) {
        return;
    }
    if (Display* display = engine_display(engine); display != nullptr) {
        XDestroyWindow(display, slot.window);
    }
    free_window_resources(engine, &slot);
    window_reset_slot(engine, id);
}

void end_all_windows(UiEngine* engine) {
    for (WindowId id = 0; id < window_capacity; ++id) {
        end_window(engine, id);
    }
    clear_live_order(engine);
}

Display* window_display(const UiEngine* engine, WindowId id) {
    return engine->windows[id].in_use != 0 ? engine_display(engine) : nullptr;
}
