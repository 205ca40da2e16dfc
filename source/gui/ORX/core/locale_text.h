// locale_text.h: text from elsewhere in the encoding of the person's locale. Pure, no display.
#pragma once

#include <cstddef>

// The text in the locale's encoding, zero-terminated; it ends at a zero byte. It counts as UTF-8
// when it is whole UTF-8, else as Latin-1: programs mean the one and say the other. A text of which
// the locale lacks a character becomes UTF-8, as a password is on nearly every system. Null without
// memory. The caller frees it with std::free; it may be a password.
[[nodiscard]] unsigned char* text_in_locale(const unsigned char* text, std::size_t size);
