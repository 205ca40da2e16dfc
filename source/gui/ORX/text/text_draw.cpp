// text_draw.cpp: glyphs and texts into a Pixbuf.
#include "gui/ORX/text/text_draw.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/glyph.h"
#include "gui/ORX/text/glyph_blend.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/text/text_walk.h"

#include <algorithm>
#include <limits>

namespace {

// Bounds are exclusive.
struct ClipBox {
    std::int64_t top;
    std::int64_t bottom;
    std::int64_t left;
    std::int64_t right;
};

// Pixels left of and above the image are never drawn; nothing is cut right and below.
constexpr std::int64_t far_away = std::numeric_limits<std::int32_t>::max();
constexpr ClipBox image_only = {-1, far_away, -1, far_away};

ClipBox clip_box(std::int32_t top, std::int32_t bottom, std::int32_t left, std::int32_t right) {
    return {std::max(top, -1), bottom, std::max(left, -1), right};
}

// Everything that stays the same from one glyph of a text to the next.
struct Brush {
    const TextRenderer* text;
    Pixbuf* pixbuf;
    ClipBox clip;
    TextColour colour;
};

std::int64_t buffer_bytes(const Pixbuf* pixbuf) {
    if (pixbuf == nullptr || pixbuf->pixels == nullptr) {
        return 0;
    }
    return static_cast<std::int64_t>(pixbuf->rowstride) * pixbuf->height;
}

struct PixelSpan {
    std::uint8_t* pixels;
    std::int64_t count;
};

// The pixels from (x, y) on, neither of them negative. Those that lie right of the image are the
// ones that follow in memory; behind the last one there is nothing to draw on.
PixelSpan pixel_span(const Pixbuf* pixbuf, std::int64_t x, std::int64_t y, std::int64_t count) {
    const std::int64_t offset = y * pixbuf->rowstride + x * 4;
    const std::int64_t there = (buffer_bytes(pixbuf) - offset) / 4;
    return there < 1 ? PixelSpan{nullptr, 0}
                     : PixelSpan{pixbuf->pixels + offset, std::min(count, there)};
}

void draw_glyph_record(const Brush& brush, const unsigned char* glyph, std::int64_t pen,
                       std::int64_t baseline) {
    const std::int64_t width = glyph_width(glyph);
    const std::int64_t height = glyph_height(glyph);
    const std::int64_t left = pen + glyph_x_bearing(glyph);
    const std::int64_t top = baseline - glyph_top_bearing(glyph);
    const std::int64_t first_column = std::max<std::int64_t>(0, brush.clip.left + 1 - left);
    const std::int64_t end_column = std::min(width, brush.clip.right - left);
    const std::int64_t first_row = std::max<std::int64_t>(0, brush.clip.top + 1 - top);
    const std::int64_t end_row = std::min(height, brush.clip.bottom - top);
    const std::int64_t columns = end_column - first_column;
    for (std::int64_t row = first_row; row < end_row && columns > 0; ++row) {
        const PixelSpan span = pixel_span(brush.pixbuf, left + first_column, top + row, columns);
        blend_coverage_row(brush.text, span.pixels, brush.colour,
                           glyph_coverage(glyph) + row * width + first_column, span.count);
    }
}

// Draws the glyph, if there is one, and returns where the pen is then.
std::int64_t draw_at_pen(const Brush& brush, std::uint32_t code_point, std::int64_t pen,
                         std::int64_t baseline) {
    const unsigned char* glyph = find_glyph(brush.text, code_point);
    if (glyph == nullptr) {
        return pen;
    }
    draw_glyph_record(brush, glyph, pen, baseline);
    return pen + glyph_advance(glyph);
}

// masked draws a star for each character.
void draw_string(const Brush& brush, const char* string, std::int64_t x, std::int64_t baseline,
                 std::int32_t max_chars, bool masked) {
    if (max_chars < 0 || buffer_bytes(brush.pixbuf) == 0) {
        return;
    }
    std::int64_t pen = x;
    TextWalk walk = walk_text(brush.text, string, max_chars);
    while (next_character(walk)) {
        pen = draw_at_pen(brush, masked ? '*' : walk.code_point, pen, baseline);
    }
    if (walk.ended) {
        return;
    }
    // The limit was reached, perhaps with nothing left out.
    for (int dot = 0; dot < 3; ++dot) {
        pen = draw_at_pen(brush, '.', pen, baseline);
    }
}

} // namespace

void draw_text(const TextRenderer* text, Pixbuf* pixbuf, const char* string, std::int32_t x,
               std::int32_t y, std::int32_t r, std::int32_t g, std::int32_t b,
               std::int32_t max_chars) {
    draw_string({text, pixbuf, image_only, {r, g, b}}, string, x, y, max_chars, false);
}

void draw_text_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string, std::int32_t x,
                       std::int32_t y, std::int32_t clip_top, std::int32_t clip_bottom,
                       std::int32_t clip_left, std::int32_t clip_right, std::int32_t r,
                       std::int32_t g, std::int32_t b, std::int32_t max_chars) {
    draw_string({text, pixbuf, clip_box(clip_top, clip_bottom, clip_left, clip_right), {r, g, b}},
                string, x, y, max_chars, false);
}

void draw_password_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                           std::int32_t x, std::int32_t y, std::int32_t clip_top,
                           std::int32_t clip_bottom, std::int32_t clip_left,
                           std::int32_t clip_right, std::int32_t r, std::int32_t g, std::int32_t b,
                           std::int32_t max_chars) {
    draw_string({text, pixbuf, clip_box(clip_top, clip_bottom, clip_left, clip_right), {r, g, b}},
                string, x, y, max_chars, true);
}

void draw_text_right_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                             std::int32_t x, std::int32_t y, std::int32_t clip_top,
                             std::int32_t clip_bottom, std::int32_t clip_left,
                             std::int32_t clip_right, std::int32_t r, std::int32_t g,
                             std::int32_t b, std::int32_t max_chars) {
    draw_string({text, pixbuf, clip_box(clip_top, clip_bottom, clip_left, clip_right), {r, g, b}},
                string, std::int64_t{x} - text_width(text, string), y, max_chars, false);
}

void draw_password_right_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                                 std::int32_t x, std::int32_t y, std::int32_t clip_top,
                                 std::int32_t clip_bottom, std::int32_t clip_left,
                                 std::int32_t clip_right, std::int32_t r, std::int32_t g,
                                 std::int32_t b, std::int32_t max_chars) {
    draw_string({text, pixbuf, clip_box(clip_top, clip_bottom, clip_left, clip_right), {r, g, b}},
                string, std::int64_t{x} - password_width(text, string), y, max_chars, true);
}

void draw_glyph(const TextRenderer* text, Pixbuf* pixbuf, std::uint32_t code_point, std::int32_t x,
                std::int32_t y, std::int32_t r, std::int32_t g, std::int32_t b) {
    if (buffer_bytes(pixbuf) > 0) {
        (void)draw_at_pen({text, pixbuf, image_only, {r, g, b}}, code_point, x, y);
    }
}

void blend_glyph_pixel(const TextRenderer* text, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                       std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t coverage) {
    if (x < 0 || y < 0 || buffer_bytes(pixbuf) == 0) {
        return;
    }
    const PixelSpan span = pixel_span(pixbuf, x, y, 1);
    if (span.count > 0) {
        blend_coverage_pixel(text, span.pixels, {r, g, b}, coverage);
    }
}

void set_colour(TextRenderer* text, std::int32_t r, std::int32_t g, std::int32_t b) {
    text->current_colour[0] = text->gamma_decode[static_cast<std::uint32_t>(r) & 255U];
    text->current_colour[1] = text->gamma_decode[static_cast<std::uint32_t>(g) & 255U];
    text->current_colour[2] = text->gamma_decode[static_cast<std::uint32_t>(b) & 255U];
}

void draw_text_current_colour(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                              std::int32_t x, std::int32_t y, std::int32_t max_chars) {
    draw_text(text, pixbuf, string, x, y, static_cast<std::int32_t>(text->current_colour[0]),
              static_cast<std::int32_t>(text->current_colour[1]),
              static_cast<std::int32_t>(text->current_colour[2]), max_chars);
}

void put_glyph_pixel(const TextRenderer*, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                     std::int32_t r, std::int32_t g, std::int32_t b) {
    if (x < 0 || y < 0 || buffer_bytes(pixbuf) == 0) {
        return;
    }
    const PixelSpan span = pixel_span(pixbuf, x, y, 1);
    if (span.count > 0) {
        span.pixels[0] = static_cast<std::uint8_t>(r);
        span.pixels[1] = static_cast<std::uint8_t>(g);
        span.pixels[2] = static_cast<std::uint8_t>(b);
        span.pixels[3] = 255;
    }
}
