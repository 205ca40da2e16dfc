// event_dispatch.cpp: sorting events by type, and those about the windows themselves.
#include "gui/ORX/core/event_dispatch.h"

#include "gui/ORX/core/event_target.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

namespace {

void add_damage(UiEngine* engine, Window window, int x, int y, int width, int height) {
    const XLockGuard x_guard(engine);
    if (const WindowId id = window_from_x_window(engine, window); id != no_window) {
        damage_add(&engine->windows[id].damage, x, y, x + width, y + height);
    }
}

EventTarget<ConfigureCallback> record_size(UiEngine* engine, const XConfigureEvent& event) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    const auto target = target_with_lock(engine, event.event, &WindowSlot::on_configure);
    if (target.id != no_window) {
        engine->windows[target.id].width = static_cast<std::uint32_t>(event.width);
        engine->windows[target.id].height = static_cast<std::uint32_t>(event.height);
    }
    return target;
}

void dispatch_configure(UiEngine* engine, const XConfigureEvent& event) {
    const auto target = record_size(engine, event);
    if (target.callback != nullptr) {
        target.callback(event.height, event.width, target.id, target.user_data);
    }
    add_damage(engine, event.event, 0, 0, event.width, event.height);
}

void dispatch_create_notify(UiEngine* engine, const XCreateWindowEvent& event) {
    const auto target = find_target(engine, event.parent, &WindowSlot::on_create_notify);
    if (target.callback != nullptr) {
        target.callback(event.height, event.width, target.id, target.user_data);
    }
}

void dispatch_reparent(UiEngine* engine, const XReparentEvent& event) {
    const auto target = find_target(engine, event.event, &WindowSlot::on_reparent);
    if (target.callback != nullptr) {
        target.callback(event.x, event.y, target.user_data, event.event);
    }
}

// What another client has only said to be destroyed is still on the screen: then it ends here.
EventTarget<CloseCallback> give_back_destroyed(UiEngine* engine, const XDestroyWindowEvent& event) {
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    const auto target = target_with_lock(engine, event.event, &WindowSlot::on_close);
    Display* display = engine_display(engine);
    if (target.id == no_window || display == nullptr) {
        return {};
    }
    const XErrorTrap trap(engine);
    if (event.send_event != False) {
        XDestroyWindow(display, event.event);
    }
    give_back_slot(engine, target.id);
    return target;
}

void dispatch_destroy_notify(UiEngine* engine, const XDestroyWindowEvent& event) {
    if (event.window != event.event) {
        return; // a child of the window ended, the window itself did not
    }
    const auto target = give_back_destroyed(engine, event);
    if (target.callback != nullptr) {
        target.callback(0, 0, target.id, target.user_data);
    }
}

} // namespace

void dispatch_event(UiEngine* engine, XEvent* event) {
    switch (event->type) {
    case KeyPress:
        return dispatch_key_press(engine, &event->xkey);
    case KeyRelease:
        return dispatch_key_release(engine, &event->xkey);
    case ButtonPress:
        return dispatch_button_press(engine, event->xbutton);
    case ButtonRelease:
        return dispatch_button_release(engine, event->xbutton);
    case MotionNotify:
        return dispatch_motion(engine, event->xmotion);
    case Expose:
        return add_damage(engine, event->xexpose.window, event->xexpose.x, event->xexpose.y,
                          event->xexpose.width, event->xexpose.height);
    case ConfigureNotify:
        return dispatch_configure(engine, event->xconfigure);
    case CreateNotify:
        return dispatch_create_notify(engine, event->xcreatewindow);
    case DestroyNotify:
        return dispatch_destroy_notify(engine, event->xdestroywindow);
    case ReparentNotify:
        return dispatch_reparent(engine, event->xreparent);
    case PropertyNotify:
        return dispatch_property_change(engine, event->xproperty);
    case SelectionNotify:
        return dispatch_selection(engine, event->xselection);
    case ClientMessage:
        return dispatch_client_message(engine, event->xclient);
    case MappingNotify:
        return dispatch_keyboard_change(engine, &event->xmapping);
    default:
        return;
    }
}
