// password_field.cpp: a one-line field for a secret.

#include "gui/ORX/widgets/password_field.h"

#include "gui/ORX/text/text_renderer.h"
#include "gui/ORX/widgets/edit_buffer.h"
#include "gui/ORX/widgets/text_entry_paint.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <sys/mman.h>

static_assert(password_field_size == edit_buffer_size);

void password_field_init(PasswordField* field, UiEngine* engine, TextRenderer* text) {
    *field = PasswordField{};
    field->scale = 1.0F;
    field->spare = WidgetColour{255, 255, 255};
    field->caret = WidgetColour{255, 255, 255};
    field->border = WidgetColour{127, 127, 127};
    field->engine = engine;
    field->text = text;
    // Where the person's limit forbids it the field works as well.
    static_cast<void>(mlock(field->content, sizeof field->content));
}

void password_field_destroy(PasswordField* field) {
    edit_buffer_clear(field->content);
    munlock(field->content, sizeof field->content);
}

void password_field_paint_background(const PasswordField* field, Pixbuf* image) {
    if (field->hidden == 0) {
        widget_fill_inside(field->engine, image, field->x, field->y, field->w, field->h,
                           field->background);
    }
}

void password_field_paint(const PasswordField* field, Pixbuf* image) {
    if (field->hidden != 0) {
        return;
    }
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
                             .masked = true,
                             .placeholder = " Enter Password"};
    text_entry_paint(look, image);
    widget_border(field->engine, image, field->x, field->y, field->w, field->h, field->border);
}

void password_field_request_redraw(const PasswordField* field, WindowId window) {
    widget_request_redraw(field->engine, window, field->x, field->y, field->w, field->h,
                          field->scale);
}

bool password_field_hit(const PasswordField* field, std::int32_t px, std::int32_t py) {
    return device_rect_hit(device_rect(field->x, field->y, field->w, field->h, field->scale), px,
                           py);
}

std::int32_t password_field_key(PasswordField* field, unsigned long keysym, const char* text) {
    if (field->hidden != 0 || field->focused == 0) {
        return 0;
    }
    return edit_buffer_key(field->content, keysym, text, field->text->utf8 != 0);
}

void password_field_set_text(PasswordField* field, const char* text) {
    edit_buffer_set(field->content, text, field->text->utf8 != 0);
}

void password_field_clear(PasswordField* field) {
    edit_buffer_clear(field->content);
}

const char* password_field_get_text(const PasswordField* field) {
    return field->content;
}

void password_field_set_x(PasswordField* field, std::int32_t x) {
    field->x = x;
}

void password_field_set_y(PasswordField* field, std::int32_t y) {
    field->y = y;
}

void password_field_set_w(PasswordField* field, std::int32_t w) {
    field->w = w;
}

void password_field_set_h(PasswordField* field, std::int32_t h) {
    field->h = h;
}

void password_field_set_scale(PasswordField* field, float scale) {
    field->scale = scale;
}

void password_field_set_focused(PasswordField* field, bool focused) {
    field->focused = focused ? 1 : 0;
}

void password_field_set_dirty(PasswordField* field, bool dirty) {
    field->dirty = dirty ? 1 : 0;
}

void password_field_set_hidden(PasswordField* field, bool hidden) {
    field->hidden = hidden ? 1 : 0;
}

void password_field_set_spare_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                     std::int32_t b) {
    field->spare = WidgetColour{r, g, b};
}

void password_field_set_caret_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                     std::int32_t b) {
    field->caret = WidgetColour{r, g, b};
}

void password_field_set_focused_text_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                            std::int32_t b) {
    field->focused_text = WidgetColour{r, g, b};
}

void password_field_set_unfocused_text_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                              std::int32_t b) {
    field->unfocused_text = WidgetColour{r, g, b};
}

void password_field_set_background_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                          std::int32_t b) {
    field->background = WidgetColour{r, g, b};
}

void password_field_set_border_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                      std::int32_t b) {
    field->border = WidgetColour{r, g, b};
}

bool password_field_get_focused(const PasswordField* field) {
    return field->focused != 0;
}

bool password_field_get_dirty(const PasswordField* field) {
    return field->dirty != 0;
}

bool password_field_get_hidden(const PasswordField* field) {
    return field->hidden != 0;
}
