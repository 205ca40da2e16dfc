// text_measure.h: how wide and how high a text is, in design pixels. No lock; any thread.
//
// Texts are zero-terminated, UTF-8 when the renderer's utf8 flag is set; a code point counts by
// its low byte, and a low byte of 0 ends the text. At most 1,024 characters are looked at.
#pragma once

#include "gui/ORX/text/text_renderer.h"

#include <cstdint>

[[nodiscard]] std::int32_t text_width(const TextRenderer* text, const char* string);
[[nodiscard]] std::int32_t password_width(const TextRenderer* text, const char* string);
[[nodiscard]] std::int32_t text_height(const TextRenderer* text, const char* string);
