// folder_dialog_paint.cpp: what the folder browser looks like, in design pixels.

#include "gui/ORX/widgets/folder_dialog_parts.h"

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/scaler.h"
#include "gui/ORX/text/text_draw.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/widget_paint.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr WidgetColour panel_colour{56, 56, 56};
constexpr WidgetColour frame_colour{64, 64, 64};
constexpr WidgetColour accent_colour{218, 120, 4};
constexpr WidgetColour white{255, 255, 255};
constexpr std::int32_t frame_left = 16;
constexpr std::int32_t frame_right = 624;
constexpr std::int32_t path_top = 48;
constexpr std::int32_t path_bottom = 64;
constexpr std::int32_t path_left = 64; // of the path itself, behind "Folder: "
constexpr std::int32_t path_baseline = 61;
constexpr std::int32_t list_top = 80;
constexpr std::int32_t list_bottom = 352;
constexpr std::int32_t widest_title = 576; // what leaves the box's frame inside the window

void hline(const FolderDialog* dialog, std::int32_t left, std::int32_t right, std::int32_t y,
           const WidgetColour& c) {
    orx_pixbuf_hline(dialog->engine, dialog->image, left, y, right, y, c.r, c.g, c.b, 255);
}

void vline(const FolderDialog* dialog, std::int32_t x, std::int32_t top, std::int32_t bottom,
           const WidgetColour& c) {
    orx_pixbuf_vline(dialog->engine, dialog->image, x, top, x, bottom, c.r, c.g, c.b, 255);
}

void fill(const FolderDialog* dialog, std::int32_t x, std::int32_t y, std::int32_t w,
          std::int32_t h, const WidgetColour& c) {
    orx_pixbuf_fill_rect(dialog->engine, dialog->image, x, y, w, h, c.r, c.g, c.b);
}

void paint_title(const FolderDialog* dialog) {
    const char* title = dialog->title == nullptr ? "" : dialog->title;
    const std::int32_t width = std::min(text_width(dialog->text, title), widest_title);
    const std::int32_t height = text_height(dialog->text, title);
    const std::int32_t left = (580 - width) / 2 + 16;
    const std::int32_t top = 24 - (height + 8) / 2;
    hline(dialog, left, left + width + 27, top - 1, panel_colour);
    vline(dialog, left - 1, top, top + height + 7, panel_colour);
    hline(dialog, left, left + width + 27, top + height + 8, panel_colour);
    vline(dialog, left + width + 28, top, top + height + 7, panel_colour);
    fill(dialog, left, top, width + 28, height + 8, panel_colour);
    widget_draw_text(dialog->text, dialog->image, title, (588 - width) / 2 + 26, height / 2 + 22,
                     white, 255);
}

void paint_frame(const FolderDialog* dialog, std::int32_t top, std::int32_t bottom) {
    hline(dialog, frame_left + 1, frame_right - 1, top, frame_colour);
    hline(dialog, frame_left + 1, frame_right - 1, bottom, frame_colour);
    vline(dialog, frame_left, top + 1, bottom - 1, frame_colour);
    vline(dialog, frame_right, top + 1, bottom - 1, frame_colour);
}

void paint_path_row(const FolderDialog* dialog) {
    fill(dialog, 17, 49, 608, 15, panel_colour);
    widget_draw_text(dialog->text, dialog->image, "Folder: ", 19, path_baseline, accent_colour,
                     100);
    vline(dialog, path_left, path_top, path_bottom, frame_colour);
}

void place_scroll_bar(FolderDialog* dialog) {
    ScrollBar* bar = &dialog->scroll_bar;
    scroll_bar_set_x(bar, 616);
    scroll_bar_set_y(bar, list_top);
    scroll_bar_set_w(bar, 8);
    scroll_bar_set_h(bar, list_bottom - list_top);
    scroll_bar_set_border_colour(bar, 64, 64, 64, 255);
    scroll_bar_set_thumb_colour(bar, 144, 144, 144, 255);
    scroll_bar_set_active_thumb_colour(bar, 160, 32, 160, 255);
    scroll_bar_set_background_colour(bar, 56, 56, 56);
    scroll_bar_set_arrows(bar, false);
}

void place_button(PushButton* button, std::int32_t x) {
    push_button_set_x(button, x);
    push_button_set_y(button, 368);
    push_button_set_w(button, 64);
    push_button_set_h(button, 16);
    push_button_set_background_colour(button, 56, 56, 56);
    push_button_set_border_colour(button, 56, 56, 56);
    push_button_set_fill_colour(button, 56, 56, 56);
    push_button_set_highlighted_label_colour(button, 255, 255, 255);
    push_button_set_highlighted(button, false);
}

void paint_buttons(FolderDialog* dialog) {
    place_button(&dialog->ok_button, 16);
    push_button_set_highlighted_fill_colour(&dialog->ok_button, 255, 47, 255);
    push_button_set_label_colour(&dialog->ok_button, 255, 255, 255);
    push_button_paint(&dialog->ok_button, dialog->image);

    place_button(&dialog->cancel_button, 96);
    push_button_set_highlighted_fill_colour(&dialog->cancel_button, 96, 96, 96);
    push_button_set_label_colour(&dialog->cancel_button, 128, 128, 128);
    push_button_paint(&dialog->cancel_button, dialog->image);
}

// Whether the view alone shows the region, so that the image below it need not be sent.
bool view_covers(const FolderDialog* dialog, std::int32_t left, std::int32_t top,
                 std::int32_t width, std::int32_t height) {
    const ScrollView& view = dialog->scroll_view;
    return view.pixmap != 0 && view.x <= left && left + width <= view.x + view.view_width &&
           view.y <= top && top + height <= view.y + view.view_height;
}

} // namespace

void folder_dialog_paint(FolderDialog* dialog) {
    paint_title(dialog);
    paint_frame(dialog, path_top, path_bottom);
    paint_frame(dialog, list_top, list_bottom);
    paint_path_row(dialog);
    place_scroll_bar(dialog);
    folder_dialog_reset_view(dialog);
    folder_dialog_paint_path(dialog);
    scroll_bar_set_percent(&dialog->scroll_bar, 100.0F);
    scroll_bar_set_position(&dialog->scroll_bar, 0.0F);
    scroll_bar_paint(&dialog->scroll_bar, dialog->image);
    paint_buttons(dialog);
}

void folder_dialog_paint_path(FolderDialog* dialog) {
    char* directory = folder_dialog_working_directory();
    const char* path = directory == nullptr ? "(this folder is no longer there)" : directory;
    fill(dialog, path_left + 1, path_top + 1, 559, 15, panel_colour);
    const std::int32_t right = std::min(text_width(dialog->text, path) + 67, frame_right);
    draw_text_right_clipped(dialog->text, dialog->image, path, right, path_baseline, path_top,
                            path_bottom, path_left, frame_right, white.r, white.g, white.b, 1024);
    std::free(directory);
    folder_dialog_redraw_path(dialog);
}

void folder_dialog_redraw_path(const FolderDialog* dialog) {
    widget_request_redraw(dialog->engine, dialog->window, frame_left, path_top,
                          frame_right - frame_left, path_bottom - path_top, dialog->scale);
}

void folder_dialog_repaint_scroll_bar(FolderDialog* dialog) {
    scroll_bar_paint_background(&dialog->scroll_bar, dialog->image);
    scroll_bar_paint(&dialog->scroll_bar, dialog->image);
    scroll_bar_request_redraw(&dialog->scroll_bar, dialog->window);
}

void folder_dialog_repaint_button(FolderDialog* dialog, const PushButton* button) {
    push_button_paint_background(button, dialog->image);
    push_button_paint(button, dialog->image);
    push_button_request_redraw(button, dialog->window);
}

void folder_dialog_show_region(FolderDialog* dialog, std::int32_t left, std::int32_t top,
                               std::int32_t width, std::int32_t height) {
    if (!view_covers(dialog, left, top, width, height)) {
        orx_image_scale_from_pixbuf(dialog->engine, dialog->image, dialog->window_image, left, top,
                                    width, height, 0, 0, dialog->scale);
        orx_image_put(dialog->engine, dialog->window, dialog->window_image, left, top, left, top,
                      width, height);
    }
    scroll_view_expose(&dialog->scroll_view, dialog->window, left, top, width, height);
}
