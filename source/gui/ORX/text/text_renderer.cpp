// text_renderer.cpp: building the gamma tables, the metrics and the choice of encoding.
#include "gui/ORX/text/text_renderer.h"

#include "gui/ORX/core/console_line.h"
#include "gui/ORX/text/font_data.h"
#include "gui/ORX/text/glyph.h"
#include "gui/ORX/text/glyph_blend.h"

#include <langinfo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

namespace {

constexpr float decode_exponent = 1.6F;
constexpr float encode_exponent = 0.625F;

// The last glyph is left out of the metrics on purpose.
constexpr int glyphs_that_count = 255;

std::uint32_t gamma_entry(int i, float exponent) {
    const float base = static_cast<float>(i) / 255.0F;
    if (!(base > 0.0F)) {
        return 0;
    }
    const float value = powf(base, exponent);
    if (value > 1.0F) {
        return 255;
    }
    return value < 0.0F ? 0U : static_cast<std::uint32_t>(value * 255.0F) & 255U;
}

// Nearly all text is white, and every pixel of a glyph's box is blended: a table of all outcomes
// more than halves the time of drawing it.
void tabulate_white(TextRenderer* text) {
    auto* table = new (std::nothrow) std::uint8_t[256][256];
    if (table == nullptr) {
        return;
    }
    for (int coverage = 0; coverage < 256; ++coverage) {
        for (int stored = 0; stored < 256; ++stored) {
            table[coverage][stored] =
                blend_coverage(text, static_cast<std::uint8_t>(stored), 255, coverage);
        }
    }
    text->white_over = table;
}

void measure_font(TextRenderer* text) {
    for (std::uint32_t code = 0; code < glyphs_that_count; ++code) {
        const unsigned char* glyph = find_glyph(text, code);
        if (glyph == nullptr) {
            continue;
        }
        text->max_glyph_height = std::max(text->max_glyph_height, glyph_height(glyph));
        text->max_glyph_width =
            std::max({text->max_glyph_width, glyph_width(glyph), glyph_advance(glyph)});
        text->ascent = std::max(text->ascent, glyph_top_extent(glyph));
    }
    text->ascent = std::min(text->ascent, text->max_glyph_height);
    text->line_height = 2 * text->max_glyph_height - text->ascent;
}

} // namespace

TextRenderer* text_renderer_new(UiEngine* engine) {
    auto* text = new (std::nothrow) TextRenderer{};
    if (text == nullptr) {
        return nullptr;
    }
    for (int i = 0; i < 256; ++i) {
        text->gamma_encode[i] = gamma_entry(i, encode_exponent);
        text->gamma_decode[i] = gamma_entry(i, decode_exponent);
    }
    tabulate_white(text);
    std::copy_n(orx_font_glyphs, 256, text->glyphs);
    text->default_colour = 0xFFFFFF;
    text->engine = engine;
    measure_font(text);
    text->utf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0 ? 1 : 0;
    if (text->utf8 != 0) {
        print_line("\nZEPH-UI: UI text - Using UTF-8 encoding");
    }
    return text;
}

void text_renderer_destroy(TextRenderer* text) {
    if (text != nullptr) {
        delete[] text->white_over;
    }
    delete text;
}

std::uint32_t max_glyph_width(const TextRenderer* text) {
    return text->max_glyph_width;
}
std::uint32_t font_height(const TextRenderer* text) {
    return text->max_glyph_height;
}
std::uint32_t ascent(const TextRenderer* text) {
    return text->ascent;
}
std::uint32_t line_height(const TextRenderer* text) {
    return text->line_height;
}
