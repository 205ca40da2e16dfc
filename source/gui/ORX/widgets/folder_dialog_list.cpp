// folder_dialog_list.cpp: reading the working directory into the view.

#include "gui/ORX/widgets/folder_dialog_parts.h"

#include "gui/ORX/imaging/busy_cursor.h"
#include "gui/ORX/imaging/window_pixels.h"
#include "gui/ORX/text/text_measure.h"
#include "gui/ORX/widgets/folder_list_image.h"

#include <unistd.h>

#include <cstdlib>

namespace {

constexpr std::int32_t unnoticed_milliseconds = 200;
constexpr std::int32_t view_left = 18; // design pixels
constexpr std::int32_t view_top = 82;
constexpr std::int32_t view_right = 614;
constexpr std::int32_t view_bottom = 350;

std::int32_t measure_name(const void* context, const char* name) {
    return text_width(static_cast<const TextRenderer*>(context), name);
}

// Takes what was read; an empty list when nothing could be read.
void take_listing(FolderDialog* dialog) {
    folder_list_image_free(dialog);
    if (dialog->reading == nullptr) {
        folder_listing_clear(dialog->entries);
        dialog->visible_count = 0;
        return;
    }
    FolderReading* reading = dialog->reading;
    dialog->reading = nullptr;
    if (!folder_reading_take(reading, dialog->entries, &dialog->visible_count)) {
        return;
    }
    folder_listing_place(dialog->entries, measure_name, dialog->text);
    folder_list_image_make(dialog);
    folder_list_image_draw(dialog, 0, dialog->scroll_view.view_height);
}

void show_listing(FolderDialog* dialog) {
    ScrollView* view = &dialog->scroll_view;
    take_listing(dialog);
    scroll_view_set_pixmap(view, dialog->list_pixmap);
    scroll_view_set_content_height(view, dialog->list_device_height);
    scroll_bar_set_percent(&dialog->scroll_bar,
                           folder_list_thumb_percent(dialog->list_device_height, dialog->scale));
    scroll_bar_set_position(&dialog->scroll_bar, 0.0F);
    folder_dialog_repaint_scroll_bar(dialog);
    if (dialog->list_pixmap == 0) {
        // Nothing to show: what was shown before must not stay, since it is another folder's.
        orx_window_request_redraw(dialog->engine, dialog->window, view->x, view->y,
                                  view->view_width, view->view_height);
    }
    scroll_view_show(view, dialog->window);
}

void show_read(FolderDialog* dialog) {
    if (dialog->entering) {
        folder_dialog_reset_view(dialog);
    }
    show_listing(dialog);
    if (dialog->entering) {
        folder_dialog_paint_path(dialog);
        std::free(dialog->chosen_path);
        dialog->chosen_path = nullptr;
    }
    orx_window_set_busy_cursor(dialog->engine, dialog->window, false);
}

} // namespace

char* folder_dialog_working_directory() {
    return getcwd(nullptr, 0);
}

void folder_dialog_reset_view(FolderDialog* dialog) {
    ScrollView* view = &dialog->scroll_view;
    const std::int32_t x = scale_truncated(view_left, dialog->scale);
    const std::int32_t y = scale_truncated(view_top, dialog->scale);
    const std::int32_t width = scale_rounded(view_right, dialog->scale) - x;
    const std::int32_t height = scale_rounded(view_bottom, dialog->scale) - y;
    scroll_view_set_rect(view, x, y, width, height);
    scroll_view_set_content_size(view, width, height);
    scroll_view_set_source_x(view, 0);
    scroll_view_set_horizontal_fraction(view, 0.0F);
    scroll_view_set_fraction(view, 0.0F);
    view->vertical_fraction = 0.0F;
}

void folder_dialog_read(FolderDialog* dialog, const char* folder) {
    orx_window_set_busy_cursor(dialog->engine, dialog->window, true);
    folder_reading_abandon(dialog->reading);
    dialog->reading = folder_reading_start(folder);
    dialog->entering = folder != nullptr;
    if (dialog->reading == nullptr ||
        folder_reading_is_done(dialog->reading, unnoticed_milliseconds)) {
        show_read(dialog);
    }
}

void folder_dialog_show_read(FolderDialog* dialog) {
    if (dialog->reading != nullptr && folder_reading_is_done(dialog->reading, 0)) {
        show_read(dialog);
    }
}
