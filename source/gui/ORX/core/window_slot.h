// window_slot.h: the record of one window in the engine's table.
//
// The record is written under table_lock and x_lock together and may be read under either; damage,
// input_context and pixmap go by x_lock alone. The atomic fields may be read without a lock; the
// callbacks and aux_pointer may be written without one, too.
#pragma once

#include "gui/ORX/core/damage_list.h"
#include "gui/ORX/core/window_callbacks.h"
#include "gui/ORX/core/window_id.h"

#include <X11/Xlib.h>

#include <atomic>
#include <cstdint>

struct WindowSlot {
    std::atomic<Window> window{0}; // X window, 0 = none
    Pixmap pixmap = 0;             // icon pixmap that belongs to the window and is freed with it

    std::atomic<ConfigureCallback> on_configure{};
    std::atomic<PaintCallback> on_paint{};
    std::atomic<ButtonCallback> on_button_press{};
    std::atomic<ButtonCallback> on_button_release{};
    std::atomic<MotionCallback> on_motion{};
    std::atomic<ReparentCallback> on_reparent{};
    std::atomic<ClientMessageCallback> on_client_message{};
    std::atomic<CreateNotifyCallback> on_create_notify{};
    std::atomic<SpareCallback> spare_callback{};
    std::atomic<ButtonCallback> on_double_click{};
    std::atomic<CloseCallback> on_close{};
    std::atomic<KeyCallback> on_key_press{};
    std::atomic<KeyCallback> on_key_release{};
    std::atomic<SelectionCallback> on_selection{};
    std::atomic<TickCallback> on_tick{};

    std::atomic<void*> user_data{};   // given at creation, passed back to the callbacks, not owned
    std::atomic<void*> aux_pointer{}; // the engine never reads it, not owned
    XIC input_context = nullptr;
    float scale = 1.0F;                     // UI scale given at creation
    std::uint32_t inverse_scale = 0x10000U; // 16.16 fixed point of 1 / scale, truncated
    std::atomic<std::uint32_t> width{0};    // device pixels, as created, resized or last configured
    std::atomic<std::uint32_t> height{0};
    std::uint32_t x = 0; // position given at creation
    std::uint32_t y = 0;
    std::atomic<std::uint8_t> in_use{0}; // 1 while the slot holds a window
    Atom delete_atom = 0;                // WM_DELETE_WINDOW as interned at creation
    DamageList damage;
};
