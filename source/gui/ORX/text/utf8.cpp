// utf8.cpp: decoding strings, and taking the last character off an edit buffer.
#include "gui/ORX/text/utf8.h"

#include <bit>
#include <cstddef>
#include <cstring>

namespace {

bool is_continuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}
bool is_lead(unsigned char byte) {
    return byte >= 0xC0U;
}

void delete_last_sequence(char* buffer, std::size_t length) {
    bool continuation_cleared = false;
    for (std::size_t i = length; i-- > 0;) {
        const auto byte = static_cast<unsigned char>(buffer[i]);
        if (is_continuation(byte)) {
            buffer[i] = 0;
            continuation_cleared = true;
            continue;
        }
        // A plain character before stray continuation bytes is a character of its own.
        if (is_lead(byte) || !continuation_cleared) {
            buffer[i] = 0;
        }
        return;
    }
}

} // namespace

const char* utf8_next(const char* position, bool utf8, std::uint32_t* code_point) {
    const auto* next = reinterpret_cast<const unsigned char*>(position);
    if (utf8) {
        while (is_continuation(*next)) {
            ++next;
        }
    }
    const unsigned char first = *next++;
    std::uint32_t value = first;
    if (utf8 && first >= 0x80U) {
        const int length = std::countl_one(first);
        value = length >= 7 ? 0U : first & (0x7FU >> static_cast<unsigned>(length));
        // The zero that cuts a sequence short is left where it is, so that the caller meets it.
        for (int i = 1; i < length && *next != 0; ++i) {
            value = value << 6U | (*next++ & 63U);
        }
    }
    *code_point = value;
    return reinterpret_cast<const char*>(next);
}

void delete_last_char(char* buffer, std::int32_t size, bool utf8) {
    if (buffer == nullptr || size < 2) {
        return;
    }
    const auto limit = static_cast<std::size_t>(size) - 1;
    const std::size_t length = strnlen(buffer, limit);
    if (length == 0 || length == limit) {
        return;
    }
    if (utf8) {
        delete_last_sequence(buffer, length);
    } else {
        buffer[length - 1] = 0;
    }
}
