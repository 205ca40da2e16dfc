// edit_buffer.h: the text of a one-line field, and what keys do to it. Pure, no display.
//
// A buffer of 1,024 bytes that always holds a zero-terminated text of at most 1,023. Only whole
// characters enter it (with utf8: whole sequences) and no control characters (bytes below 0x20, and
// 0x7F). What leaves it is wiped, so that it may hold a secret.
#pragma once

#include <cstdint>

inline constexpr std::int32_t edit_buffer_size = 1024;

// Wipes the whole buffer.
void edit_buffer_clear(char* buffer);

// Replaces the text by as much of another as fits; null empties it. The text may be the buffer's.
void edit_buffer_set(char* buffer, const char* text, bool utf8);

// Adds as much of a text as fits; null adds nothing.
void edit_buffer_append(char* buffer, const char* text, bool utf8);

// One key press: Return changes nothing and gives 1; BackSpace and Delete take the last character
// off (nothing at exactly 1,023 bytes); any other key appends its text. 0 but for Return.
[[nodiscard]] std::int32_t edit_buffer_key(char* buffer, unsigned long keysym, const char* text,
                                           bool utf8);
