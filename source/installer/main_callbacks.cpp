// main_callbacks.cpp: the event thread's side of the main window: input, the tick, repainting.
#include "installer/main_callbacks.h"

#include "gui/ORX/core/clipboard.h"
#include "gui/ORX/core/window_table.h"
#include "installer/choice_buttons.h"
#include "installer/console_log.h"
#include "installer/installer_state.h"
#include "installer/main_button.h"
#include "installer/window_picture.h"

#include <X11/X.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int32_t left_button = 1;
constexpr std::int32_t middle_button = 2;
constexpr unsigned long keysym_return = 0xFF0D;
constexpr unsigned long keysym_insert = 0xFF63;
constexpr unsigned long keysym_keypad_enter = 0xFF8D;

void paint_panel() {
    message_panel_paint(installer.panel, installer.main_picture.surface);
    message_panel_request_redraw(installer.panel, installer.main_window);
}

void paint_field() {
    password_field_paint_background(installer.field, installer.main_picture.surface);
    password_field_paint(installer.field, installer.main_picture.surface);
    password_field_request_redraw(installer.field, installer.main_window);
}

void paint_bar() {
    progress_bar_paint_background(installer.bar, installer.main_picture.surface);
    progress_bar_paint(installer.bar, installer.main_picture.surface);
    progress_bar_request_redraw(installer.bar, installer.main_window);
}

void mark_button(bool pressed) {
    push_button_set_pressed(installer.button, pressed);
    push_button_set_highlighted(installer.button, pressed);
    push_button_set_dirty(installer.button, true);
    installer.ui_dirty = 1;
}

void on_paint(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
              WindowId id, void* /*user_data*/) {
    window_picture_show(installer.main_picture, id, left, top, width, height);
}

// With screen_lock held.
void press_button(std::int32_t x, std::int32_t y, std::int32_t button) {
    if (choice_buttons_shown()) {
        if (button == left_button) {
            choice_buttons_press(x, y);
        }
        return;
    }
    if (installer.modern_input && push_button_get_hidden(installer.button)) {
        return;
    }
    if (button == left_button && push_button_hit(installer.button, x, y)) {
        mark_button(true);
    }
}

void on_button_press(std::int32_t x, std::int32_t y, std::int32_t button, WindowId /*id*/,
                     void* /*user_data*/) {
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    press_button(x, y, button);
}

void on_button_press_with_field(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id,
                                void* /*user_data*/) {
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    if (button == middle_button && !choice_buttons_shown() &&
        password_field_hit(installer.field, x, y)) {
        clipboard_request_paste(installer.engine, id);
    }
    press_button(x, y, button);
}

void on_button_release(std::int32_t x, std::int32_t y, std::int32_t button, WindowId /*id*/,
                       void* /*user_data*/) {
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    if (choice_buttons_shown() && button == left_button) {
        choice_buttons_release(x, y);
        return;
    }
    if (button != left_button || !push_button_get_highlighted(installer.button)) {
        return;
    }
    mark_button(false);
    if (!installer.modern_input || push_button_hit(installer.button, x, y)) {
        installer.finish_requested = 1;
    }
}

// The text may be a password: it is taken off the window, where any program could read it, and
// wiped here. It may come late, when the field is no longer asked for.
void on_selection(unsigned char* data, WindowId id, void* /*user_data*/) {
    clipboard_forget_paste(installer.engine, id);
    if (data == nullptr) {
        return;
    }
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    if (password_field_get_focused(installer.field) &&
        !password_field_get_hidden(installer.field)) {
        password_field_set_text(installer.field, reinterpret_cast<char*>(data));
        password_field_set_dirty(installer.field, true);
        installer.ui_dirty = 1;
    }
    clipboard_free_text(data);
}

// Control-V and Shift-Insert.
bool asks_for_paste(unsigned long keysym, std::uint32_t state) {
    const bool letter = keysym == 'v' || keysym == 'V';
    return (letter && (state & (ControlMask | Mod1Mask)) == ControlMask) ||
           (keysym == keysym_insert && (state & ShiftMask) != 0);
}

void on_key_press(const char* text, unsigned long keysym, std::uint32_t state, WindowId id,
                  void* /*user_data*/) {
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    if (choice_buttons_shown()) {
        choice_buttons_key(keysym);
        return;
    }
    if (installer.modern_input && keysym == keysym_keypad_enter) {
        keysym = keysym_return;
    }
    if (!push_button_get_hidden(installer.button)) {
        if (keysym == keysym_return) {
            installer.finish_requested = 1;
        }
        return;
    }
    if (installer.modern_input && asks_for_paste(keysym, state)) {
        if (!password_field_get_hidden(installer.field)) {
            clipboard_request_paste(installer.engine, id);
        }
        return;
    }
    if (password_field_key(installer.field, keysym, text) == 1) {
        installer.password_submitted = 1;
    } else {
        paint_field();
    }
}

void on_close(std::int32_t /*outer_x*/, std::int32_t /*outer_y*/, WindowId /*id*/,
              void* /*user_data*/) {
    installer.cancel_requested = 1;
}

bool on_tick(void* /*user_data*/) {
    const std::lock_guard<std::mutex> lock(installer.screen_lock);
    if (installer.ui_dirty.exchange(0) != 0) {
        if (message_panel_get_dirty(installer.panel)) {
            message_panel_set_dirty(installer.panel, false);
            paint_panel();
        }
        if (password_field_get_dirty(installer.field)) {
            password_field_set_dirty(installer.field, false);
            paint_field();
        }
        if (progress_bar_get_dirty(installer.bar)) {
            progress_bar_set_dirty(installer.bar, false);
            paint_bar();
        }
        if (push_button_get_dirty(installer.button)) {
            push_button_set_dirty(installer.button, false);
            paint_main_button(installer.button);
        }
        choice_buttons_paint_dirty();
    }
    if (progress_bar_get_mode(installer.bar) == progress_mode_bouncing &&
        !progress_bar_get_hidden(installer.bar)) {
        paint_bar();
    }
    return true;
}

void on_folder_chosen(const char* path, void* /*user_data*/) {
    installer.install_folder = strdup(path);
    char* visible = visible_copy(path);
    if (installer.install_folder == nullptr || visible == nullptr) {
        std::free(visible);
        installer.folder_cancelled = 1; // rather than into a folder that nobody chose
        return;
    }
    log_print("** INFO ** %s: Installing to - %s\n", installer.title, visible);
    std::free(visible);
    installer.folder_chosen = 1;
}

void on_folder_cancelled(const char* /*path*/, void* /*user_data*/) {
    installer.folder_cancelled = 1;
}

} // namespace

void main_callbacks_register() {
    UiEngine* engine = installer.engine;
    const WindowId id = installer.main_window;
    window_set_on_paint(engine, id, on_paint);
    window_set_on_button_press(engine, id, on_button_press);
    window_set_on_button_release(engine, id, on_button_release);
    window_set_on_close(engine, id, on_close);
    window_set_on_tick(engine, id, on_tick);
    folder_dialog_set_accept_callback(installer.browser, on_folder_chosen, nullptr);
    folder_dialog_set_cancel_callback(installer.browser, on_folder_cancelled, nullptr);
}

void main_callbacks_register_field() {
    UiEngine* engine = installer.engine;
    const WindowId id = installer.main_window;
    window_set_on_key_press(engine, id, on_key_press);
    window_set_on_selection(engine, id, on_selection);
    window_set_on_button_press(engine, id, on_button_press_with_field);
}
