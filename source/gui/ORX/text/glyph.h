// glyph.h: reading a glyph record.
#pragma once

#include "gui/ORX/text/font_data.h"
#include "gui/ORX/text/text_renderer.h"

#include <cstdint>

// The record of a code point, which counts by its low byte; null = no such glyph.
inline const unsigned char* find_glyph(const TextRenderer* text, std::uint32_t code_point) {
    return text->glyphs[code_point & 255U];
}

inline std::uint32_t glyph_width(const unsigned char* glyph) {
    return glyph[orx_glyph_width_offset];
}
inline std::uint32_t glyph_height(const unsigned char* glyph) {
    return glyph[orx_glyph_height_offset];
}
inline std::uint32_t glyph_advance(const unsigned char* glyph) {
    return glyph[orx_glyph_advance_offset];
}
inline std::int32_t glyph_x_bearing(const unsigned char* glyph) {
    return static_cast<std::int8_t>(glyph[orx_glyph_x_bearing_offset]);
}
inline std::int32_t glyph_top_bearing(const unsigned char* glyph) {
    return static_cast<std::int8_t>(glyph[orx_glyph_top_bearing_offset]);
}
// The same byte unsigned, as metrics take it: a bitmap below the baseline then counts as very high.
inline std::uint32_t glyph_top_extent(const unsigned char* glyph) {
    return glyph[orx_glyph_top_bearing_offset];
}
inline const unsigned char* glyph_coverage(const unsigned char* glyph) {
    return glyph + orx_glyph_coverage_offset;
}
