// ORX_nat_string_compare.h: the order in which people expect file names. Pure, no display.
//
// Runs of digits compare by value (file2 before file10), those that begin with a zero digit by
// digit as fractions do, and white space counts for nothing. Character classes are those of the
// locale in force; bytes from 0x80 up sort before all others. The order is a strict weak one, so
// any stable sort may use it.
#pragma once

#include <cstddef>

// -1 when a sorts before b, +1 when after, 0 when equal; fold_case other than 0 takes upper and
// lower case as the same. Zero-terminated strings; a null one is a mistake in the program and ends
// the process with an assertion, in every build.
[[nodiscard]] int strnatcmp0(const char* a, const char* b, int fold_case);

// The two ways of calling it.
[[nodiscard]] int orx_natural_compare(const char* a, const char* b);
[[nodiscard]] int orx_natural_compare_ignoring_case(const char* a, const char* b);

// The same order as bytes: two texts compare as their keys do, byte by byte and unsigned (memcmp
// over the shorter key; no key is the beginning of another one but of its equal). For sorting many
// names. Case is not folded. Texts of less than 65,536 bytes; the key takes at most
// orx_natural_key_room(length of the text) bytes. Returns the key's length.
[[nodiscard]] std::size_t orx_natural_key_room(std::size_t text_length);
[[nodiscard]] std::size_t orx_natural_key(const char* text, unsigned char* key);
