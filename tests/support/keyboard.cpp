// Finding, borrowing and moving keys.

#include "support/keyboard.h"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <stdexcept>

namespace support {

namespace {

std::vector<KeySym> symbols_of(const Keyboard& keyboard, int code, int& per_key) {
    KeySym* symbols =
        XGetKeyboardMapping(keyboard.display, static_cast<KeyCode>(code), 1, &per_key);
    std::vector<KeySym> copy(symbols, symbols + per_key);
    XFree(symbols);
    return copy;
}

void set_symbol(const Keyboard& keyboard, KeyCode code, KeySym symbol) {
    // Upper and lower case would be split over two levels, so both get the same symbol.
    KeySym symbols[] = {symbol, symbol};
    XChangeKeyboardMapping(keyboard.display, code, 2, symbols, 1);
    XSync(keyboard.display, False);
}

} // namespace

std::vector<char32_t> characters_of(const std::string& text) {
    std::vector<char32_t> characters;
    for (std::size_t index = 0; index < text.size();) {
        const auto lead = static_cast<unsigned char>(text[index]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
        if ((lead >= 0x80 && lead < 0xc2) || lead > 0xf4 || index + length > text.size()) {
            throw std::invalid_argument("the text to type is not UTF-8");
        }
        char32_t character = length == 1 ? lead : lead & (0xffU >> (length + 1));
        for (std::size_t next = 1; next < length; ++next) {
            character =
                (character << 6U) | (static_cast<unsigned char>(text[index + next]) & 0x3fU);
        }
        characters.push_back(character);
        index += length;
    }
    return characters;
}

KeySym keysym_of(char32_t character) {
    if (character == U'\n') {
        return XK_Return;
    }
    const bool latin =
        (character >= 0x20 && character < 0x7f) || (character >= 0xa0 && character <= 0xff);
    return latin ? character : 0x01000000U | character;
}

void find_spare_keys(Keyboard& keyboard) {
    int lowest = 0;
    int highest = 0;
    XDisplayKeycodes(keyboard.display, &lowest, &highest);
    for (int code = lowest; code <= highest; ++code) {
        int per_key = 0;
        bool empty = true;
        for (const KeySym symbol : symbols_of(keyboard, code, per_key)) {
            empty = empty && symbol == NoSymbol;
        }
        if (empty) {
            keyboard.spare_keys.push_back(static_cast<KeyCode>(code));
        }
    }
}

Key key_for(Keyboard& keyboard, KeySym keysym) {
    int lowest = 0;
    int highest = 0;
    XDisplayKeycodes(keyboard.display, &lowest, &highest);
    for (int code = lowest; code <= highest; ++code) {
        int per_key = 0;
        const std::vector<KeySym> symbols = symbols_of(keyboard, code, per_key);
        for (std::size_t level = 0; level < 2 && level < symbols.size(); ++level) {
            if (symbols[level] == keysym) {
                return {static_cast<KeyCode>(code), level == 1};
            }
        }
    }
    if (keyboard.spare_keys.empty()) {
        throw std::runtime_error("no spare key left to type with");
    }
    const KeyCode code = keyboard.spare_keys.back();
    keyboard.spare_keys.pop_back();
    set_symbol(keyboard, code, keysym);
    return {code, false};
}

void move_key(const Keyboard& keyboard, KeyCode code, bool down) {
    XTestFakeKeyEvent(keyboard.display, code, down ? True : False, CurrentTime);
    XSync(keyboard.display, False);
}

} // namespace support
