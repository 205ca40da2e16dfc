// main_window.h: the one fixed-size window in which the installation happens.
//
// The flow makes it, changes what it says, and main takes it down after the event thread has
// ended. Everything here is for the main thread; each change is made under screen_lock, so that
// the event thread paints it whole.
#pragma once

#include "installer/screens.h"

#include <cstdint>

// Makes the window and its widgets. false when something could not be made (said on the console).
[[nodiscard]] bool main_window_create();

// Fills the window with the authentication screen, or the one that asks for whom, and puts it on
// the display. A cancel when another client has destroyed it meanwhile.
void main_window_open();

// Lets keys reach the password field, and a middle click in it fetch the clipboard's text. Before
// that neither is taken, also on the screens that never ask for a password.
void main_window_accept_keys();

// Asks for whom it is installed, until installer.recipient_chosen says so; and goes on to the
// authentication screen.
void main_window_ask_for_whom();
void main_window_go_on_to_authentication();

// Replaces the panel's lines.
void main_window_show_screen(const ScreenText& screen);

// The password field: ready for text; deaf while a password is being checked; emptied, ready and
// below the message after a wrong one, when an answer of before is forgotten.
void main_window_ask_for_password();
void main_window_hold_password();
void main_window_refuse_password();

// Copies what stands in the field to installer.password, which is null without memory.
void main_window_take_password();

// "Installing...": the field is wiped and hidden, the progress bar is shown.
void main_window_start_installing();

// The progress bar: its caption (from 0, as a bar or as a bouncing block), how far it is, and
// taking it away for a last screen.
enum class ProgressKind : std::uint32_t { fraction = 0, bouncing = 1 };
void main_window_start_progress(const char* caption, ProgressKind kind);
void main_window_set_progress(float fraction);
void main_window_show_last_screen(const ScreenText& screen);

// Shows the OK button.
void main_window_offer_ok();

// Opens and closes the folder browser.
void main_window_open_browser();
void main_window_close_browser();

// Frees widgets and pictures. The event thread must have ended.
void main_window_destroy();
