// Pointer and key events by the XTEST extension.

#include "support/person.h"

#include "support/keyboard.h"

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <stdexcept>

namespace support {

Person::Person(const std::string& display_name, int screen)
    : keyboard_(std::make_unique<Keyboard>()), screen_(screen) {
    keyboard_->display = XOpenDisplay(display_name.c_str());
    if (keyboard_->display == nullptr) {
        throw std::runtime_error("the person finds no display " + display_name);
    }
    int event = 0;
    int error = 0;
    int major = 0;
    int minor = 0;
    if (XTestQueryExtension(keyboard_->display, &event, &error, &major, &minor) == False) {
        throw std::runtime_error("the display takes no test input");
    }
    // Without this a window manager's server grab would hold the person still.
    XTestGrabControl(keyboard_->display, True);
    find_spare_keys(*keyboard_);
}

Person::~Person() {
    // The keys stay borrowed: windows may still be reading what was typed, and the server is
    // private.
    XCloseDisplay(keyboard_->display);
}

void Person::move_pointer(int x, int y) {
    XTestFakeMotionEvent(keyboard_->display, screen_, x, y, CurrentTime);
    XSync(keyboard_->display, False);
}

void Person::press_button(int button) {
    XTestFakeButtonEvent(keyboard_->display, static_cast<unsigned>(button), True, CurrentTime);
    XSync(keyboard_->display, False);
}

void Person::release_button(int button) {
    XTestFakeButtonEvent(keyboard_->display, static_cast<unsigned>(button), False, CurrentTime);
    XSync(keyboard_->display, False);
}

void Person::click(int button) {
    press_button(button);
    release_button(button);
}

void Person::click_at(int x, int y, int button) {
    move_pointer(x, y);
    click(button);
}

void Person::turn_wheel_up(int steps) {
    for (; steps > 0; --steps) {
        click(wheel_up_button);
    }
}

void Person::turn_wheel_down(int steps) {
    for (; steps > 0; --steps) {
        click(wheel_down_button);
    }
}

void Person::get_keys_for(const std::string& text) {
    for (const char32_t character : characters_of(text)) {
        (void)key_for(*keyboard_, keysym_of(character));
    }
}

void Person::type(const std::string& text) {
    for (const char32_t character : characters_of(text)) {
        press_key(keysym_of(character));
    }
}

void Person::press_key(unsigned long keysym) {
    const Key key = key_for(*keyboard_, keysym);
    const KeyCode shift = XKeysymToKeycode(keyboard_->display, XK_Shift_L);
    if (key.shift) {
        move_key(*keyboard_, shift, true);
    }
    move_key(*keyboard_, key.code, true);
    move_key(*keyboard_, key.code, false);
    if (key.shift) {
        move_key(*keyboard_, shift, false);
    }
}

void Person::press_return() {
    press_key(XK_Return);
}

void Person::press_backspace() {
    press_key(XK_BackSpace);
}

void Person::press_with(unsigned long held_keysym, unsigned long keysym) {
    const Key held = key_for(*keyboard_, held_keysym);
    move_key(*keyboard_, held.code, true);
    press_key(keysym);
    move_key(*keyboard_, held.code, false);
}

} // namespace support
