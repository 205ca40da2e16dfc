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

// Neither x nor y is negative. A pixel that lies right of the image is the one that follows in
// memory; behind the last one there is nothing to draw on.
std::int64_t pixel_offset(const Pixbuf* pixbuf, std::int64_t x, std::int64_t y) {
    return y * pixbuf->rowstride + x * 4;
}

// How many of the rows of pixels from the offset on lie in the buffer as a whole.
std::int64_t rows_with_room(const Pixbuf* pixbuf, std::int64_t offset, std::int64_t columns,
                            std::int64_t rows) {
    const std::int64_t room = buffer_bytes(pixbuf) - offset - columns * 4;
    return room < 0 ? 0 : std::min(rows, room / pixbuf->rowstride + 1);
}

// The pixel at (x, y), or null when there is none.
std::uint8_t* find_pixel(const Pixbuf* pixbuf, std::int32_t x, std::int32_t y) {
    if (x < 0 || y < 0 || buffer_bytes(pixbuf) == 0) {
        return nullptr;
    }
    const std::int64_t offset = pixel_offset(pixbuf, x, y);
    return rows_with_room(pixbuf, offset, 1, 1) > 0 ? pixbuf->pixels + offset : nullptr;
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
    if (first_column >= end_column || first_row >= end_row) {
        return;
    }
    GlyphBox box = {nullptr,
                    brush.pixbuf->rowstride,
                    glyph_coverage(glyph) + first_row * width + first_column,
                    width,
                    end_column - first_column,
                    end_row - first_row};
    // Nothing is cut at the right, so the last rows may reach behind the last pixel: those go row
    // by row, as far as there are pixels.
    const std::int64_t offset = pixel_offset(brush.pixbuf, left + first_column, top + first_row);
    const std::int64_t whole_rows = rows_with_room(brush.pixbuf, offset, box.columns, box.rows);
    std::int64_t rows_left = box.rows - whole_rows;
    if (whole_rows > 0) {
        box.pixels = brush.pixbuf->pixels + offset;
        box.rows = whole_rows;
        blend_glyph_box(brush.text, brush.colour, box);
    }
    box.rows = 1;
    box.coverage += whole_rows * width;
    for (std::int64_t start = offset + whole_rows * box.pixel_stride; rows_left > 0; --rows_left) {
        box.columns = std::min(box.columns, (buffer_bytes(brush.pixbuf) - start) / 4);
        if (box.columns < 1) {
            return;
        }
        box.pixels = brush.pixbuf->pixels + start;
        blend_glyph_box(brush.text, brush.colour, box);
        start += box.pixel_stride;
        box.coverage += width;
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
    std::uint8_t* pixel = find_pixel(pixbuf, x, y);
    if (pixel != nullptr) {
        blend_coverage_pixel(text, pixel, {r, g, b}, coverage);
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
    std::uint8_t* pixel = find_pixel(pixbuf, x, y);
    if (pixel != nullptr) {
        pixel[0] = static_cast<std::uint8_t>(r);
        pixel[1] = static_cast<std::uint8_t>(g);
        pixel[2] = static_cast<std::uint8_t>(b);
        pixel[3] = 255;
    }
}
