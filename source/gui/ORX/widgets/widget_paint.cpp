// widget_paint.cpp: fills, borders and redraws that all widgets share.

#include "gui/ORX/widgets/widget_paint.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/window_pixels.h"
#include "gui/ORX/text/text_draw.h"

#include <algorithm>
#include <cstring>

void widget_fill_inside(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y,
                        std::int32_t w, std::int32_t h, const WidgetColour& colour) {
    if (w > 1 && h > 1) {
        orx_pixbuf_fill_rect(engine, image, x + 1, y + 1, w - 1, h - 1, colour.r, colour.g,
                             colour.b);
    }
}

void widget_border(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y, std::int32_t w,
                   std::int32_t h, const WidgetColour& colour) {
    const WidgetColourAlpha line{colour.r, colour.g, colour.b, 255};
    widget_row(engine, image, x + 1, y, x + w - 1, line);
    widget_row(engine, image, x + 1, y + h, x + w - 1, line);
    widget_column(engine, image, x, y + 1, y + h - 1, line);
    widget_column(engine, image, x + w, y + 1, y + h - 1, line);
}

void widget_row(UiEngine* engine, Pixbuf* image, std::int32_t x0, std::int32_t y, std::int32_t x1,
                const WidgetColourAlpha& colour) {
    const std::int32_t left = std::max(std::min(x0, x1), 0);
    const std::int32_t right =
        std::min(std::max(x0, x1), static_cast<std::int32_t>(image->width) - 1);
    if (y >= 0 && y < static_cast<std::int32_t>(image->height) && left <= right) {
        orx_pixbuf_hline(engine, image, left, y, right, y, colour.r, colour.g, colour.b,
                         colour.alpha);
    }
}

void widget_column(UiEngine* engine, Pixbuf* image, std::int32_t x, std::int32_t y0,
                   std::int32_t y1, const WidgetColourAlpha& colour) {
    if (x >= 0 && x < static_cast<std::int32_t>(image->width)) {
        orx_pixbuf_vline(engine, image, x, y0, x, y1, colour.r, colour.g, colour.b, colour.alpha);
    }
}

void widget_draw_text(const TextRenderer* text, Pixbuf* image, const char* string, std::int32_t x,
                      std::int32_t y, const WidgetColour& colour, std::int32_t limit) {
    draw_text_clipped(text, image, string, x, y, -1, static_cast<std::int32_t>(image->height), -1,
                      static_cast<std::int32_t>(image->width), colour.r, colour.g, colour.b, limit);
}

void widget_request_redraw(UiEngine* engine, WindowId window, std::int32_t x, std::int32_t y,
                           std::int32_t w, std::int32_t h, float scale) {
    const DeviceRect rect = device_rect(x, y, w, h, scale);
    orx_window_request_redraw(engine, window, rect.left, rect.top, rect.right - rect.left,
                              rect.bottom - rect.top);
}

void widget_copy_text(char* buffer, std::int32_t size, const char* text) {
    const std::size_t room = static_cast<std::size_t>(size) - 1;
    const std::size_t length = text == nullptr ? 0 : strnlen(text, room);
    if (length > 0) {
        std::memcpy(buffer, text, length);
    }
    std::memset(buffer + length, 0, room + 1 - length);
}
