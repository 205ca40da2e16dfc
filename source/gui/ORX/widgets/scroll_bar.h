// scroll_bar.h: a vertical bar whose thumb shows where in a list one is.
//
// The record and its geometry are design pixels; hit tests and drags take device pixels. A bar owns
// nothing and has no lock.
#pragma once

#include "gui/ORX/widgets/widget_geometry.h"

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct Pixbuf;

struct ScrollBar {
    std::int32_t x;
    std::int32_t y;
    std::int32_t w;
    std::int32_t h;
    std::int32_t thumb_top;
    WidgetColourAlpha border;
    WidgetColourAlpha thumb;
    WidgetColourAlpha active_thumb; // while dragging
    WidgetColour background;
    float percent;  // of the track that the thumb takes, default 100.0
    float fraction; // 0.0 to 1.0, as last read by scroll_bar_get_position
    float scale;
    float thumb_top_exact; // the same place as thumb_top with what a drag leaves over
    std::uint8_t dragging;
    std::uint8_t arrows;
    UiEngine* engine; // not owned
};

// Everything 0, percent 100.0, scale 1.0, no arrows.
void scroll_bar_init(ScrollBar* bar, UiEngine* engine);

// The bar owns no memory; the record stays its maker's.
void scroll_bar_destroy(ScrollBar* bar);

// Geometry, design pixels: the track's first row, the thumb's length (16 at the least, also on a
// shorter track) and the lowest place for the thumb's top.
[[nodiscard]] std::int32_t scroll_bar_track_top(const ScrollBar* bar);
[[nodiscard]] std::int32_t scroll_bar_thumb_length(const ScrollBar* bar);
[[nodiscard]] std::int32_t scroll_bar_lowest_thumb_top(const ScrollBar* bar);

// Places the thumb at a fraction of its way; reads where it is, 0.0 to 1.0; changes the thumb's
// length and keeps the fraction.
void scroll_bar_set_position(ScrollBar* bar, float fraction);
[[nodiscard]] float scroll_bar_get_position(ScrollBar* bar);
void scroll_bar_set_percent(ScrollBar* bar, float percent);

// Moves the thumb by dy device pixels (positive: up), beyond the track too; clamp puts it back, and
// end_drag clamps and clears `dragging`.
void scroll_bar_drag(ScrollBar* bar, std::int32_t dy);
void scroll_bar_clamp(ScrollBar* bar);
void scroll_bar_end_drag(ScrollBar* bar);

// The rectangle must lie inside the image. Rows of a thumb that is longer than it are left out.
void scroll_bar_paint_background(const ScrollBar* bar, Pixbuf* image);
void scroll_bar_paint(const ScrollBar* bar, Pixbuf* image);

// Asks the event thread to show the bar's rectangle again. Takes x_lock.
void scroll_bar_request_redraw(const ScrollBar* bar, WindowId window);

// Hit tests on device points, all edges included. Those that look at the thumb clamp it first.
// Arrows are hit only when the bar has them.
[[nodiscard]] bool scroll_bar_hit(const ScrollBar* bar, std::int32_t px, std::int32_t py);
[[nodiscard]] bool scroll_bar_hit_thumb(ScrollBar* bar, std::int32_t px, std::int32_t py);
[[nodiscard]] bool scroll_bar_hit_above_thumb(ScrollBar* bar, std::int32_t px, std::int32_t py);
[[nodiscard]] bool scroll_bar_hit_below_thumb(ScrollBar* bar, std::int32_t px, std::int32_t py);
[[nodiscard]] bool scroll_bar_hit_up_arrow(const ScrollBar* bar, std::int32_t px, std::int32_t py);
[[nodiscard]] bool scroll_bar_hit_down_arrow(const ScrollBar* bar, std::int32_t px,
                                             std::int32_t py);

void scroll_bar_set_x(ScrollBar* bar, std::int32_t x);
void scroll_bar_set_y(ScrollBar* bar, std::int32_t y);
void scroll_bar_set_w(ScrollBar* bar, std::int32_t w);
void scroll_bar_set_h(ScrollBar* bar, std::int32_t h);
void scroll_bar_set_border_colour(ScrollBar* bar, std::int32_t r, std::int32_t g, std::int32_t b,
                                  std::int32_t alpha);
void scroll_bar_set_thumb_colour(ScrollBar* bar, std::int32_t r, std::int32_t g, std::int32_t b,
                                 std::int32_t alpha);
void scroll_bar_set_active_thumb_colour(ScrollBar* bar, std::int32_t r, std::int32_t g,
                                        std::int32_t b, std::int32_t alpha);
void scroll_bar_set_background_colour(ScrollBar* bar, std::int32_t r, std::int32_t g,
                                      std::int32_t b);
void scroll_bar_set_scale(ScrollBar* bar, float scale);
void scroll_bar_set_dragging(ScrollBar* bar, bool dragging);
void scroll_bar_set_arrows(ScrollBar* bar, bool arrows);
[[nodiscard]] bool scroll_bar_get_dragging(const ScrollBar* bar);
[[nodiscard]] bool scroll_bar_get_arrows(const ScrollBar* bar);
