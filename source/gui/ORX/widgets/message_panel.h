// message_panel.h: the main window's picture and its twelve lines of text.
//
// Design pixels. The panel fills its rectangle with black, copies the header picture into its top
// and draws the lines over it in white; dimmed, it halves the brightness of everything painted so
// far. A panel has no lock: whoever shares one between threads guards it. It owns nothing but the
// copies of its lines.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

inline constexpr std::int32_t message_line_count = 12;
inline constexpr std::int32_t message_line_size = 64; // bytes of a line's buffer

// How a line is placed. Any other value: the line is not drawn.
inline constexpr std::uint32_t message_line_centred = 0;
inline constexpr std::uint32_t message_line_left_block = 1; // all such lines share the margin that
                                                            // centres the widest of them

struct MessagePanel {
    char lines[message_line_count][message_line_size];
    std::uint32_t modes[message_line_count];
    std::int32_t width;
    std::int32_t height;
    std::int32_t x;
    std::int32_t y;
    float scale;
    std::uint8_t dirty;
    std::uint8_t dimmed;
    const Pixbuf* header_image; // not owned
    UiEngine* engine;           // not owned
    TextRenderer* text;         // not owned
};

// Empties the panel: no picture, no text, rectangle 0, scale 1.0.
void message_panel_init(MessagePanel* panel, UiEngine* engine, TextRenderer* text);

// The panel owns no memory beside itself; the record stays its maker's.
void message_panel_destroy(MessagePanel* panel);

// Draws the panel. Its rectangle and the header picture must lie inside the image. Lines are
// placed from the image's origin, whatever the panel's x and y.
void message_panel_paint(const MessagePanel* panel, Pixbuf* image);

// Asks the event thread to show the panel's rectangle again. Takes x_lock.
void message_panel_request_redraw(const MessagePanel* panel, WindowId window);

// Whether the device point lies on the panel, edges included.
[[nodiscard]] bool message_panel_hit(const MessagePanel* panel, std::int32_t px, std::int32_t py);

// Sets the text of line 0 to 11 (at most 62 bytes of it; null empties the line), with or without
// its mode. Any other index does nothing.
void message_panel_set_line(MessagePanel* panel, std::int32_t index, const char* text);
void message_panel_set_line_with_mode(MessagePanel* panel, std::int32_t index, const char* text,
                                      std::uint32_t mode);
// Empties all lines and centres them.
void message_panel_clear_lines(MessagePanel* panel);

// The picture must outlive the panel or its next setting; null for none.
void message_panel_set_header_image(MessagePanel* panel, const Pixbuf* image);
void message_panel_set_x(MessagePanel* panel, std::int32_t x);
void message_panel_set_y(MessagePanel* panel, std::int32_t y);
void message_panel_set_width(MessagePanel* panel, std::int32_t width);
void message_panel_set_height(MessagePanel* panel, std::int32_t height);
void message_panel_set_scale(MessagePanel* panel, float scale);
void message_panel_set_dimmed(MessagePanel* panel, bool dimmed);
void message_panel_set_dirty(MessagePanel* panel, bool dirty);
[[nodiscard]] bool message_panel_get_dimmed(const MessagePanel* panel);
[[nodiscard]] bool message_panel_get_dirty(const MessagePanel* panel);
