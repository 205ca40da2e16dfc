// message_panel.cpp: the main window's picture and lines.

#include "gui/ORX/widgets/message_panel.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/widget_geometry.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <algorithm>

namespace {

constexpr std::int32_t longest_line = 62; // bytes
constexpr std::int32_t line_glyph_limit = 63;
constexpr std::int32_t first_baseline = 24;
constexpr std::int32_t line_height_px = 16;
constexpr WidgetColour white{255, 255, 255};

// Copies the picture centred at the top, cut to the image in case it is larger.
void copy_header(const MessagePanel* panel, Pixbuf* image) {
    const Pixbuf* header = panel->header_image;
    if (header == nullptr) {
        return;
    }
    const auto header_width = static_cast<std::int32_t>(header->width);
    // Shifted, since the half of an odd excess is rounded to the left.
    const std::int32_t x = panel->x + ((panel->width - header_width) >> 1);
    const std::int32_t left = std::max(x, 0);
    const std::int32_t top = std::max(panel->y, 0);
    const std::int32_t right = std::min(x + header_width, static_cast<std::int32_t>(image->width));
    const std::int32_t bottom = std::min(panel->y + static_cast<std::int32_t>(header->height),
                                         static_cast<std::int32_t>(image->height));
    if (left < right && top < bottom) {
        orx_pixbuf_copy_area(panel->engine, header, image, left - x, top - panel->y, left, top,
                             right - left, bottom - top);
    }
}

void dim(Pixbuf* image) {
    for (std::uint32_t row = 0; row < image->height; ++row) {
        std::uint8_t* pixel = image->pixels + std::size_t{row} * image->rowstride;
        for (std::uint32_t column = 0; column < image->width; ++column, pixel += 4) {
            pixel[0] = static_cast<std::uint8_t>(pixel[0] >> 1);
            pixel[1] = static_cast<std::uint8_t>(pixel[1] >> 1);
            pixel[2] = static_cast<std::uint8_t>(pixel[2] >> 1);
        }
    }
}

std::int32_t centred_x(const MessagePanel* panel, std::int32_t line) {
    return (panel->width - text_width(panel->text, panel->lines[line])) / 2;
}

std::int32_t left_block_margin(const MessagePanel* panel) {
    std::int32_t margin = panel->width;
    for (std::int32_t line = 0; line < message_line_count; ++line) {
        if (panel->modes[line] == message_line_left_block) {
            margin = std::min(margin, centred_x(panel, line));
        }
    }
    return margin;
}

} // namespace

void message_panel_init(MessagePanel* panel, UiEngine* engine, TextRenderer* text) {
    *panel = MessagePanel{};
    panel->scale = 1.0F;
    panel->engine = engine;
    panel->text = text;
}

void message_panel_destroy(MessagePanel* panel) {
    panel->header_image = nullptr;
}

void message_panel_paint(const MessagePanel* panel, Pixbuf* image) {
    if (panel->width > 0) {
        orx_pixbuf_fill_rect(panel->engine, image, panel->x, panel->y, panel->width, panel->height,
                             0, 0, 0);
    }
    copy_header(panel, image);
    if (panel->dimmed != 0) {
        dim(image);
    }
    const std::int32_t margin = left_block_margin(panel);
    for (std::int32_t line = 0; line < message_line_count; ++line) {
        const std::uint32_t mode = panel->modes[line];
        if (mode != message_line_centred && mode != message_line_left_block) {
            continue;
        }
        const std::int32_t x = mode == message_line_centred ? centred_x(panel, line) : margin;
        widget_draw_text(panel->text, image, panel->lines[line], x,
                         first_baseline + line_height_px * line, white, line_glyph_limit);
    }
}

void message_panel_request_redraw(const MessagePanel* panel, WindowId window) {
    widget_request_redraw(panel->engine, window, panel->x, panel->y, panel->width, panel->height,
                          panel->scale);
}

bool message_panel_hit(const MessagePanel* panel, std::int32_t px, std::int32_t py) {
    return device_rect_hit(
        device_rect(panel->x, panel->y, panel->width, panel->height, panel->scale), px, py);
}

void message_panel_set_line(MessagePanel* panel, std::int32_t index, const char* text) {
    if (index >= 0 && index < message_line_count) {
        widget_copy_text(panel->lines[index], longest_line + 1, text);
    }
}

void message_panel_set_line_with_mode(MessagePanel* panel, std::int32_t index, const char* text,
                                      std::uint32_t mode) {
    if (index >= 0 && index < message_line_count) {
        message_panel_set_line(panel, index, text);
        panel->modes[index] = mode;
    }
}

void message_panel_clear_lines(MessagePanel* panel) {
    for (std::int32_t line = 0; line < message_line_count; ++line) {
        message_panel_set_line_with_mode(panel, line, nullptr, message_line_centred);
    }
}

void message_panel_set_header_image(MessagePanel* panel, const Pixbuf* image) {
    panel->header_image = image;
}

void message_panel_set_x(MessagePanel* panel, std::int32_t x) {
    panel->x = x;
}

void message_panel_set_y(MessagePanel* panel, std::int32_t y) {
    panel->y = y;
}

void message_panel_set_width(MessagePanel* panel, std::int32_t width) {
    panel->width = width;
}

void message_panel_set_height(MessagePanel* panel, std::int32_t height) {
    panel->height = height;
}

void message_panel_set_scale(MessagePanel* panel, float scale) {
    panel->scale = scale;
}

void message_panel_set_dimmed(MessagePanel* panel, bool dimmed) {
    panel->dimmed = dimmed ? 1 : 0;
}

void message_panel_set_dirty(MessagePanel* panel, bool dirty) {
    panel->dirty = dirty ? 1 : 0;
}

bool message_panel_get_dimmed(const MessagePanel* panel) {
    return panel->dimmed != 0;
}

bool message_panel_get_dirty(const MessagePanel* panel) {
    return panel->dirty != 0;
}
