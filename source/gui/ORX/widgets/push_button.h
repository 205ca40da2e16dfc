// push_button.h: a button with a label.
//
// Design pixels, colours 0 to 255. The button only looks pressed when its owner sets it
// highlighted; `pressed` is kept for the owner and never drawn. It owns its label. A button has no
// lock: whoever shares one between threads guards it.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

struct PushButton {
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
    WidgetColour background;
    WidgetColour border;
    WidgetColour fill;
    WidgetColour highlighted_fill;
    WidgetColour label_colour;
    WidgetColour highlighted_label;
    float scale;
    std::uint8_t highlighted;
    std::uint8_t pressed;
    std::uint8_t hidden;
    std::uint8_t dirty;
    char* label;        // owned, may be null
    UiEngine* engine;   // not owned
    TextRenderer* text; // not owned
};

// Zeroes everything, scale 1.0, no label. For a record that owns no label yet.
void push_button_init(PushButton* button, UiEngine* engine, TextRenderer* text);

// Frees the label; the record stays its maker's.
void push_button_destroy(PushButton* button);

// Both draw nothing while the button is hidden. The rectangle must lie inside the image.
void push_button_paint_background(const PushButton* button, Pixbuf* image);
void push_button_paint(const PushButton* button, Pixbuf* image);

// Asks the event thread to show the button's rectangle again. Takes x_lock.
void push_button_request_redraw(const PushButton* button, WindowId window);

// Whether the device point lies on the button, edges included; `hidden` makes no difference.
[[nodiscard]] bool push_button_hit(const PushButton* button, std::int32_t px, std::int32_t py);

// Keeps a copy of the text and frees the old one; null for none.
void push_button_set_label(PushButton* button, const char* label);

void push_button_set_x(PushButton* button, std::int32_t x);
void push_button_set_y(PushButton* button, std::int32_t y);
void push_button_set_w(PushButton* button, std::int32_t w);
void push_button_set_h(PushButton* button, std::int32_t h);
void push_button_set_background_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                       std::int32_t b);
void push_button_set_border_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                   std::int32_t b);
void push_button_set_fill_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                 std::int32_t b);
void push_button_set_highlighted_fill_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                             std::int32_t b);
void push_button_set_label_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                  std::int32_t b);
void push_button_set_highlighted_label_colour(PushButton* button, std::int32_t r, std::int32_t g,
                                              std::int32_t b);
void push_button_set_scale(PushButton* button, float scale);
void push_button_set_highlighted(PushButton* button, bool highlighted);
void push_button_set_pressed(PushButton* button, bool pressed);
void push_button_set_hidden(PushButton* button, bool hidden);
void push_button_set_dirty(PushButton* button, bool dirty);
[[nodiscard]] bool push_button_get_highlighted(const PushButton* button);
[[nodiscard]] bool push_button_get_pressed(const PushButton* button);
[[nodiscard]] bool push_button_get_hidden(const PushButton* button);
[[nodiscard]] bool push_button_get_dirty(const PushButton* button);
