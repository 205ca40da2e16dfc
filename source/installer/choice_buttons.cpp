// choice_buttons.cpp: two buttons, one of which has the keyboard.
#include "installer/choice_buttons.h"

#include "installer/installer_state.h"
#include "installer/main_button.h"
#include "installer/main_layout.h"

#include <new>

namespace {

constexpr unsigned long keysym_space = 0x20;
constexpr unsigned long keysym_back_tab = 0xFE20;
constexpr unsigned long keysym_tab = 0xFF09;
constexpr unsigned long keysym_return = 0xFF0D;
constexpr unsigned long keysym_left = 0xFF51;
constexpr unsigned long keysym_right = 0xFF53;
constexpr unsigned long keysym_keypad_enter = 0xFF8D;

// Their outer lines come with the panel.
void repaint() {
    message_panel_set_dirty(installer.panel, true);
    for (PushButton* button : installer.choice_buttons) {
        push_button_set_dirty(button, true);
    }
    installer.ui_dirty = 1;
}

void give_keyboard_to(std::size_t index) {
    installer.choice_with_keyboard = index;
    for (std::size_t i = 0; i < choice_count; ++i) {
        const Colour& colour = i == index ? layout_accent : layout_grey;
        push_button_set_border_colour(installer.choice_buttons[i], colour.r, colour.g, colour.b);
    }
    repaint();
}

void choose(std::size_t index) {
    installer.recipient_chosen = index == 0 ? choice_person : choice_everybody;
}

} // namespace

bool choice_buttons_create() {
    for (std::size_t i = 0; i < choice_count; ++i) {
        auto* button = new (std::nothrow) PushButton;
        if (button == nullptr) {
            return false;
        }
        push_button_init(button, installer.engine, installer.text);
        configure_main_button(button, choice_button_places[i], choice_button_labels[i]);
        installer.choice_buttons[i] = button;
    }
    return true;
}

void choice_buttons_destroy() {
    for (PushButton*& button : installer.choice_buttons) {
        if (button != nullptr) {
            push_button_destroy(button);
            delete button;
            button = nullptr;
        }
    }
}

void choice_buttons_show(bool shown) {
    if (installer.choice_buttons[choice_count - 1] == nullptr) {
        return;
    }
    for (PushButton* button : installer.choice_buttons) {
        push_button_set_hidden(button, !shown);
    }
    give_keyboard_to(0);
}

bool choice_buttons_shown() {
    const PushButton* last = installer.choice_buttons[choice_count - 1];
    return last != nullptr && !push_button_get_hidden(last);
}

void choice_buttons_press(std::int32_t x, std::int32_t y) {
    for (std::size_t i = 0; i < choice_count; ++i) {
        if (push_button_hit(installer.choice_buttons[i], x, y)) {
            push_button_set_highlighted(installer.choice_buttons[i], true);
            give_keyboard_to(i);
        }
    }
}

void choice_buttons_release(std::int32_t x, std::int32_t y) {
    for (std::size_t i = 0; i < choice_count; ++i) {
        PushButton* button = installer.choice_buttons[i];
        if (push_button_get_highlighted(button)) {
            push_button_set_highlighted(button, false);
            repaint();
            if (push_button_hit(button, x, y)) {
                choose(i);
            }
        }
    }
}

void choice_buttons_key(unsigned long keysym) {
    switch (keysym) {
    case keysym_tab:
    case keysym_back_tab:
        give_keyboard_to((installer.choice_with_keyboard + 1) % choice_count);
        break;
    case keysym_left:
        give_keyboard_to(0);
        break;
    case keysym_right:
        give_keyboard_to(choice_count - 1);
        break;
    case keysym_return:
    case keysym_keypad_enter:
    case keysym_space:
        choose(installer.choice_with_keyboard);
        break;
    default:
        break;
    }
}

void choice_buttons_paint_dirty() {
    for (PushButton* button : installer.choice_buttons) {
        if (button != nullptr && push_button_get_dirty(button)) {
            push_button_set_dirty(button, false);
            paint_main_button(button);
        }
    }
}
