// glyph_blend.h: blending coverage into pixels in linear light.
#pragma once

#include "gui/ORX/text/text_renderer.h"

#include <cstdint>

struct TextColour {
    std::int32_t r;
    std::int32_t g;
    std::int32_t b;
};

// The rule for one channel. The colour is taken as it is, not decoded, so that only white and black
// come out exact. A coverage of 0 blends too: what was there goes through both tables.
inline std::uint8_t blend_coverage(const TextRenderer* text, std::uint8_t stored,
                                   std::int32_t colour, std::int32_t coverage) {
    const std::int64_t ground = text->gamma_decode[stored];
    const std::int64_t linear = ground + (((colour - ground) * coverage) >> 8);
    return static_cast<std::uint8_t>(text->gamma_encode[linear & 255]);
}

inline void blend_coverage_pixel(const TextRenderer* text, std::uint8_t* pixel,
                                 const TextColour& colour, std::int32_t coverage) {
    pixel[0] = blend_coverage(text, pixel[0], colour.r, coverage);
    pixel[1] = blend_coverage(text, pixel[1], colour.g, coverage);
    pixel[2] = blend_coverage(text, pixel[2], colour.b, coverage);
}

// A box of pixels and the coverage that is blended into it.
struct GlyphBox {
    std::uint8_t* pixels;
    std::int64_t pixel_stride; // bytes from one row to the next
    const unsigned char* coverage;
    std::int64_t coverage_stride;
    std::int64_t columns;
    std::int64_t rows;
};

// Blends the coverage into the whole box.
void blend_glyph_box(const TextRenderer* text, const TextColour& colour, const GlyphBox& box);
