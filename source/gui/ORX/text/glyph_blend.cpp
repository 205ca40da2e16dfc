// glyph_blend.cpp: blending a glyph in any colour, and in white.
#include "gui/ORX/text/glyph_blend.h"

#include <algorithm>

namespace {

// The number of columns is a constant, so that a row is straight code: glyphs are a few pixels
// wide, and the end of so short a loop costs as much as its pixels.
template <int columns> void blend_white_columns(const TextRenderer* text, const GlyphBox& box) {
    std::uint8_t* pixel = box.pixels;
    const unsigned char* coverage = box.coverage;
    for (std::int64_t y = 0; y < box.rows; ++y) {
#pragma GCC unroll 8
        for (std::int64_t x = 0; x < columns; ++x) {
            const std::uint8_t* outcome = text->white_over[coverage[x]];
            const std::uint8_t mixed[3] = {outcome[pixel[x * 4]], outcome[pixel[x * 4 + 1]],
                                           outcome[pixel[x * 4 + 2]]};
            pixel[x * 4] = mixed[0];
            pixel[x * 4 + 1] = mixed[1];
            pixel[x * 4 + 2] = mixed[2];
        }
        pixel += box.pixel_stride;
        coverage += box.coverage_stride;
    }
}

using BlendColumns = void (*)(const TextRenderer* text, const GlyphBox& box);
constexpr std::int64_t most_columns = 8;
constexpr BlendColumns blend_white[most_columns] = {
    blend_white_columns<1>, blend_white_columns<2>, blend_white_columns<3>, blend_white_columns<4>,
    blend_white_columns<5>, blend_white_columns<6>, blend_white_columns<7>, blend_white_columns<8>};

void blend_white_box(const TextRenderer* text, GlyphBox box) {
    while (box.columns > 0) {
        const std::int64_t columns = std::min(box.columns, most_columns);
        blend_white[columns - 1](text, box);
        box.pixels += columns * 4;
        box.coverage += columns;
        box.columns -= columns;
    }
}

} // namespace

void blend_glyph_box(const TextRenderer* text, const TextColour& colour, const GlyphBox& box) {
    const bool white = colour.r == 255 && colour.g == 255 && colour.b == 255;
    // In an image narrower than the glyph its rows share pixels, and the order counts.
    const bool rows_apart = box.columns * 4 <= box.pixel_stride;
    if (white && rows_apart && text->white_over != nullptr) {
        blend_white_box(text, box);
        return;
    }
    for (std::int64_t y = 0; y < box.rows; ++y) {
        std::uint8_t* row = box.pixels + y * box.pixel_stride;
        const unsigned char* coverage = box.coverage + y * box.coverage_stride;
        for (std::int64_t x = 0; x < box.columns; ++x) {
            blend_coverage_pixel(text, row + x * 4, colour, coverage[x]);
        }
    }
}
