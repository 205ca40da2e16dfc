// text_measure.h: how wide and how high a text is, in design pixels. No lock; any thread.
//
// Texts are zero-terminated, UTF-8 when the renderer's utf8 flag is set; a code point counts by
// its low byte, and a low byte of 0 ends the text. At most 1,024 characters are looked at. A glyph
// that is missing has no size; a null text is an empty one.
#pragma once

#include "gui/ORX/text/text_renderer.h"

#include <cstdint>

// The sum of the advances; for a password one star for each character. The height is twice the
// largest glyph height less the smaller of it and the largest top bearing; 0 for an empty text.
[[nodiscard]] std::int32_t text_width(const TextRenderer* text, const char* string);
[[nodiscard]] std::int32_t password_width(const TextRenderer* text, const char* string);
[[nodiscard]] std::int32_t text_height(const TextRenderer* text, const char* string);
