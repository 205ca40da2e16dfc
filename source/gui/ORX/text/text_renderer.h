// text_renderer.h: the built-in font, its gamma tables and its metrics.
//
// Made once, after the engine, and immutable afterwards but for current_colour, so any thread may
// read it. Glyphs belong to the executable. Metrics are design pixels.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct TextRenderer {
    const unsigned char* glyphs[256]; // by the code point's low byte; null = no such glyph
    std::uint32_t gamma_decode[256];  // screen value to linear light, exponent 1.6
    std::uint32_t gamma_encode[256];  // and back, exponent 0.625
    std::uint32_t default_colour;     // 0xFFFFFF
    std::uint32_t current_colour[3];  // R, G, B, gamma-decoded
    std::uint32_t max_glyph_height;
    std::uint32_t max_glyph_width; // of all widths and advances
    std::uint32_t ascent;
    std::uint32_t line_height;
    std::int32_t utf8; // 1 = the locale's character set is UTF-8
    UiEngine* engine;  // not owned
    // What white text of a coverage makes of a stored channel: [coverage][stored], 256 x 256,
    // owned. It follows from the two tables and is there for speed; null = white is blended as any
    // colour.
    const std::uint8_t (*white_over)[256];
};

// The locale must already have been set; when its character set is UTF-8 a line on standard output
// says so. Null when no memory can be had. Freed by text_renderer_destroy, which ignores null. The
// engine is only kept and may be null.
[[nodiscard]] TextRenderer* text_renderer_new(UiEngine* engine);
void text_renderer_destroy(TextRenderer* text);

[[nodiscard]] std::uint32_t max_glyph_width(const TextRenderer* text);
[[nodiscard]] std::uint32_t font_height(const TextRenderer* text);
[[nodiscard]] std::uint32_t ascent(const TextRenderer* text);
[[nodiscard]] std::uint32_t line_height(const TextRenderer* text);
