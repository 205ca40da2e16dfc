// text_field.cpp: a one-line field that shows its text plainly.

#include "gui/ORX/widgets/text_field.h"

#include "gui/ORX/text/text_renderer.h"
#include "gui/ORX/widgets/edit_buffer.h"
#include "gui/ORX/widgets/text_entry_paint.h"
#include "gui/ORX/widgets/widget_paint.h"

static_assert(text_field_size == edit_buffer_size);

void text_field_init(TextField* field, UiEngine* engine, TextRenderer* text) {
    *field = TextField{};
    field->scale = 1.0F;
    field->caret = WidgetColour{255, 255, 255};
    field->focused_text = WidgetColour{255, 255, 255};
    field->engine = engine;
    field->text = text;
}

void text_field_destroy(TextField* field) {
    edit_buffer_clear(field->content);
}

void text_field_paint_background(const TextField* field, Pixbuf* image) {
    widget_fill_inside(field->engine, image, field->x, field->y, field->w, field->h,
                       field->background);
}

void text_field_paint(const TextField* field, Pixbuf* image) {
    const TextEntryLook look{.engine = field->engine,
                             .text = field->text,
                             .content = field->content,
                             .x = field->x,
                             .y = field->y,
                             .w = field->w,
                             .h = field->h,
                             .caret = field->caret,
                             .text_colour =
                                 field->focused != 0 ? field->focused_text : field->unfocused_text,
                             .masked = false,
                             .placeholder = nullptr};
    text_entry_paint(look, image);
}

void text_field_request_redraw(const TextField* field, WindowId window) {
    widget_request_redraw(field->engine, window, field->x, field->y, field->w, field->h,
                          field->scale);
}

bool text_field_hit(const TextField* field, std::int32_t px, std::int32_t py) {
    return device_rect_hit(device_rect(field->x, field->y, field->w, field->h, field->scale), px,
                           py);
}

std::int32_t text_field_key(TextField* field, unsigned long keysym, const char* text) {
    if (field->focused == 0) {
        return 0;
    }
    return edit_buffer_key(field->content, keysym, text, field->text->utf8 != 0);
}

void text_field_set_text(TextField* field, const char* text) {
    edit_buffer_set(field->content, text, field->text->utf8 != 0);
}

void text_field_clear(TextField* field) {
    edit_buffer_clear(field->content);
}

const char* text_field_get_text(const TextField* field) {
    return field->content;
}

void text_field_set_x(TextField* field, std::int32_t x) {
    field->x = x;
}

void text_field_set_y(TextField* field, std::int32_t y) {
    field->y = y;
}

void text_field_set_w(TextField* field, std::int32_t w) {
    field->w = w;
}

void text_field_set_h(TextField* field, std::int32_t h) {
    field->h = h;
}

void text_field_set_scale(TextField* field, float scale) {
    field->scale = scale;
}

void text_field_set_focused(TextField* field, bool focused) {
    field->focused = focused ? 1 : 0;
}

void text_field_set_caret_colour(TextField* field, std::int32_t r, std::int32_t g, std::int32_t b) {
    field->caret = WidgetColour{r, g, b};
}

void text_field_set_focused_text_colour(TextField* field, std::int32_t r, std::int32_t g,
                                        std::int32_t b) {
    field->focused_text = WidgetColour{r, g, b};
}

void text_field_set_unfocused_text_colour(TextField* field, std::int32_t r, std::int32_t g,
                                          std::int32_t b) {
    field->unfocused_text = WidgetColour{r, g, b};
}

void text_field_set_background_colour(TextField* field, std::int32_t r, std::int32_t g,
                                      std::int32_t b) {
    field->background = WidgetColour{r, g, b};
}

bool text_field_get_focused(const TextField* field) {
    return field->focused != 0;
}
