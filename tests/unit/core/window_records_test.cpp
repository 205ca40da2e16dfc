// window_records_test.cpp: slots and the order of windows, without a display.
#include <gtest/gtest.h> // before Xlib, whose macros it cannot bear

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/window_table.h"

#include <memory>
#include <vector>

namespace {

using EnginePointer = std::unique_ptr<UiEngine, decltype(&engine_destroy)>;

struct WindowRecords : testing::Test {
    EnginePointer engine{engine_new(), engine_destroy};

    std::vector<WindowId> first_entries(std::size_t count) const {
        return {engine->live_order, engine->live_order + count};
    }
};

using Ids = std::vector<WindowId>;

TEST_F(WindowRecords, OrderIsThatOfAdding) {
    add_to_live_order(engine.get(), 5);
    add_to_live_order(engine.get(), 0);
    add_to_live_order(engine.get(), 7);
    EXPECT_EQ(first_entries(4), (Ids{5, 0, 7, -1}));
}

TEST_F(WindowRecords, RemovingPacksTheRestInOrder) {
    for (const WindowId id : {4, 3, 2, 1}) {
        add_to_live_order(engine.get(), id);
    }
    remove_from_live_order(engine.get(), 3);
    EXPECT_EQ(first_entries(4), (Ids{4, 2, 1, -1}));
    remove_from_live_order(engine.get(), 4);
    remove_from_live_order(engine.get(), 1);
    EXPECT_EQ(first_entries(4), (Ids{2, -1, -1, -1}));
    remove_from_live_order(engine.get(), 9);
    EXPECT_EQ(first_entries(2), (Ids{2, -1}));
}

TEST_F(WindowRecords, AFullOrderTakesNoMore) {
    for (WindowId id = 0; id < window_capacity; ++id) {
        add_to_live_order(engine.get(), id);
    }
    add_to_live_order(engine.get(), 3);
    EXPECT_EQ(engine->live_order[window_capacity - 1], window_capacity - 1);
    remove_from_live_order(engine.get(), 0);
    EXPECT_EQ(engine->live_order[window_capacity - 2], window_capacity - 1);
    EXPECT_EQ(engine->live_order[window_capacity - 1], no_window);
}

void ignore_configure(std::int32_t, std::int32_t, WindowId, void*) {}
void ignore_paint(std::int32_t, std::int32_t, std::int32_t, std::int32_t, WindowId, void*) {}
void ignore_button(std::int32_t, std::int32_t, std::int32_t, WindowId, void*) {}
void ignore_motion(std::int32_t, std::int32_t, WindowId, void*) {}
void ignore_reparent(std::int32_t, std::int32_t, void*, unsigned long) {}
void ignore_message(long, void*, unsigned long) {}
void ignore_spare(void*) {}
void ignore_close(std::int32_t, std::int32_t, WindowId, void*) {}
void ignore_key(const char*, unsigned long, std::uint32_t, WindowId, void*) {}
void ignore_selection(unsigned char*, WindowId, void*) {}
bool ignore_tick(void*) {
    return true;
}

void set_every_callback(UiEngine* engine, WindowId id) {
    window_set_on_configure(engine, id, ignore_configure);
    window_set_on_paint(engine, id, ignore_paint);
    window_set_on_button_press(engine, id, ignore_button);
    window_set_on_button_release(engine, id, ignore_button);
    window_set_on_motion(engine, id, ignore_motion);
    window_set_on_reparent(engine, id, ignore_reparent);
    window_set_on_client_message(engine, id, ignore_message);
    window_set_on_create_notify(engine, id, ignore_configure);
    window_set_spare_callback(engine, id, ignore_spare);
    window_set_on_double_click(engine, id, ignore_button);
    window_set_on_close(engine, id, ignore_close);
    window_set_on_key_press(engine, id, ignore_key);
    window_set_on_key_release(engine, id, ignore_key);
    window_set_on_selection(engine, id, ignore_selection);
    window_set_on_tick(engine, id, ignore_tick);
}

int callbacks_set(const WindowSlot& slot) {
    return (slot.on_configure != nullptr) + (slot.on_paint != nullptr) +
           (slot.on_button_press != nullptr) + (slot.on_button_release != nullptr) +
           (slot.on_motion != nullptr) + (slot.on_reparent != nullptr) +
           (slot.on_client_message != nullptr) + (slot.on_create_notify != nullptr) +
           (slot.spare_callback != nullptr) + (slot.on_double_click != nullptr) +
           (slot.on_close != nullptr) + (slot.on_key_press != nullptr) +
           (slot.on_key_release != nullptr) + (slot.on_selection != nullptr) +
           (slot.on_tick != nullptr);
}

TEST_F(WindowRecords, BothWaysOfClearingLeaveOnCloseAndUserData) {
    for (auto* clear : {window_clear_callbacks, window_clear_callbacks_unlocked}) {
        WindowSlot& slot = engine->windows[3];
        slot.user_data = this;
        set_every_callback(engine.get(), 3);
        ASSERT_EQ(callbacks_set(slot), 15);
        clear(engine.get(), 3);
        EXPECT_EQ(callbacks_set(slot), 1);
        EXPECT_EQ(slot.on_close, ignore_close);
        EXPECT_EQ(slot.user_data, this);
    }
}

TEST_F(WindowRecords, ResettingKeepsWhatBelongsToTheSlot) {
    WindowSlot& slot = engine->windows[3];
    set_every_callback(engine.get(), 3);
    window_set_aux_pointer(engine.get(), 3, this);
    slot.user_data = this;
    slot.in_use = 1;
    slot.window = 77;
    slot.pixmap = 78;
    slot.scale = 2.0F;
    slot.inverse_scale = 0x8000U;
    slot.width = 10;
    slot.height = 11;
    slot.x = 12;
    slot.y = 13;
    slot.delete_atom = 14;
    damage_add(&slot.damage, 0, 0, 5, 5);
    window_reset_slot(engine.get(), 3);
    EXPECT_EQ(callbacks_set(slot), 1);
    EXPECT_EQ(slot.on_close, ignore_close);
    EXPECT_EQ(window_aux_pointer(engine.get(), 3), this);
    EXPECT_EQ(slot.x, 12U);
    EXPECT_EQ(slot.y, 13U);
    EXPECT_EQ(slot.delete_atom, 14U);
    EXPECT_EQ(slot.user_data, nullptr);
    EXPECT_EQ(slot.in_use, 0);
    EXPECT_EQ(slot.window, 0U);
    EXPECT_EQ(slot.pixmap, 0U);
    EXPECT_FLOAT_EQ(slot.scale, 1.0F);
    EXPECT_EQ(slot.inverse_scale, 0x10000U);
    EXPECT_EQ(slot.width, 0U);
    EXPECT_EQ(slot.height, 0U);
    EXPECT_EQ(slot.damage.rects, nullptr);
    EXPECT_EQ(damage_count(&slot.damage), 0);
}

} // namespace
