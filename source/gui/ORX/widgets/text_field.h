// text_field.h: a one-line field that shows its text plainly.
//
// The password field's sibling: the same keys, the same limits on the text and the same caret, but
// no placeholder, no border and no way to hide it. Design pixels, colours 0 to 255. A field has no
// lock: whoever shares one between threads guards it.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

inline constexpr std::int32_t text_field_size = 1024; // bytes of the buffer

struct TextField {
    char content[text_field_size];
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
    WidgetColour caret;
    WidgetColour focused_text;
    WidgetColour unfocused_text;
    WidgetColour background;
    float scale;
    std::uint8_t focused;
    UiEngine* engine;   // not owned
    TextRenderer* text; // not owned
};

// Empty, rectangle 0, scale 1.0, white caret and focused text, black background, not focused. The
// colour of unfocused text is left for the owner to set.
void text_field_init(TextField* field, UiEngine* engine, TextRenderer* text);

// Wipes the text; the record stays its maker's.
void text_field_destroy(TextField* field);

// The rectangle must lie inside the image.
void text_field_paint_background(const TextField* field, Pixbuf* image);
void text_field_paint(const TextField* field, Pixbuf* image);

// Asks the event thread to show the field's rectangle again. Takes x_lock.
void text_field_request_redraw(const TextField* field, WindowId window);

// Whether the device point lies on the field, edges included.
[[nodiscard]] bool text_field_hit(const TextField* field, std::int32_t px, std::int32_t py);

// One key press: the X keysym and the text that the input method made of it (may be null). Returns
// 1 when it was Return, else 0. A field without focus takes no key. The caller repaints.
[[nodiscard]] std::int32_t text_field_key(TextField* field, unsigned long keysym, const char* text);

// Replaces the whole text, as pasting does; null empties the field.
void text_field_set_text(TextField* field, const char* text);
void text_field_clear(TextField* field);
// The buffer itself.
[[nodiscard]] const char* text_field_get_text(const TextField* field);

void text_field_set_x(TextField* field, std::int32_t x);
void text_field_set_y(TextField* field, std::int32_t y);
void text_field_set_w(TextField* field, std::int32_t w);
void text_field_set_h(TextField* field, std::int32_t h);
void text_field_set_scale(TextField* field, float scale);
void text_field_set_focused(TextField* field, bool focused);
void text_field_set_caret_colour(TextField* field, std::int32_t r, std::int32_t g, std::int32_t b);
void text_field_set_focused_text_colour(TextField* field, std::int32_t r, std::int32_t g,
                                        std::int32_t b);
void text_field_set_unfocused_text_colour(TextField* field, std::int32_t r, std::int32_t g,
                                          std::int32_t b);
void text_field_set_background_colour(TextField* field, std::int32_t r, std::int32_t g,
                                      std::int32_t b);
[[nodiscard]] bool text_field_get_focused(const TextField* field);
