// password_field.h: a one-line field that takes a secret and shows a star for each character.
//
// Design pixels, colours 0 to 255. The text is at most 1,023 bytes, always zero-terminated, and
// holds whole characters and no control characters (bytes below 0x20, and 0x7F): those are left
// out, typed or pasted alike, since a line feed that rides along at the end of a copied password
// would make it a wrong one. What would not fit is refused. At exactly 1,023 bytes BackSpace and
// Delete change nothing; the way out is to paste over the text, or clear.
//
// The buffer is wiped when it is cleared, replaced and destroyed, and each key wipes what it
// removed. A field has no lock: whoever shares one between threads guards it.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

inline constexpr std::int32_t password_field_size = 1024; // bytes of the buffer

struct PasswordField {
    char content[password_field_size];
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
    float scale;
    WidgetColour spare; // nothing reads it
    WidgetColour caret;
    WidgetColour focused_text;
    WidgetColour unfocused_text;
    WidgetColour background;
    WidgetColour border;
    std::uint8_t focused;
    std::uint8_t dirty;
    std::uint8_t hidden;
    UiEngine* engine;   // not owned
    TextRenderer* text; // not owned
};

// Empty, rectangle 0, scale 1.0, white caret, black background, grey border, not focused. The two
// text colours are left for the owner to set.
void password_field_init(PasswordField* field, UiEngine* engine, TextRenderer* text);

// Wipes the text; the record stays its maker's.
void password_field_destroy(PasswordField* field);

// Both draw nothing while the field is hidden. The rectangle must lie inside the image.
void password_field_paint_background(const PasswordField* field, Pixbuf* image);
void password_field_paint(const PasswordField* field, Pixbuf* image);

// Asks the event thread to show the field's rectangle again. Takes x_lock.
void password_field_request_redraw(const PasswordField* field, WindowId window);

// Whether the device point lies on the field, edges included.
[[nodiscard]] bool password_field_hit(const PasswordField* field, std::int32_t px, std::int32_t py);

// One key press: the X keysym and the text that the input method made of it (may be null). Returns
// 1 when it was Return, else 0. A hidden field, or one without focus, takes no key. Never sets
// `dirty`: the caller repaints.
[[nodiscard]] std::int32_t password_field_key(PasswordField* field, unsigned long keysym,
                                              const char* text);

// Replaces the whole text, as pasting does; null empties the field.
void password_field_set_text(PasswordField* field, const char* text);
void password_field_clear(PasswordField* field);
// The buffer itself.
[[nodiscard]] const char* password_field_get_text(const PasswordField* field);

void password_field_set_x(PasswordField* field, std::int32_t x);
void password_field_set_y(PasswordField* field, std::int32_t y);
void password_field_set_w(PasswordField* field, std::int32_t w);
void password_field_set_h(PasswordField* field, std::int32_t h);
void password_field_set_scale(PasswordField* field, float scale);
void password_field_set_focused(PasswordField* field, bool focused);
void password_field_set_dirty(PasswordField* field, bool dirty);
void password_field_set_hidden(PasswordField* field, bool hidden);
void password_field_set_spare_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                     std::int32_t b);
void password_field_set_caret_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                     std::int32_t b);
void password_field_set_focused_text_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                            std::int32_t b);
void password_field_set_unfocused_text_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                              std::int32_t b);
void password_field_set_background_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                          std::int32_t b);
void password_field_set_border_colour(PasswordField* field, std::int32_t r, std::int32_t g,
                                      std::int32_t b);
[[nodiscard]] bool password_field_get_focused(const PasswordField* field);
[[nodiscard]] bool password_field_get_dirty(const PasswordField* field);
[[nodiscard]] bool password_field_get_hidden(const PasswordField* field);
