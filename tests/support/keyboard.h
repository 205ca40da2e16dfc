// The keys of a display: which key, with or without shift, makes a character; the connection that
// presses them. Used by Person alone.

#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace support {

struct Key {
    KeyCode code = 0;
    bool shift = false;
};

struct Keyboard {
    Display* display = nullptr;
    std::vector<KeyCode> spare_keys; // keys without a symbol, used for characters that have no key
};

// Unicode values of a UTF-8 text; throws std::invalid_argument on anything else.
[[nodiscard]] std::vector<char32_t> characters_of(const std::string& text);

// The keysym of a character: its own value in Latin-1, else the Unicode keysym.
[[nodiscard]] KeySym keysym_of(char32_t character);

void find_spare_keys(Keyboard& keyboard);

// The key for a keysym; a spare key is given the symbol when no key has it.
[[nodiscard]] Key key_for(Keyboard& keyboard, KeySym keysym);

// Presses or releases the shift key or any other key.
void move_key(const Keyboard& keyboard, KeyCode code, bool down);

} // namespace support
