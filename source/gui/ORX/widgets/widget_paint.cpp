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
    // Lines run either way, so that a side of 0 ends one pixel before the widget: not off the
    // image.
    const std::int32_t left = x + 1;
    const std::int32_t right = std::max(x + w - 1, 0);
    const std::int32_t top = y + 1;
    const std::int32_t bottom = std::max(y + h - 1, 0);
    orx_pixbuf_hline(engine, image, left, y, right, y, colour.r, colour.g, colour.b, 255);
    orx_pixbuf_hline(engine, image, left, y + h, right, y + h, colour.r, colour.g, colour.b, 255);
    orx_pixbuf_vline(engine, image, x, top, x, bottom, colour.r, colour.g, colour.b, 255);
    orx_pixbuf_vline(engine, image, x + w, top, x + w, bottom, colour.r, colour.g, colour.b, 255);
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
