// message_events.cpp: delivering the clipboard's answer, the close request and other messages.
#include "gui/ORX/core/event_dispatch.h"

#include "gui/ORX/core/event_target.h"
#include "gui/ORX/core/paste_transfer.h"
#include "gui/ORX/core/reply_memory.h"
#include "gui/ORX/core/window_placement_locked.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

#include <X11/Xatom.h>

namespace {

// The text that the owner left, or null when there is none. Text that is sent in pieces arrives
// with another type and counts as none. With x_lock held.
unsigned char* read_answer(UiEngine* engine, Window requestor) {
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return nullptr;
    }
    const XErrorTrap trap(engine);
    return read_text_property(display, requestor, XA_PRIMARY, XA_STRING).data;
}

// false when the answer is not the last of it, or nobody has asked for one. With x_lock held.
bool take_answer(UiEngine* engine, const XSelectionEvent& event, unsigned char** text) {
    if (!engine->converted_paste) {
        *text = read_answer(engine, event.requestor);
        return true;
    }
    const XErrorTrap trap(engine);
    return paste_take_answer(engine, event, text);
}

struct ClosedWindow {
    EventTarget<CloseCallback> target;
    std::int32_t x = 0;
    std::int32_t y = 0;
};

// Ends the X window and leaves its slot in use for the callback.
ClosedWindow close_x_window(UiEngine* engine, Window window) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    ClosedWindow closed;
    closed.target = target_with_lock(engine, window, &WindowSlot::on_close);
    Display* display = engine_display(engine);
    if (closed.target.id == no_window || display == nullptr) {
        return {};
    }
    const XErrorTrap trap(engine);
    outer_position(display, window, &closed.x, &closed.y);
    XFlush(display);
    XDestroyWindow(display, window);
    free_window_resources(engine, &engine->windows[closed.target.id]);
    return closed;
}

// The callback may have given the slot back already, and a new window may have taken it.
void give_back_closed(UiEngine* engine, Window window) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    if (const WindowId id = window_from_x_window(engine, window); id != no_window) {
        const XErrorTrap trap(engine);
        give_back_slot(engine, id);
    }
}

void dispatch_close_request(UiEngine* engine, Window window) {
    const ClosedWindow closed = close_x_window(engine, window);
    const EventTarget<CloseCallback>& target = closed.target;
    if (target.callback != nullptr) {
        target.callback(closed.x, closed.y, target.id, target.user_data);
    }
    give_back_closed(engine, window);
}

bool is_close_request(UiEngine* engine, const XClientMessageEvent& event) {
    const XLockGuard x_guard(engine);
    const WindowId id = window_from_x_window(engine, event.window);
    return id != no_window && engine->windows[id].delete_atom == static_cast<Atom>(event.data.l[0]);
}

} // namespace

void dispatch_selection(UiEngine* engine, const XSelectionEvent& event) {
    EventTarget<SelectionCallback> target;
    unsigned char* data = nullptr;
    {
        const XLockGuard x_guard(engine);
        target = target_with_lock(engine, event.requestor, &WindowSlot::on_selection);
        if (target.callback == nullptr || !take_answer(engine, event, &data)) {
            return;
        }
    }
    target.callback(data, target.id, target.user_data);
}

void dispatch_property_change(UiEngine* engine, const XPropertyEvent& event) {
    EventTarget<SelectionCallback> target;
    unsigned char* data = nullptr;
    {
        const XLockGuard x_guard(engine);
        target = target_with_lock(engine, event.window, &WindowSlot::on_selection);
        if (target.callback == nullptr) {
            return;
        }
        const XErrorTrap trap(engine);
        if (!paste_take_piece(engine, event, &data)) {
            return;
        }
    }
    target.callback(data, target.id, target.user_data);
}

void dispatch_client_message(UiEngine* engine, const XClientMessageEvent& event) {
    if (is_close_request(engine, event)) {
        return dispatch_close_request(engine, event.window);
    }
    const auto target = find_target(engine, event.window, &WindowSlot::on_client_message);
    if (target.callback != nullptr) {
        target.callback(event.data.l[0], target.user_data, event.window);
    }
}
