// edit_buffer.cpp: whole characters in, wiped bytes out.

#include "gui/ORX/widgets/edit_buffer.h"

#include "gui/ORX/text/utf8.h"

#include <bit>
#include <cstring>

namespace {

constexpr unsigned long key_return = 0xFF0D;
constexpr unsigned long key_backspace = 0xFF08;
constexpr unsigned long key_delete = 0xFFFF;
constexpr std::size_t longest_text = edit_buffer_size - 1;

bool is_control(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

// Bytes of the character at the start of a text that is not empty. Malformed UTF-8 counts by the
// bytes that are there.
std::size_t character_length(const char* text, bool utf8) {
    const auto lead = static_cast<unsigned char>(*text);
    if (!utf8 || lead < 0xC0) {
        return 1;
    }
    const auto announced = static_cast<std::size_t>(std::countl_one(lead));
    std::size_t length = 1;
    while (length < announced && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        ++length;
    }
    return length;
}

// Copies behind the first length bytes and gives the new length. The text may be the buffer's own,
// since nothing moves to the right; the rest of the buffer is left for the caller to wipe.
std::size_t copy_characters(char* buffer, std::size_t length, const char* text, bool utf8) {
    while (text != nullptr && *text != '\0') {
        const std::size_t bytes = character_length(text, utf8);
        if (!is_control(static_cast<unsigned char>(*text))) {
            if (length + bytes > longest_text) {
                break;
            }
            std::memmove(buffer + length, text, bytes);
            length += bytes;
        }
        text += bytes;
    }
    return length;
}

} // namespace

void edit_buffer_clear(char* buffer) {
    explicit_bzero(buffer, edit_buffer_size);
}

void edit_buffer_set(char* buffer, const char* text, bool utf8) {
    const std::size_t length = copy_characters(buffer, 0, text, utf8);
    explicit_bzero(buffer + length, edit_buffer_size - length);
}

void edit_buffer_append(char* buffer, const char* text, bool utf8) {
    const std::size_t length = copy_characters(buffer, strnlen(buffer, longest_text), text, utf8);
    buffer[length] = '\0';
}

std::int32_t edit_buffer_key(char* buffer, unsigned long keysym, const char* text, bool utf8) {
    if (keysym == key_return) {
        return 1;
    }
    if (keysym == key_backspace || keysym == key_delete) {
        delete_last_char(buffer, edit_buffer_size, utf8);
    } else {
        edit_buffer_append(buffer, text, utf8);
    }
    return 0;
}
