// progress_bar.h: a bar that shows how much is done, or that something is being done.
//
// Design pixels, colours 0 to 255. Two modes (how far, or a block that bounces) in two styles. The
// bar owns nothing but the copy of its caption. It has no lock: whoever shares one between threads
// guards it.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;
struct TextRenderer;

inline constexpr std::int32_t progress_caption_size = 1024; // bytes

// Modes; any value but 0 bounces.
inline constexpr std::uint32_t progress_mode_fraction = 0;
inline constexpr std::uint32_t progress_mode_bouncing = 1;

// Styles: 1 draws horizontal lines, brightest at the middle row; any other vertical lines, brighter
// to the right.
inline constexpr std::uint32_t progress_style_horizontal = 1;

struct ProgressBar {
    char caption[progress_caption_size];
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
    float scale;
    WidgetColour bar;
    WidgetColour background;
    WidgetColour caption_colour;
    WidgetColour border;
    std::int32_t block_position; // left edge of the bouncing block, relative to x
    std::int32_t block_step;     // per paint; negative while it moves to the left
    std::uint32_t mode;
    std::uint32_t style;
    float fraction; // 0.0 to 1.0; not clamped
    std::uint8_t dirty;
    std::uint8_t hidden;
    UiEngine* engine;   // not owned
    TextRenderer* text; // not owned
};

// Grey on black, white caption, fraction mode at 0.0, style 1, block at 0 with step 4, scale 1.0.
void progress_bar_init(ProgressBar* bar, UiEngine* engine, TextRenderer* text);

// The bar owns no memory beside itself; the record stays its maker's.
void progress_bar_destroy(ProgressBar* bar);

// Both draw nothing while the bar is hidden. Painting in bouncing mode moves the block on by one
// step. A fraction above 1.0 draws past the right border, up to the image's edge; one below 0.0
// draws no bar.
void progress_bar_paint_background(const ProgressBar* bar, Pixbuf* image);
void progress_bar_paint(ProgressBar* bar, Pixbuf* image);

// Asks the event thread to show the bar's rectangle again. Takes x_lock.
void progress_bar_request_redraw(const ProgressBar* bar, WindowId window);

// Whether the device point lies on the bar, edges included.
[[nodiscard]] bool progress_bar_hit(const ProgressBar* bar, std::int32_t px, std::int32_t py);

// Moves the bouncing block on: it turns at the borders of the bar's middle half.
void progress_bar_move_block(ProgressBar* bar);

// Keeps a copy of at most 1,023 bytes; null empties the caption.
void progress_bar_set_caption(ProgressBar* bar, const char* caption);

// Also puts the bouncing block into the middle.
void progress_bar_set_width(ProgressBar* bar, std::int32_t width);

void progress_bar_set_x(ProgressBar* bar, std::int32_t x);
void progress_bar_set_y(ProgressBar* bar, std::int32_t y);
void progress_bar_set_h(ProgressBar* bar, std::int32_t h);
void progress_bar_set_background_colour(ProgressBar* bar, std::int32_t r, std::int32_t g,
                                        std::int32_t b);
void progress_bar_set_border_colour(ProgressBar* bar, std::int32_t r, std::int32_t g,
                                    std::int32_t b);
void progress_bar_set_bar_colour(ProgressBar* bar, std::int32_t r, std::int32_t g, std::int32_t b);
void progress_bar_set_caption_colour(ProgressBar* bar, std::int32_t r, std::int32_t g,
                                     std::int32_t b);
void progress_bar_set_fraction(ProgressBar* bar, float fraction);
void progress_bar_set_mode(ProgressBar* bar, std::uint32_t mode);
void progress_bar_set_style(ProgressBar* bar, std::uint32_t style);
void progress_bar_set_hidden(ProgressBar* bar, bool hidden);
void progress_bar_set_dirty(ProgressBar* bar, bool dirty);
void progress_bar_set_scale(ProgressBar* bar, float scale);
[[nodiscard]] std::uint32_t progress_bar_get_mode(const ProgressBar* bar);
[[nodiscard]] bool progress_bar_get_hidden(const ProgressBar* bar);
[[nodiscard]] bool progress_bar_get_dirty(const ProgressBar* bar);
