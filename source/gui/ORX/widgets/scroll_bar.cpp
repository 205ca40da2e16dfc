// scroll_bar.cpp: drawing a scroll bar, and its fields.

#include "gui/ORX/widgets/scroll_bar.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <algorithm>

namespace {

constexpr std::int32_t arrow_rows = 8;

void paint_border(const ScrollBar* bar, Pixbuf* image) {
    const WidgetColourAlpha& c = bar->border;
    const std::int32_t right = bar->x + bar->w;
    const std::int32_t bottom = bar->y + bar->h;
    widget_column(bar->engine, image, bar->x, bar->y, bottom, c);
    widget_row(bar->engine, image, bar->x, bar->y, right - 1, c);
    widget_column(bar->engine, image, right, bar->y + 1, bottom - 1, c);
    widget_row(bar->engine, image, bar->x, bottom, right - 1, c);
}

void paint_arrows(const ScrollBar* bar, Pixbuf* image) {
    const std::int32_t middle = bar->x + bar->w / 2;
    const std::int32_t up = bar->y + bar->w / 2;
    const std::int32_t down = bar->y + bar->h - bar->w + bar->w / 2;
    widget_row(bar->engine, image, bar->x, bar->y + bar->w, bar->x + bar->w, bar->thumb);
    widget_row(bar->engine, image, bar->x, bar->y + bar->h - bar->w, bar->x + bar->w, bar->thumb);
    for (std::int32_t k = 0; k < arrow_rows; ++k) {
        widget_row(bar->engine, image, middle - k, up - 4 + k, middle + k, bar->thumb);
        widget_row(bar->engine, image, middle - k, down + 4 - k, middle + k, bar->thumb);
    }
}

void paint_thumb(const ScrollBar* bar, Pixbuf* image) {
    const std::int32_t top = std::min(std::max(bar->thumb_top, scroll_bar_track_top(bar)),
                                      scroll_bar_lowest_thumb_top(bar));
    const WidgetColourAlpha& colour = bar->dragging != 0 ? bar->active_thumb : bar->thumb;
    for (std::int32_t k = 0; k <= scroll_bar_thumb_length(bar) - 2; ++k) {
        widget_row(bar->engine, image, bar->x + 2, top + 1 + k, bar->x + bar->w - 2, colour);
    }
}

} // namespace

void scroll_bar_init(ScrollBar* bar, UiEngine* engine) {
    *bar = ScrollBar{};
    bar->percent = 100.0F;
    bar->scale = 1.0F;
    bar->engine = engine;
}

void scroll_bar_destroy(ScrollBar* bar) {
    bar->dragging = 0;
}

void scroll_bar_paint_background(const ScrollBar* bar, Pixbuf* image) {
    if (bar->w > 0 && bar->h > 0) {
        orx_pixbuf_fill_rect(bar->engine, image, bar->x, bar->y, bar->w, bar->h, bar->background.r,
                             bar->background.g, bar->background.b);
    }
}

void scroll_bar_paint(const ScrollBar* bar, Pixbuf* image) {
    paint_border(bar, image);
    if (bar->w < 1 || bar->h < 1) {
        return;
    }
    if (bar->arrows != 0) {
        paint_arrows(bar, image);
    }
    paint_thumb(bar, image);
}

void scroll_bar_request_redraw(const ScrollBar* bar, WindowId window) {
    widget_request_redraw(bar->engine, window, bar->x, bar->y, bar->w, bar->h, bar->scale);
}

void scroll_bar_set_x(ScrollBar* bar, std::int32_t x) {
    bar->x = x;
}

void scroll_bar_set_y(ScrollBar* bar, std::int32_t y) {
    bar->y = y;
}

void scroll_bar_set_w(ScrollBar* bar, std::int32_t w) {
    bar->w = w;
}

void scroll_bar_set_h(ScrollBar* bar, std::int32_t h) {
    bar->h = h;
}

void scroll_bar_set_border_colour(ScrollBar* bar, std::int32_t r, std::int32_t g, std::int32_t b,
                                  std::int32_t alpha) {
    bar->border = WidgetColourAlpha{r, g, b, alpha};
}

void scroll_bar_set_thumb_colour(ScrollBar* bar, std::int32_t r, std::int32_t g, std::int32_t b,
                                 std::int32_t alpha) {
    bar->thumb = WidgetColourAlpha{r, g, b, alpha};
}

void scroll_bar_set_active_thumb_colour(ScrollBar* bar, std::int32_t r, std::int32_t g,
                                        std::int32_t b, std::int32_t alpha) {
    bar->active_thumb = WidgetColourAlpha{r, g, b, alpha};
}

void scroll_bar_set_background_colour(ScrollBar* bar, std::int32_t r, std::int32_t g,
                                      std::int32_t b) {
    bar->background = WidgetColour{r, g, b};
}

void scroll_bar_set_scale(ScrollBar* bar, float scale) {
    bar->scale = scale;
}

void scroll_bar_set_dragging(ScrollBar* bar, bool dragging) {
    bar->dragging = dragging ? 1 : 0;
}

void scroll_bar_set_arrows(ScrollBar* bar, bool arrows) {
    bar->arrows = arrows ? 1 : 0;
}

bool scroll_bar_get_dragging(const ScrollBar* bar) {
    return bar->dragging != 0;
}

bool scroll_bar_get_arrows(const ScrollBar* bar) {
    return bar->arrows != 0;
}
