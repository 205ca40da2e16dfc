// folder_dialog_input.cpp: what the folder browser does with the person's clicks, on the event
// thread.

#include "gui/ORX/widgets/folder_dialog_parts.h"

#include "gui/ORX/core/pointer_tracking.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/widgets/folder_list_image.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int32_t left_button = 1;
constexpr std::int32_t wheel_up = 4;
constexpr std::int32_t wheel_down = 5;
constexpr std::int32_t line_step = 16; // device pixels

// A handler may have waited for the mutex while its window was closed.
bool is_current(const FolderDialog* dialog, WindowId id) {
    return dialog->open && dialog->window == id;
}

// Draws what will come into view before the view copies it.
void prepare_list(FolderDialog* dialog, std::int32_t offset) {
    const ScrollView& view = dialog->scroll_view;
    folder_list_image_draw(dialog, std::clamp(offset, 0, scroll_view_range(&view)),
                           view.view_height);
}

void follow_view(FolderDialog* dialog) {
    scroll_bar_set_position(&dialog->scroll_bar,
                            scroll_view_get_vertical_fraction(&dialog->scroll_view));
    folder_dialog_repaint_scroll_bar(dialog);
}

void step_up(FolderDialog* dialog) {
    prepare_list(dialog, dialog->scroll_view.scroll_offset - line_step);
    scroll_view_line_up(&dialog->scroll_view, dialog->window, line_step);
    follow_view(dialog);
}

void step_down(FolderDialog* dialog) {
    prepare_list(dialog, dialog->scroll_view.scroll_offset + line_step);
    scroll_view_line_down(&dialog->scroll_view, dialog->window, line_step);
    follow_view(dialog);
}

void page_up(FolderDialog* dialog) {
    prepare_list(dialog, dialog->scroll_view.scroll_offset - dialog->scroll_view.view_height);
    scroll_view_page_up(&dialog->scroll_view, dialog->window);
    follow_view(dialog);
}

void page_down(FolderDialog* dialog) {
    prepare_list(dialog, dialog->scroll_view.scroll_offset + dialog->scroll_view.view_height);
    scroll_view_page_down(&dialog->scroll_view, dialog->window);
    follow_view(dialog);
}

void press_button(FolderDialog* dialog, PushButton* button, std::int32_t x, std::int32_t y) {
    if (push_button_hit(button, x, y)) {
        push_button_set_pressed(button, true);
        push_button_set_highlighted(button, true);
        folder_dialog_repaint_button(dialog, button);
    }
}

void press_scroll_bar(FolderDialog* dialog, std::int32_t x, std::int32_t y) {
    ScrollBar* bar = &dialog->scroll_bar;
    // Not both: paging up may leave the thumb above the pointer by a rounded pixel, and the page
    // must not be taken back at once.
    if (scroll_bar_hit_above_thumb(bar, x, y)) {
        page_up(dialog);
    } else if (scroll_bar_hit_below_thumb(bar, x, y)) {
        page_down(dialog);
    }
    if (scroll_bar_hit_up_arrow(bar, x, y)) {
        step_up(dialog);
    }
    if (scroll_bar_hit_down_arrow(bar, x, y)) {
        step_down(dialog);
    }
    if (scroll_bar_hit_thumb(bar, x, y)) {
        scroll_bar_set_dragging(bar, true);
        folder_dialog_repaint_scroll_bar(dialog);
    }
}

void clear_selection(FolderDialog* dialog) {
    if (folder_listing_clear_selection(dialog->entries)) {
        folder_list_image_invalidate(dialog);
        prepare_list(dialog, dialog->scroll_view.scroll_offset);
    }
    folder_dialog_redraw_path(dialog);
}

// The entry under a point of the window; none while nothing is shown.
const DirEntry* entry_at(FolderDialog* dialog, std::int32_t x, std::int32_t y) {
    const ScrollView* view = &dialog->scroll_view;
    if (view->pixmap == 0) {
        return nullptr;
    }
    const auto content_x = static_cast<float>(scroll_view_map_x(view, x));
    const auto content_y = static_cast<float>(scroll_view_map_y(view, y));
    return folder_listing_at(dialog->entries, truncate_to_int(content_x / dialog->scale),
                             truncate_to_int(content_y / dialog->scale));
}

void press_list(FolderDialog* dialog, std::int32_t x, std::int32_t y) {
    if (dialog->reading != nullptr || !scroll_view_hit(&dialog->scroll_view, x, y)) {
        return;
    }
    scroll_view_set_active(&dialog->scroll_view, true);
    const DirEntry* entry = entry_at(dialog, x, y);
    if (entry == nullptr) {
        clear_selection(dialog);
    } else if (folder_entry_is_directory(entry)) {
        folder_dialog_read(dialog, entry->name);
    }
    scroll_view_show(&dialog->scroll_view, dialog->window);
}

void press(FolderDialog* dialog, std::int32_t x, std::int32_t y, std::int32_t button) {
    scroll_view_set_active(&dialog->scroll_view, false);
    if (button == wheel_up) {
        step_up(dialog);
    } else if (button == wheel_down) {
        step_down(dialog);
    } else if (button == left_button) {
        press_button(dialog, &dialog->ok_button, x, y);
        press_button(dialog, &dialog->cancel_button, x, y);
        press_scroll_bar(dialog, x, y);
        press_list(dialog, x, y);
        pointer_set_origin(dialog->engine, x, y);
    }
}

// Ends the dialog with that path, kept as the dialog's own and given to whoever listens; not at all
// when there is no memory for both.
bool end_with(FolderDialog* dialog, char* path, FolderDialogEnding* ending) {
    char* given = path == nullptr ? nullptr : strdup(path);
    if (given == nullptr) {
        std::free(path);
        return false;
    }
    *ending = folder_dialog_detach(dialog);
    std::free(dialog->chosen_path);
    dialog->chosen_path = path;
    ending->callback = dialog->on_accept;
    ending->path = given;
    return true;
}

// The folder being shown is the answer. Without a path it is none, and the dialog stays.
FolderDialogEnding accept(FolderDialog* dialog) {
    push_button_set_highlighted(&dialog->ok_button, false);
    FolderDialogEnding ending;
    // On the way into another folder nobody knows yet which one is the working directory.
    const bool known = dialog->reading == nullptr || !dialog->entering;
    if (!known || !end_with(dialog, folder_dialog_working_directory(), &ending)) {
        folder_dialog_repaint_button(dialog, &dialog->ok_button);
        if (known) {
            folder_dialog_paint_path(dialog);
        }
    }
    return ending;
}

FolderDialogEnding cancel(FolderDialog* dialog) {
    push_button_set_highlighted(&dialog->cancel_button, false);
    FolderDialogEnding ending = folder_dialog_detach(dialog);
    ending.callback = dialog->on_cancel;
    return ending;
}

FolderDialogEnding release(FolderDialog* dialog) {
    scroll_bar_end_drag(&dialog->scroll_bar);
    push_button_set_pressed(&dialog->ok_button, false);
    push_button_set_pressed(&dialog->cancel_button, false);
    folder_dialog_repaint_scroll_bar(dialog);
    if (push_button_get_highlighted(&dialog->ok_button)) {
        return accept(dialog);
    }
    if (push_button_get_highlighted(&dialog->cancel_button)) {
        return cancel(dialog);
    }
    return FolderDialogEnding{};
}

void drag(FolderDialog* dialog, std::int32_t x, std::int32_t y) {
    ScrollBar* bar = &dialog->scroll_bar;
    if (!scroll_bar_get_dragging(bar)) {
        return;
    }
    (void)pointer_delta_x_int(dialog->engine, x);
    scroll_bar_drag(bar, pointer_delta_y_int(dialog->engine, y));
    const float fraction = scroll_bar_get_position(bar);
    prepare_list(dialog, scroll_view_offset_at(&dialog->scroll_view, fraction));
    scroll_view_scroll_to_fraction(&dialog->scroll_view, dialog->window, fraction);
    folder_dialog_repaint_scroll_bar(dialog);
}

void on_button_press(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id,
                     void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    if (is_current(dialog, id)) {
        press(dialog, x, y, button);
    }
}

void on_double_click(std::int32_t x, std::int32_t y, std::int32_t button, WindowId id,
                     void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    FolderDialogEnding ending;
    {
        const std::lock_guard<std::mutex> lock(dialog->mutex);
        if (!is_current(dialog, id)) {
            return;
        }
        if (dialog->chosen_path == nullptr) {
            press(dialog, x, y, button);
            return;
        }
        char* path = dialog->chosen_path;
        dialog->chosen_path = nullptr;
        static_cast<void>(end_with(dialog, path, &ending));
    }
    folder_dialog_finish(dialog, ending);
}

void on_button_release(std::int32_t /*x*/, std::int32_t /*y*/, std::int32_t /*button*/, WindowId id,
                       void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    FolderDialogEnding ending;
    {
        const std::lock_guard<std::mutex> lock(dialog->mutex);
        if (is_current(dialog, id)) {
            ending = release(dialog);
        }
    }
    folder_dialog_finish(dialog, ending);
}

void on_motion(std::int32_t x, std::int32_t y, WindowId id, void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    if (is_current(dialog, id)) {
        drag(dialog, x, y);
    }
}

void on_paint(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
              WindowId id, void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    if (is_current(dialog, id)) {
        folder_dialog_show_region(dialog, left, top, width, height);
    }
}

void on_close(std::int32_t /*outer_x*/, std::int32_t /*outer_y*/, WindowId id, void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    FolderDialogEnding ending;
    {
        const std::lock_guard<std::mutex> lock(dialog->mutex);
        if (!is_current(dialog, id)) {
            return;
        }
        ending = folder_dialog_detach(dialog);
        ending.callback = dialog->on_cancel;
    }
    // The window manager's wish has already ended the window; only its slot is still ours.
    window_set_on_close(dialog->engine, id, nullptr);
    ending.window = no_window;
    folder_dialog_finish(dialog, ending);
}

bool on_tick(void* user_data) {
    auto* dialog = static_cast<FolderDialog*>(user_data);
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    folder_dialog_show_read(dialog);
    return true;
}

} // namespace

void folder_dialog_register_handlers(FolderDialog* dialog) {
    UiEngine* engine = dialog->engine;
    const WindowId id = dialog->window;
    window_set_on_button_press(engine, id, on_button_press);
    window_set_on_button_release(engine, id, on_button_release);
    window_set_on_motion(engine, id, on_motion);
    window_set_on_paint(engine, id, on_paint);
    window_set_on_close(engine, id, on_close);
    window_set_on_double_click(engine, id, on_double_click);
    window_set_on_tick(engine, id, on_tick);
}
