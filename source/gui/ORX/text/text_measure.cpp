// text_measure.cpp: widths and heights of texts.
#include "gui/ORX/text/text_measure.h"

#include "gui/ORX/text/glyph.h"
#include "gui/ORX/text/text_walk.h"

#include <algorithm>

namespace {

constexpr std::int32_t measured_characters = 1024;

} // namespace

std::int32_t text_width(const TextRenderer* text, const char* string) {
    TextWalk walk = walk_text(text, string, measured_characters);
    std::uint32_t width = 0;
    while (next_character(walk)) {
        const unsigned char* glyph = find_glyph(text, walk.code_point);
        width += glyph == nullptr ? 0 : glyph_advance(glyph);
    }
    return static_cast<std::int32_t>(width);
}

std::int32_t password_width(const TextRenderer* text, const char* string) {
    const unsigned char* star = find_glyph(text, '*');
    TextWalk walk = walk_text(text, string, measured_characters);
    std::uint32_t width = 0;
    while (next_character(walk)) {
        width += star == nullptr ? 0 : glyph_advance(star);
    }
    return static_cast<std::int32_t>(width);
}

std::int32_t text_height(const TextRenderer* text, const char* string) {
    TextWalk walk = walk_text(text, string, measured_characters);
    std::uint32_t height = 0;
    std::uint32_t top = 0;
    while (next_character(walk)) {
        const unsigned char* glyph = find_glyph(text, walk.code_point);
        if (glyph != nullptr) {
            height = std::max(height, glyph_height(glyph));
            top = std::max(top, glyph_top_extent(glyph));
        }
    }
    return static_cast<std::int32_t>(2 * height - std::min(height, top));
}
