// scroll_bar_geometry.cpp: where the thumb is, and what a point hits. No display.

#include "gui/ORX/widgets/scroll_bar.h"

#include <algorithm>

namespace {

constexpr std::int32_t smallest_thumb = 16;

// Rows at each end that are not track: a border line, or an arrow of the bar's width.
std::int32_t inset(const ScrollBar* bar) {
    return bar->arrows != 0 ? bar->w : 1;
}

void place_thumb(ScrollBar* bar, std::int32_t top) {
    bar->thumb_top = top;
    bar->thumb_top_exact = static_cast<float>(top);
}

float thumb_fraction(const ScrollBar* bar) {
    const std::int32_t track_top = scroll_bar_track_top(bar);
    const std::int32_t lowest = scroll_bar_lowest_thumb_top(bar);
    if (track_top >= bar->thumb_top) {
        return 0.0F;
    }
    if (lowest <= bar->thumb_top) {
        return 1.0F;
    }
    return static_cast<float>(bar->thumb_top - track_top) / static_cast<float>(lowest - track_top);
}

// The bar's columns from row top to row bottom, design pixels that are scaled by the caller.
bool hit_rows(const ScrollBar* bar, std::int32_t top, std::int32_t bottom, std::int32_t px,
              std::int32_t py) {
    const DeviceRect rect{scale_truncated(bar->x, bar->scale), top,
                          scale_rounded(bar->x + bar->w, bar->scale), bottom};
    return device_rect_hit(rect, px, py);
}

} // namespace

std::int32_t scroll_bar_track_top(const ScrollBar* bar) {
    return bar->y + inset(bar);
}

std::int32_t scroll_bar_thumb_length(const ScrollBar* bar) {
    const std::int32_t track = bar->h - 2 * inset(bar);
    return std::max(truncate_to_int(static_cast<float>(track) * bar->percent / 100.0F),
                    smallest_thumb);
}

std::int32_t scroll_bar_lowest_thumb_top(const ScrollBar* bar) {
    return bar->y + bar->h - inset(bar) - scroll_bar_thumb_length(bar);
}

void scroll_bar_set_position(ScrollBar* bar, float fraction) {
    const std::int32_t track_top = scroll_bar_track_top(bar);
    const auto way = static_cast<float>(scroll_bar_lowest_thumb_top(bar) - track_top);
    place_thumb(bar, truncate_to_int(way * fraction + 0.5F + static_cast<float>(track_top)));
}

float scroll_bar_get_position(ScrollBar* bar) {
    bar->fraction = thumb_fraction(bar);
    return bar->fraction;
}

void scroll_bar_set_percent(ScrollBar* bar, float percent) {
    const float fraction = scroll_bar_get_position(bar);
    bar->percent = percent;
    scroll_bar_set_position(bar, fraction);
}

void scroll_bar_drag(ScrollBar* bar, std::int32_t dy) {
    bar->thumb_top_exact -= static_cast<float>(dy) / bar->scale;
    bar->thumb_top = truncate_to_int(bar->thumb_top_exact);
}

void scroll_bar_clamp(ScrollBar* bar) {
    place_thumb(bar, std::min(std::max(bar->thumb_top, scroll_bar_track_top(bar)),
                              scroll_bar_lowest_thumb_top(bar)));
}

void scroll_bar_end_drag(ScrollBar* bar) {
    bar->dragging = 0;
    scroll_bar_clamp(bar);
}

bool scroll_bar_hit(const ScrollBar* bar, std::int32_t px, std::int32_t py) {
    return device_rect_hit(device_rect(bar->x, bar->y, bar->w, bar->h, bar->scale), px, py);
}

bool scroll_bar_hit_thumb(ScrollBar* bar, std::int32_t px, std::int32_t py) {
    scroll_bar_clamp(bar);
    return hit_rows(bar, scale_truncated(bar->thumb_top, bar->scale),
                    scale_rounded(bar->thumb_top + scroll_bar_thumb_length(bar), bar->scale), px,
                    py);
}

bool scroll_bar_hit_above_thumb(ScrollBar* bar, std::int32_t px, std::int32_t py) {
    scroll_bar_clamp(bar);
    return hit_rows(bar, scale_truncated(scroll_bar_track_top(bar), bar->scale),
                    truncate_to_int(bar->thumb_top_exact * bar->scale + 0.5F), px, py);
}

bool scroll_bar_hit_below_thumb(ScrollBar* bar, std::int32_t px, std::int32_t py) {
    scroll_bar_clamp(bar);
    return hit_rows(bar, scale_truncated(bar->thumb_top + scroll_bar_thumb_length(bar), bar->scale),
                    scale_rounded(bar->y + bar->h - inset(bar), bar->scale), px, py);
}

bool scroll_bar_hit_up_arrow(const ScrollBar* bar, std::int32_t px, std::int32_t py) {
    return bar->arrows != 0 &&
           device_rect_hit(device_rect(bar->x, bar->y, bar->w, bar->w, bar->scale), px, py);
}

bool scroll_bar_hit_down_arrow(const ScrollBar* bar, std::int32_t px, std::int32_t py) {
    return bar->arrows != 0 &&
           device_rect_hit(
               device_rect(bar->x, bar->y + bar->h - bar->w, bar->w, bar->w, bar->scale), px, py);
}
