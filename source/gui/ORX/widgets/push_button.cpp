// push_button.cpp: a button with a label.

#include "gui/ORX/widgets/push_button.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int32_t label_glyph_limit = 175;
constexpr std::int32_t highlighted_label_glyph_limit = 255;

} // namespace

void push_button_init(PushButton* button, UiEngine* engine, TextRenderer* text) {
    *button = PushButton{};
    button->scale = 1.0F;
    button->engine = engine;
    button->text = text;
}

void push_button_destroy(PushButton* button) {
    std::free(button->label);
    button->label = nullptr;
}

void push_button_paint_background(const PushButton* button, Pixbuf* image) {
    if (button->hidden == 0) {
        widget_fill_inside(button->engine, image, button->x, button->y, button->w, button->h,
                           button->background);
    }
}

void push_button_paint(const PushButton* button, Pixbuf* image) {
    if (button->hidden != 0) {
        return;
    }
    widget_border(button->engine, image, button->x, button->y, button->w, button->h,
                  button->border);
    const bool highlighted = button->highlighted != 0;
    const WidgetColour& fill = highlighted ? button->highlighted_fill : button->fill;
    // Blended lines at alpha 255, not a fill: they keep a trace of what lies below.
    for (std::int32_t column = button->x + 1; column < button->x + button->w && button->h > 0;
         ++column) {
        widget_column(button->engine, image, column, button->y + 1, button->y + button->h - 1,
                      WidgetColourAlpha{fill.r, fill.g, fill.b, 255});
    }
    if (button->label != nullptr) {
        const std::int32_t width = text_width(button->text, button->label);
        const std::int32_t height = text_height(button->text, button->label);
        widget_draw_text(button->text, image, button->label, button->x + button->w / 2 - width / 2,
                         button->y + button->h / 2 + height / 2,
                         highlighted ? button->highlighted_label : button->label_colour,
                         highlighted ? highlighted_label_glyph_limit : label_glyph_limit);
    }
}

void push_button_request_redraw(const PushButton* button, WindowId window) {
    widget_request_redraw(button->engine, window, button->x, button->y, button->w, button->h,
                          button->scale);
}

bool push_button_hit(const PushButton* button, std::int32_t px, std::int32_t py) {
    return device_rect_hit(device_rect(button->x, button->y, button->w, button->h, button->scale),
                           px, py);
}

void push_button_set_label(PushButton* button, const char* label) {
    char* copy =
        label == nullptr ? nullptr : strdup(label); // before the old one goes: it may be it
    std::free(button->label);
    button->label = copy;
}

void push_button_set_x(PushButton* button, std::int32_t x) {
    button->x = x;
}

void push_button_set_y(PushButton* button, std::int32_t y) {
    button->y = y;
}

void push_button_set_w(PushButton* button, std::int32_t w) {
    button->w = w;
}

void push_button_set_h(PushButton* button, std::int32_t h) {
    button->h = h;
}

void push_button_set_background_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                       std::int32_t b) {
    button->background = WidgetColour{r, g, b};
}

void push_button_set_border_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                   std::int32_t b) {
    button->border = WidgetColour{r, g, b};
}

void push_button_set_fill_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                 std::int32_t b) {
    button->fill = WidgetColour{r, g, b};
}

void push_button_set_highlighted_fill_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                             std::int32_t b) {
    button->highlighted_fill = WidgetColour{r, g, b};
}

void push_button_set_label_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                  std::int32_t b) {
    button->label_colour = WidgetColour{r, g, b};
}

void push_button_set_highlighted_label_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                              std::int32_t b) {
    button->highlighted_label = WidgetColour{r, g, b};
}

void push_button_set_scale(PushButton* button, float scale) {
    button->scale = scale;
}

void push_button_set_highlighted(PushButton* button, bool highlighted) {
    button->highlighted = highlighted ? 1 : 0;
}

void push_button_set_pressed(PushButton* button, bool pressed) {
    button->pressed = pressed ? 1 : 0;
}

void push_button_set_hidden(PushButton* button, bool hidden) {
    button->hidden = hidden ? 1 : 0;
}

void push_button_set_dirty(PushButton* button, bool dirty) {
    button->dirty = dirty ? 1 : 0;
}

bool push_button_get_highlighted(const PushButton* button) {
    return button->highlighted != 0;
}

bool push_button_get_pressed(const PushButton* button) {
    return button->pressed != 0;
}

bool push_button_get_hidden(const PushButton* button) {
    return button->hidden != 0;
}

bool push_button_get_dirty(const PushButton* button) {
    return button->dirty != 0;
}
