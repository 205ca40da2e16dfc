// locale_text.cpp: from UTF-8 or Latin-1 by way of characters to the locale's encoding.
#include "gui/ORX/core/locale_text.h"

#include <langinfo.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace {

// In a text that is not UTF-8 a byte is a character; none has more bytes in either encoding.
constexpr std::size_t most_bytes = MB_LEN_MAX;

struct Character {
    std::uint32_t code = 0;
    std::size_t bytes = 0; // 0 = malformed
};

// The character at the start of the text.
Character utf8_character(const unsigned char* text, std::size_t size) {
    const unsigned char lead = text[0];
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || bytes > size) {
        return {};
    }
    std::uint32_t code = lead & (0x7FU >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((text[i] & 0xC0) != 0x80) {
            return {};
        }
        code = code << 6 | (text[i] & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code < 0xE000;
    return code < least[bytes] || code > 0x10FFFF || surrogate ? Character{}
                                                               : Character{code, bytes};
}

bool is_utf8(const unsigned char* text, std::size_t size) {
    for (std::size_t i = 0; i < size;) {
        const Character character = utf8_character(text + i, size - i);
        if (character.bytes == 0) {
            return false;
        }
        i += character.bytes;
    }
    return true;
}

Character next_character(const unsigned char* text, std::size_t size, bool utf8) {
    return utf8 ? utf8_character(text, size) : Character{text[0], 1};
}

std::size_t put_utf8(std::uint32_t code, unsigned char* out) {
    if (code < 0x80) {
        out[0] = static_cast<unsigned char>(code);
        return 1;
    }
    const std::size_t bytes = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    for (std::size_t i = bytes; i-- > 1; code >>= 6) {
        out[i] = static_cast<unsigned char>(0x80 | (code & 0x3F));
    }
    out[0] = static_cast<unsigned char>((0xF00U >> bytes & 0xFF) | code);
    return bytes;
}

// Bytes written to out, which has room, or -1 for a character that the locale lacks.
long put_all(const unsigned char* text, std::size_t size, bool utf8, bool in_locale,
             unsigned char* out) {
    std::mbstate_t state{};
    long length = 0;
    for (std::size_t i = 0; i < size;) {
        const Character character = next_character(text + i, size - i, utf8);
        std::size_t bytes = 0;
        if (in_locale) {
            bytes = std::wcrtomb(reinterpret_cast<char*>(out + length),
                                 static_cast<wchar_t>(character.code), &state);
            if (bytes == static_cast<std::size_t>(-1)) {
                return -1;
            }
        } else {
            bytes = put_utf8(character.code, out + length);
        }
        length += static_cast<long>(bytes);
        i += character.bytes;
    }
    return length;
}

} // namespace

unsigned char* text_in_locale(const unsigned char* text, std::size_t size) {
    size = strnlen(reinterpret_cast<const char*>(text), size);
    const bool utf8 = is_utf8(text, size);
    const bool locale_is_utf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    auto* out = static_cast<unsigned char*>(std::malloc(size * most_bytes + 1));
    if (out == nullptr) {
        return nullptr;
    }
    long length = locale_is_utf8 ? -1 : put_all(text, size, utf8, true, out);
    if (length < 0) {
        length = put_all(text, size, utf8, false, out);
    }
    out[length] = '\0';
    return out;
}
