// utf8.h: strings as code points, and taking the last one off an edit buffer. Pure.
#pragma once

#include <cstdint>

// Decodes the character at position and returns the position after it. Without utf8 the code
// point is the byte. Malformed text is decoded as it comes: stray continuation bytes are passed
// over, and whatever follows a lead byte counts as its continuation. A zero byte ends a sequence
// early and is left for the next call, so that no walk passes a text's end.
[[nodiscard]] const char* utf8_next(const char* position, bool utf8, std::uint32_t* code_point);

// Removes the last character of a zero-terminated edit buffer of size bytes; its bytes become 0. An
// empty text, and one of size - 1 or more bytes, is left alone. Stray continuation bytes at the end
// go without the plain character before them.
void delete_last_char(char* buffer, std::int32_t size, bool utf8);
