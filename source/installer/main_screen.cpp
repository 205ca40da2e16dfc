// main_screen.cpp: what the flow changes in the main window, each change under screen_lock.
#include "installer/choice_buttons.h"
#include "installer/installer_state.h"
#include "installer/main_callbacks.h"
#include "installer/main_layout.h"
#include "installer/main_window.h"
#include "installer/product_settings.h"
#include "installer/secret.h"

namespace {

using ScreenLock = std::lock_guard<std::mutex>;

void fill_panel(const ScreenText& screen) {
    MessagePanel* panel = installer.panel;
    message_panel_clear_lines(panel);
    message_panel_set_line(panel, 0, installer.subtitle);
    for (std::size_t i = 0; i < screen.line_count; ++i) {
        const ScreenLine& line = screen.lines[i];
        message_panel_set_line_with_mode(panel, line.index, line.text,
                                         static_cast<std::uint32_t>(line.mode));
    }
    if (screen.reason != nullptr) {
        message_panel_set_line(panel, reason_line, screen.reason);
    }
    message_panel_set_dimmed(panel, screen.dimmed);
    message_panel_set_dirty(panel, true);
}

// A widget's own repaint ends one pixel before its right and bottom lines. Where it comes to stand
// on a panel that is on the screen already, the panel's repaint brings them along.
void show_panel_again() {
    message_panel_set_dirty(installer.panel, true);
}

void focus_field(bool focused) {
    password_field_set_focused(installer.field, focused);
    password_field_set_dirty(installer.field, true);
}

void start_bar(const char* caption, ProgressKind kind) {
    progress_bar_set_caption(installer.bar, caption);
    progress_bar_set_fraction(installer.bar, 0.0F);
    progress_bar_set_mode(installer.bar, static_cast<std::uint32_t>(kind));
    progress_bar_set_dirty(installer.bar, true);
}

} // namespace

void main_window_show_screen(const ScreenText& screen) {
    const ScreenLock lock(installer.screen_lock);
    fill_panel(screen);
    installer.ui_dirty = 1;
}

void main_window_ask_for_whom() {
    const ScreenLock lock(installer.screen_lock);
    fill_panel(recipient_screen);
    password_field_set_hidden(installer.field, true); // nothing typed here is a password
    choice_buttons_show(true);
    installer.ui_dirty = 1;
}

void main_window_go_on_to_authentication() {
    const ScreenLock lock(installer.screen_lock);
    choice_buttons_show(false);
    fill_panel(authentication_screen(installer.auth_method));
    installer.ui_dirty = 1;
}

void main_window_ask_for_password() {
    const ScreenLock lock(installer.screen_lock);
    show_panel_again();
    password_field_set_hidden(installer.field, false);
    password_field_set_dirty(installer.field, true);
    installer.ui_dirty = 1;
}

void main_window_hold_password() {
    const ScreenLock lock(installer.screen_lock);
    focus_field(false);
    installer.ui_dirty = 1;
}

void main_window_refuse_password() {
    const ScreenLock lock(installer.screen_lock);
    fill_panel(incorrect_password_screen);
    password_field_clear(installer.field);
    installer.password_submitted = 0; // first: from here on a Return is a new answer
    focus_field(true);
    installer.ui_dirty = 1;
}

void main_window_take_password() {
    const ScreenLock lock(installer.screen_lock);
    const WorkLock work(installer.work_lock);
    secret_free(&installer.password);
    installer.password = secret_copy(password_field_get_text(installer.field));
}

void main_window_start_installing() {
    const ScreenLock lock(installer.screen_lock);
    fill_panel(installing_screen);
    password_field_clear(installer.field);
    password_field_set_hidden(installer.field, true);
    progress_bar_set_hidden(installer.bar, false);
    start_bar("Unpacking Files", ProgressKind::fraction);
    installer.ui_dirty = 1;
}

void main_window_start_progress(const char* caption, ProgressKind kind) {
    const ScreenLock lock(installer.screen_lock);
    start_bar(caption, kind);
    installer.ui_dirty = 1;
}

void main_window_set_progress(float fraction) {
    const ScreenLock lock(installer.screen_lock);
    progress_bar_set_fraction(installer.bar, fraction);
    progress_bar_set_dirty(installer.bar, true);
    installer.ui_dirty = 1;
}

void main_window_show_last_screen(const ScreenText& screen) {
    const ScreenLock lock(installer.screen_lock);
    progress_bar_set_hidden(installer.bar, true);
    fill_panel(screen);
    installer.ui_dirty = 1;
}

void main_window_offer_ok() {
    const ScreenLock lock(installer.screen_lock);
    show_panel_again();
    push_button_set_hidden(installer.button, false);
    push_button_set_dirty(installer.button, true);
    installer.ui_dirty = 1;
}

void main_window_open_browser() {
    folder_dialog_set_title(installer.browser, product.folder_browser_title);
    folder_dialog_open(installer.browser);
}

void main_window_close_browser() {
    folder_dialog_close(installer.browser);
}
