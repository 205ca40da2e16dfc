// window_setters.cpp: the callbacks and the pointer of a window; plain stores.
#include "gui/ORX/core/window_table.h"

#include "gui/ORX/core/engine.h"

void window_set_on_configure(UiEngine* engine, WindowId id, ConfigureCallback callback) {
    engine->windows[id].on_configure = callback;
}

void window_set_on_paint(UiEngine* engine, WindowId id, PaintCallback callback) {
    engine->windows[id].on_paint = callback;
}

void window_set_on_button_press(UiEngine* engine, WindowId id, ButtonCallback callback) {
    engine->windows[id].on_button_press = callback;
}

void window_set_on_button_release(UiEngine* engine, WindowId id, ButtonCallback callback) {
    engine->windows[id].on_button_release = callback;
}

void window_set_on_motion(UiEngine* engine, WindowId id, MotionCallback callback) {
    engine->windows[id].on_motion = callback;
}

void window_set_on_reparent(UiEngine* engine, WindowId id, ReparentCallback callback) {
    engine->windows[id].on_reparent = callback;
}

void window_set_on_client_message(UiEngine* engine, WindowId id, ClientMessageCallback callback) {
    engine->windows[id].on_client_message = callback;
}

void window_set_on_create_notify(UiEngine* engine, WindowId id, CreateNotifyCallback callback) {
    engine->windows[id].on_create_notify = callback;
}

void window_set_spare_callback(UiEngine* engine, WindowId id, SpareCallback callback) {
    engine->windows[id].spare_callback = callback;
}

void window_set_on_double_click(UiEngine* engine, WindowId id, ButtonCallback callback) {
    engine->windows[id].on_double_click = callback;
}

void window_set_on_close(UiEngine* engine, WindowId id, CloseCallback callback) {
    engine->windows[id].on_close = callback;
}

void window_set_on_key_press(UiEngine* engine, WindowId id, KeyCallback callback) {
    engine->windows[id].on_key_press = callback;
}

void window_set_on_key_release(UiEngine* engine, WindowId id, KeyCallback callback) {
    engine->windows[id].on_key_release = callback;
}

void window_set_on_selection(UiEngine* engine, WindowId id, SelectionCallback callback) {
    engine->windows[id].on_selection = callback;
}

void window_set_on_tick(UiEngine* engine, WindowId id, TickCallback callback) {
    engine->windows[id].on_tick = callback;
}

void window_set_aux_pointer(UiEngine* engine, WindowId id, void* pointer) {
    engine->windows[id].aux_pointer = pointer;
}

void* window_aux_pointer(const UiEngine* engine, WindowId id) {
    return engine->windows[id].aux_pointer;
}
