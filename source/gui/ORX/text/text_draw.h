// text_draw.h: drawing text into a Pixbuf, in design pixels. No lock.
//
// (x, y) is the pen position and the baseline; colours are plain screen values 0 to 255. At most
// max_chars characters are drawn; when that limit is reached three dots follow, also when the text
// had exactly as many characters; below 0 nothing is drawn. Clip bounds are exclusive on all four
// sides. Pixels left of or above the image are skipped; nothing clips at its right edge, where a
// row goes on in the next one, so callers keep unclipped text inside. Nothing is drawn behind the
// last pixel. Every pixel of a glyph's box is blended in linear light, those without ink too, and
// alpha stays. Missing glyphs are skipped; a null text is an empty one.
#pragma once

#include "gui/ORX/text/text_renderer.h"

#include <cstdint>

struct Pixbuf;

void draw_text(const TextRenderer* text, Pixbuf* pixbuf, const char* string, std::int32_t x,
               std::int32_t y, std::int32_t r, std::int32_t g, std::int32_t b,
               std::int32_t max_chars);
void draw_text_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string, std::int32_t x,
                       std::int32_t y, std::int32_t clip_top, std::int32_t clip_bottom,
                       std::int32_t clip_left, std::int32_t clip_right, std::int32_t r,
                       std::int32_t g, std::int32_t b, std::int32_t max_chars);
void draw_password_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                           std::int32_t x, std::int32_t y, std::int32_t clip_top,
                           std::int32_t clip_bottom, std::int32_t clip_left,
                           std::int32_t clip_right, std::int32_t r, std::int32_t g, std::int32_t b,
                           std::int32_t max_chars);

// The same with x as the right end of the text. It is measured as text_measure.h says.
void draw_text_right_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                             std::int32_t x, std::int32_t y, std::int32_t clip_top,
                             std::int32_t clip_bottom, std::int32_t clip_left,
                             std::int32_t clip_right, std::int32_t r, std::int32_t g,
                             std::int32_t b, std::int32_t max_chars);
void draw_password_right_clipped(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                                 std::int32_t x, std::int32_t y, std::int32_t clip_top,
                                 std::int32_t clip_bottom, std::int32_t clip_left,
                                 std::int32_t clip_right, std::int32_t r, std::int32_t g,
                                 std::int32_t b, std::int32_t max_chars);

void draw_glyph(const TextRenderer* text, Pixbuf* pixbuf, std::uint32_t code_point, std::int32_t x,
                std::int32_t y, std::int32_t r, std::int32_t g, std::int32_t b);
void blend_glyph_pixel(const TextRenderer* text, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                       std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t coverage);

// Kept with the engine; the installer does not call them. set_colour keeps the gamma-decoded
// colour, which draw_text_current_colour then draws with as it is; no other thread may use the
// renderer meanwhile. put_glyph_pixel stores an opaque pixel.
void set_colour(TextRenderer* text, std::int32_t r, std::int32_t g, std::int32_t b);
void draw_text_current_colour(const TextRenderer* text, Pixbuf* pixbuf, const char* string,
                              std::int32_t x, std::int32_t y, std::int32_t max_chars);
void put_glyph_pixel(const TextRenderer* text, Pixbuf* pixbuf, std::int32_t x, std::int32_t y,
                     std::int32_t r, std::int32_t g, std::int32_t b);
