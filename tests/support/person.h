// A person's hands: real pointer and key events, made by the server itself.
//
// The person has a connection of its own; each action has reached the server when its function
// returns, what windows make of it comes later (wait for the effect). Coordinates are device pixels
// on the root of the screen.

#pragma once

#include "support/display_view.h"

#include <memory>
#include <string>

namespace support {

struct Keyboard;

inline constexpr int left_button = 1;
inline constexpr int middle_button = 2;
inline constexpr int right_button = 3;
inline constexpr int wheel_up_button = 4;
inline constexpr int wheel_down_button = 5;

// The person must go before the server does: Xlib ends a program whose server goes away.
class Person {
public:
    // Connects; throws std::runtime_error when there is no display or it takes no test input.
    explicit Person(const std::string& display_name, int screen = 0);
    ~Person();
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    void move_pointer(int x, int y);
    void press_button(int button = left_button);
    void release_button(int button = left_button);
    void click(int button = left_button);
    void click_at(int x, int y, int button = left_button);
    void turn_wheel_up(int steps = 1);
    void turn_wheel_down(int steps = 1);

    // Puts what the keyboard lacks of a UTF-8 text on spare keys: before a program looks at it, for
    // Xlib, asking for one key while the next one changes, now and then misses that.
    void get_keys_for(const std::string& text);
    // Types UTF-8 text. Characters the keyboard lacks are put on a spare key first.
    void type(const std::string& text);
    // Presses and releases one key, by keysym (XK_Return, XK_BackSpace, ...).
    void press_key(unsigned long keysym);
    void press_return();
    void press_backspace();
    // Presses a key while another is held down, as Control+u.
    void press_with(unsigned long held_keysym, unsigned long keysym);

private:
    std::unique_ptr<Keyboard> keyboard_;
    int screen_;
};

} // namespace support
