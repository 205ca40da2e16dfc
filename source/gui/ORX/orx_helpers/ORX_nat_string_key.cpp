// ORX_nat_string_key.cpp: natural order as bytes to compare.
//
// What the comparison does with two texts at once can be told of one text alone: a run of digits
// that begins with a zero comes before one that does not, the former compare as fractions and the
// latter by length first; against any other byte a run counts as a digit.

#include "gui/ORX/orx_helpers/ORX_nat_string_compare.h"

#include <cctype>
#include <cstring>

namespace {

constexpr unsigned char fraction_mark = 0x80 + '0';
constexpr unsigned char number_mark = 0x80 + '1';
constexpr unsigned char fraction_end = 0; // before every digit
constexpr unsigned char text_end = 0x80;

// Signed order as unsigned: -128 becomes 0.
unsigned char biased(signed char c) {
    return static_cast<unsigned char>(c + 0x80);
}

} // namespace

std::size_t orx_natural_key_room(std::size_t text_length) {
    return 4 * text_length + 1; // a run of one digit takes four bytes
}

std::size_t orx_natural_key(const char* text, unsigned char* key) {
    unsigned char* out = key;
    const auto* rest = reinterpret_cast<const signed char*>(text);
    while (*rest != 0) {
        if (std::isspace(*rest) != 0) {
            ++rest;
            continue;
        }
        if (std::isdigit(*rest) == 0) {
            *out++ = biased(*rest++);
            continue;
        }
        std::size_t length = 1;
        while (std::isdigit(rest[length]) != 0) {
            ++length;
        }
        const bool fraction = *rest == '0';
        *out++ = fraction ? fraction_mark : number_mark;
        if (!fraction) {
            *out++ = static_cast<unsigned char>(length >> 8);
            *out++ = static_cast<unsigned char>(length & 255);
        }
        std::memcpy(out, rest, length);
        out += length;
        rest += length;
        if (fraction) {
            *out++ = fraction_end;
        }
    }
    *out++ = text_end;
    return static_cast<std::size_t>(out - key);
}
