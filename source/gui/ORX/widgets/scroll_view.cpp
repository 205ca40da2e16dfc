// scroll_view.cpp: showing and moving a part of a pixmap.

#include "gui/ORX/widgets/scroll_view.h"

#include "gui/ORX/imaging/window_pixels.h"
#include "gui/ORX/widgets/widget_geometry.h"

#include <algorithm>

namespace {

// Moves what the window shows by distance rows (positive: down) and copies the uncovered strip,
// whose rows belong to the new offset.
void move_shown(const ScrollView* view, WindowId window, std::int32_t distance) {
    if (view->pixmap == 0 || distance == 0) {
        return;
    }
    orx_window_scroll(view->engine, window, view->x, view->y, view->view_width, view->view_height,
                      distance);
    const std::int32_t strip = std::min(std::abs(distance), view->view_height);
    const std::int32_t below = distance < 0 ? view->view_height - strip : 0;
    orx_pixmap_show(view->engine, view->pixmap, window, view->source_x, view->scroll_offset + below,
                    view->view_width, strip, view->x, view->y + below);
}

void scroll_to(ScrollView* view, WindowId window, std::int32_t offset) {
    view->scroll_offset = std::clamp(offset, 0, scroll_view_range(view));
    const std::int32_t distance = view->shown_offset - view->scroll_offset;
    move_shown(view, window, distance);
    view->shown_offset = view->scroll_offset;
}

void scroll_by(ScrollView* view, WindowId window, std::int32_t rows) {
    const std::int32_t range = scroll_view_range(view);
    scroll_to(view, window, view->scroll_offset + rows);
    view->vertical_fraction =
        range == 0 ? 0.0F
                   : std::clamp(static_cast<float>(view->scroll_offset) / static_cast<float>(range),
                                0.0F, 1.0F);
}

} // namespace

void scroll_view_init(ScrollView* view, UiEngine* engine) {
    *view = ScrollView{};
    view->scale = 1.0F;
    view->engine = engine;
}

void scroll_view_destroy(ScrollView* view) {
    view->pixmap = 0;
}

std::int32_t scroll_view_range(const ScrollView* view) {
    return std::max(view->content_height - view->view_height, 0);
}

std::int32_t scroll_view_offset_at(const ScrollView* view, float fraction) {
    return truncate_to_int(static_cast<float>(scroll_view_range(view)) * fraction + 0.5F);
}

void scroll_view_show(const ScrollView* view, WindowId window) {
    if (view->pixmap != 0) {
        orx_pixmap_show(view->engine, view->pixmap, window, view->source_x, view->scroll_offset,
                        view->view_width, view->view_height, view->x, view->y);
    }
}

void scroll_view_expose(const ScrollView* view, WindowId window, std::int32_t x, std::int32_t y,
                        std::int32_t width, std::int32_t height) {
    if (view->x <= x + width && x <= view->x + view->view_width && view->y <= y + height &&
        y <= view->y + view->view_height) {
        scroll_view_show(view, window);
    }
}

void scroll_view_set_fraction(ScrollView* view, float fraction) {
    view->scroll_offset =
        std::clamp(scroll_view_offset_at(view, fraction), 0, scroll_view_range(view));
    view->shown_offset = view->scroll_offset;
}

void scroll_view_scroll_to_fraction(ScrollView* view, WindowId window, float fraction) {
    scroll_to(view, window, scroll_view_offset_at(view, fraction));
}

void scroll_view_page_up(ScrollView* view, WindowId window) {
    scroll_by(view, window, -view->view_height);
}

void scroll_view_page_down(ScrollView* view, WindowId window) {
    scroll_by(view, window, view->view_height);
}

void scroll_view_line_up(ScrollView* view, WindowId window, std::int32_t step) {
    scroll_by(view, window, -step);
}

void scroll_view_line_down(ScrollView* view, WindowId window, std::int32_t step) {
    scroll_by(view, window, step);
}

std::int32_t scroll_view_map_x(const ScrollView* view, std::int32_t px) {
    return px - view->x + view->source_x;
}

std::int32_t scroll_view_map_y(const ScrollView* view, std::int32_t py) {
    return py - view->y + view->scroll_offset;
}

bool scroll_view_hit(const ScrollView* view, std::int32_t px, std::int32_t py) {
    const DeviceRect rect{view->x, view->y, view->x + view->view_width,
                          view->y + view->view_height};
    return device_rect_hit(rect, px, py);
}

void scroll_view_set_rect(ScrollView* view, std::int32_t x, std::int32_t y, std::int32_t width,
                          std::int32_t height) {
    view->x = x;
    view->y = y;
    view->view_width = width;
    view->view_height = height;
}

void scroll_view_set_content_size(ScrollView* view, std::int32_t width, std::int32_t height) {
    view->content_width = width;
    view->content_height = height;
}

void scroll_view_set_content_height(ScrollView* view, std::int32_t height) {
    view->content_height = height;
}

void scroll_view_set_source_x(ScrollView* view, std::int32_t source_x) {
    view->source_x = source_x;
}

void scroll_view_set_horizontal_fraction(ScrollView* view, float fraction) {
    view->horizontal_fraction = fraction;
}

void scroll_view_set_scale(ScrollView* view, float scale) {
    view->scale = scale;
}

void scroll_view_set_active(ScrollView* view, bool active) {
    view->active = active ? 1 : 0;
}

void scroll_view_set_pixmap(ScrollView* view, unsigned long pixmap) {
    view->pixmap = pixmap;
}

bool scroll_view_get_active(const ScrollView* view) {
    return view->active != 0;
}

float scroll_view_get_vertical_fraction(const ScrollView* view) {
    return view->vertical_fraction;
}

std::int32_t scroll_view_get_scroll_offset(const ScrollView* view) {
    return view->scroll_offset;
}
