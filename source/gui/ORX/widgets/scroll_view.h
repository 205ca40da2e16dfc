// scroll_view.h: a window's area that shows a part of a larger pixmap on the server.
//
// Device pixels throughout. The view copies from the pixmap to the window on the server; when it
// scrolls it moves what the window already shows and copies only the uncovered strip. It does not
// own the pixmap, has no lock, and takes x_lock in whatever draws. No operation leaves the scroll
// offset below 0 or past the end of the content.
#pragma once

#include "gui/ORX/core/window_id.h"

#include <cstdint>

struct ScrollView {
    std::int32_t content_width;
    std::int32_t content_height;
    std::int32_t x;
    std::int32_t y;
    std::int32_t view_width;
    std::int32_t view_height;
    std::int32_t source_x;
    std::int32_t scroll_offset;
    std::int32_t shown_offset; // the offset of what the window shows now
    float horizontal_fraction; // stored only
    float vertical_fraction;   // 0.0 to 1.0
    float scale;
    std::uint8_t active;
    unsigned long pixmap; // server handle, not owned, 0 = none
    UiEngine* engine;     // not owned
};

// Everything 0, scale 1.0.
void scroll_view_init(ScrollView* view, UiEngine* engine);

// The view owns nothing; the record stays its maker's.
void scroll_view_destroy(ScrollView* view);

// How many rows the content is longer than the view, 0 when it is not.
[[nodiscard]] std::int32_t scroll_view_range(const ScrollView* view);

// The offset that a fraction stands for.
[[nodiscard]] std::int32_t scroll_view_offset_at(const ScrollView* view, float fraction);

// Copies the view's part of the pixmap to the window; does nothing without a pixmap.
void scroll_view_show(const ScrollView* view, WindowId window);

// The same, when the exposed rectangle touches the view.
void scroll_view_expose(const ScrollView* view, WindowId window, std::int32_t x, std::int32_t y,
                        std::int32_t width, std::int32_t height);

// Sets the offset and takes it as shown; draws nothing.
void scroll_view_set_fraction(ScrollView* view, float fraction);

// Scrolls to a fraction, by a page or by a step of device pixels, moving what is shown. The last
// four update vertical_fraction.
void scroll_view_scroll_to_fraction(ScrollView* view, WindowId window, float fraction);
void scroll_view_page_up(ScrollView* view, WindowId window);
void scroll_view_page_down(ScrollView* view, WindowId window);
void scroll_view_line_up(ScrollView* view, WindowId window, std::int32_t step);
void scroll_view_line_down(ScrollView* view, WindowId window, std::int32_t step);

// A point of the window as a point of the content.
[[nodiscard]] std::int32_t scroll_view_map_x(const ScrollView* view, std::int32_t px);
[[nodiscard]] std::int32_t scroll_view_map_y(const ScrollView* view, std::int32_t py);

// Whether the point lies in the view, edges included.
[[nodiscard]] bool scroll_view_hit(const ScrollView* view, std::int32_t px, std::int32_t py);

void scroll_view_set_rect(ScrollView* view, std::int32_t x, std::int32_t y, std::int32_t width,
                          std::int32_t height);
void scroll_view_set_content_size(ScrollView* view, std::int32_t width, std::int32_t height);
void scroll_view_set_content_height(ScrollView* view, std::int32_t height);
void scroll_view_set_source_x(ScrollView* view, std::int32_t source_x);
void scroll_view_set_horizontal_fraction(ScrollView* view, float fraction);
void scroll_view_set_scale(ScrollView* view, float scale);
void scroll_view_set_active(ScrollView* view, bool active);
void scroll_view_set_pixmap(ScrollView* view, unsigned long pixmap);
[[nodiscard]] bool scroll_view_get_active(const ScrollView* view);
[[nodiscard]] float scroll_view_get_vertical_fraction(const ScrollView* view);
[[nodiscard]] std::int32_t scroll_view_get_scroll_offset(const ScrollView* view);
