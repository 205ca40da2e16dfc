// progress_bar.cpp: a fraction, or a block that bounces.

#include "gui/ORX/widgets/progress_bar.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <algorithm>

namespace {

constexpr std::int32_t block_width = 16;
constexpr std::int32_t caption_glyph_limit = 1024;

WidgetColourAlpha shade(const ProgressBar* bar, std::int32_t alpha) {
    return {bar->bar.r, bar->bar.g, bar->bar.b, alpha};
}

void bar_column(const ProgressBar* bar, Pixbuf* image, std::int32_t x, std::int32_t alpha) {
    widget_column(bar->engine, image, x, bar->y + 3, bar->y + bar->h - 3, shade(bar, alpha));
}

// Rows from both edges to the middle, where they are brightest.
void paint_shaded_rows(const ProgressBar* bar, Pixbuf* image, std::int32_t left,
                       std::int32_t right) {
    const std::int32_t half = bar->h / 2;
    for (std::int32_t j = 3; j <= half; ++j) {
        const WidgetColourAlpha colour = shade(bar, ((j * 256 / half) * 95 >> 8) + 96);
        if (j < half) {
            widget_row(bar->engine, image, left, bar->y + j, right, colour);
        }
        widget_row(bar->engine, image, left, bar->y + bar->h - j, right, colour);
    }
}

void paint_fraction(const ProgressBar* bar, Pixbuf* image) {
    if (bar->fraction < 0.0F) {
        return;
    }
    if (bar->style == progress_style_horizontal) {
        const std::int32_t room = static_cast<std::int32_t>(image->width);
        const std::int32_t length =
            std::min(truncate_to_int(static_cast<float>(bar->w - 4) * bar->fraction), room);
        paint_shaded_rows(bar, image, bar->x + 2, bar->x + 2 + length);
        return;
    }
    const std::int32_t columns =
        std::min(truncate_to_int(static_cast<float>(bar->w) * bar->fraction),
                 static_cast<std::int32_t>(image->width));
    for (std::int32_t i = 0; i < columns; ++i) {
        bar_column(bar, image, bar->x + i, std::min(((i * 256 / bar->w) * 127 >> 8) + 64, 255));
    }
}

void paint_block(const ProgressBar* bar, Pixbuf* image) {
    const std::int32_t left = bar->x + bar->block_position;
    if (bar->style == progress_style_horizontal) {
        paint_shaded_rows(bar, image, left, left + block_width);
        return;
    }
    for (std::int32_t k = 0; k < block_width; ++k) {
        bar_column(bar, image, left + k, 255);
    }
}

} // namespace

void progress_bar_init(ProgressBar* bar, UiEngine* engine, TextRenderer* text) {
    *bar = ProgressBar{};
    bar->scale = 1.0F;
    bar->bar = WidgetColour{127, 127, 127};
    bar->caption_colour = WidgetColour{255, 255, 255};
    bar->border = WidgetColour{127, 127, 127};
    bar->block_step = 4;
    bar->style = progress_style_horizontal;
    bar->engine = engine;
    bar->text = text;
}

void progress_bar_destroy(ProgressBar* bar) {
    bar->caption[0] = '\0';
}

void progress_bar_paint_background(const ProgressBar* bar, Pixbuf* image) {
    if (bar->hidden == 0) {
        widget_fill_inside(bar->engine, image, bar->x, bar->y, bar->w, bar->h, bar->background);
    }
}

void progress_bar_paint(ProgressBar* bar, Pixbuf* image) {
    if (bar->hidden != 0) {
        return;
    }
    if (bar->w > 0 && bar->h > 0) {
        if (bar->mode == progress_mode_fraction) {
            paint_fraction(bar, image);
        } else {
            paint_block(bar, image);
        }
    }
    if (bar->mode != progress_mode_fraction) {
        progress_bar_move_block(bar);
    }
    const std::int32_t width = text_width(bar->text, bar->caption);
    draw_text_clipped(bar->text, image, bar->caption, bar->x + (bar->w - width) / 2 + 3,
                      bar->y + bar->h / 2 + 5, bar->y, bar->y + bar->h, bar->x, bar->x + bar->w,
                      bar->caption_colour.r, bar->caption_colour.g, bar->caption_colour.b,
                      caption_glyph_limit);
    widget_border(bar->engine, image, bar->x, bar->y, bar->w, bar->h, bar->border);
}

void progress_bar_request_redraw(const ProgressBar* bar, WindowId window) {
    widget_request_redraw(bar->engine, window, bar->x, bar->y, bar->w, bar->h, bar->scale);
}

bool progress_bar_hit(const ProgressBar* bar, std::int32_t px, std::int32_t py) {
    return device_rect_hit(device_rect(bar->x, bar->y, bar->w, bar->h, bar->scale), px, py);
}

void progress_bar_move_block(ProgressBar* bar) {
    const std::int32_t lowest = (bar->w - (bar->w >> 1)) / 2;
    const std::int32_t highest = bar->w - lowest;
    bar->block_position += bar->block_step;
    if (bar->block_position >= highest - block_width) {
        bar->block_position = highest - block_width - 1;
        bar->block_step = -bar->block_step;
    }
    if (bar->block_position < lowest) {
        bar->block_position = lowest;
        bar->block_step = -bar->block_step;
    }
}

void progress_bar_set_caption(ProgressBar* bar, const char* caption) {
    widget_copy_text(bar->caption, progress_caption_size, caption);
}

void progress_bar_set_width(ProgressBar* bar, std::int32_t width) {
    bar->w = width;
    bar->block_position = width / 2 - block_width / 2;
}

void progress_bar_set_x(ProgressBar* bar, std::int32_t x) {
    bar->x = x;
}

void progress_bar_set_y(ProgressBar* bar, std::int32_t y) {
    bar->y = y;
}

void progress_bar_set_h(ProgressBar* bar, std::int32_t h) {
    bar->h = h;
}

void progress_bar_set_background_colour(ProgressBar* bar, std::int32_t r, std::int32_t g,
                                        std::int32_t b) {
    bar->background = WidgetColour{r, g, b};
}

void progress_bar_set_border_colour(ProgressBar* bar, std::int32_t r, std::int32_t g,
                                    std::int32_t b) {
    bar->border = WidgetColour{r, g, b};
}

void progress_bar_set_bar_colour(ProgressBar* bar, std::int32_t r, std::int32_t g, std::int32_t b) {
    bar->bar = WidgetColour{r, g, b};
}

void progress_bar_set_caption_colour(ProgressBar* bar, std::int32_t r, std::int32_t g,
                                     std::int32_t b) {
    bar->caption_colour = WidgetColour{r, g, b};
}

void progress_bar_set_fraction(ProgressBar* bar, float fraction) {
    bar->fraction = fraction;
}

void progress_bar_set_mode(ProgressBar* bar, std::uint32_t mode) {
    bar->mode = mode;
}

void progress_bar_set_style(ProgressBar* bar, std::uint32_t style) {
    bar->style = style;
}

void progress_bar_set_hidden(ProgressBar* bar, bool hidden) {
    bar->hidden = hidden ? 1 : 0;
}

void progress_bar_set_dirty(ProgressBar* bar, bool dirty) {
    bar->dirty = dirty ? 1 : 0;
}

void progress_bar_set_scale(ProgressBar* bar, float scale) {
    bar->scale = scale;
}

std::uint32_t progress_bar_get_mode(const ProgressBar* bar) {
    return bar->mode;
}

bool progress_bar_get_hidden(const ProgressBar* bar) {
    return bar->hidden != 0;
}

bool progress_bar_get_dirty(const ProgressBar* bar) {
    return bar->dirty != 0;
}
