// choice_buttons.h: the two buttons with which the person says for whom it is installed.
//
// One of them has the keyboard, and a border that shows it. Tab and the arrows move it to the other
// one, Return and the space bar press it. A click counts when the button is let go of on it.
//
// Everything but making and destroying them is done with screen_lock held. Without the buttons,
// which only some products have, all of it does nothing.
#pragma once

#include <cstdint>

// What installer.recipient_chosen becomes.
enum RecipientChoice : std::int32_t { choice_none = 0, choice_person = 1, choice_everybody = 2 };

// false without memory. They are hidden at first.
[[nodiscard]] bool choice_buttons_create();
void choice_buttons_destroy();

void choice_buttons_show(bool shown);
[[nodiscard]] bool choice_buttons_shown();

// For the event thread: input at a device point, a key, and painting those that are dirty.
void choice_buttons_press(std::int32_t x, std::int32_t y);
void choice_buttons_release(std::int32_t x, std::int32_t y);
void choice_buttons_key(unsigned long keysym);
void choice_buttons_paint_dirty();
