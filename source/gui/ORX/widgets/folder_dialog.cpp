// folder_dialog.cpp: the folder browser's life: prepared, opened, closed, freed.

#include "gui/ORX/widgets/folder_dialog.h"

#include "gui/ORX/core/window_placement.h"
#include "gui/ORX/core/window_properties.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/widgets/folder_dialog_parts.h"
#include "gui/ORX/widgets/folder_list_image.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int32_t design_width = 640;
constexpr std::int32_t design_height = 432;

void go_home() {
    const char* home = std::getenv("HOME");
    if (home != nullptr) {
        // Where it cannot be entered, the working directory is as good a place to start.
        [[maybe_unused]] const int result = chdir(home);
    }
}

void free_chosen_path(FolderDialog* dialog) {
    std::free(dialog->chosen_path);
    dialog->chosen_path = nullptr;
}

// Takes the dialog's place on the screen. false when it is open already.
bool begin_opening(FolderDialog* dialog) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    if (dialog->open) {
        return false;
    }
    free_chosen_path(dialog);
    dialog->open = true;
    dialog->device_width = scale_rounded(dialog->width, dialog->scale);
    dialog->device_height = scale_rounded(dialog->height, dialog->scale);
    std::int32_t centre_x = 0;
    std::int32_t centre_y = 0;
    screen_centre(dialog->engine, &centre_x, &centre_y);
    dialog->device_x = centre_x - dialog->device_width / 2;
    dialog->device_y = centre_y - dialog->device_height / 2;
    return true;
}

bool make_images(FolderDialog* dialog) {
    dialog->window_image =
        orx_image_new(dialog->engine, dialog->device_width, dialog->device_height);
    dialog->image = orx_pixbuf_new(dialog->engine, dialog->width, dialog->height);
    return dialog->window_image != nullptr && dialog->image != nullptr;
}

void describe_window(const FolderDialog* dialog) {
    UiEngine* engine = dialog->engine;
    const WindowId id = dialog->window;
    const std::int32_t width = dialog->device_width;
    const std::int32_t height = dialog->device_height;
    if (dialog->icon != nullptr) {
        orx_window_set_icon(engine, dialog->icon, id);
    }
    window_set_title(engine, id, dialog->title == nullptr ? "" : dialog->title);
    window_set_owner(engine, id, dialog->owner);
    window_set_type_utility(engine, id);
    window_set_above(engine, id);
    window_set_size_hints(engine, width, height, width, height, 0, 0, dialog->device_x,
                          dialog->device_y, id);
    window_select_input(engine, id);
}

// false when another client has destroyed the window before anybody could have been told.
bool show_window(FolderDialog* dialog) {
    describe_window(dialog);
    folder_dialog_register_handlers(dialog);
    folder_dialog_paint(dialog);
    window_map(dialog->engine, dialog->window);
    folder_dialog_show_region(dialog, 0, 0, dialog->device_width, dialog->device_height);
    folder_dialog_read(dialog, nullptr);
    return !window_is_gone(dialog->engine, dialog->window);
}

} // namespace

void folder_dialog_init(FolderDialog* dialog, UiEngine* engine, TextRenderer* text) {
    for (DirEntry& entry : dialog->entries) {
        entry = DirEntry{};
    }
    dialog->chosen_path = nullptr;
    dialog->title = nullptr;
    dialog->user = nullptr;
    dialog->width = design_width;
    dialog->height = design_height;
    dialog->device_x = 0;
    dialog->device_y = 0;
    dialog->device_width = 0;
    dialog->device_height = 0;
    dialog->list_device_width = 0;
    dialog->list_device_height = 0;
    dialog->visible_count = 0;
    dialog->scale = 1.0F;
    dialog->window_image = nullptr;
    dialog->list_pixmap = 0;
    dialog->image = nullptr;
    dialog->window = no_window;
    dialog->open = false;
    dialog->on_accept = nullptr;
    dialog->on_cancel = nullptr;
    dialog->engine = engine;
    dialog->text = text;
    scroll_bar_init(&dialog->scroll_bar, engine);
    scroll_view_init(&dialog->scroll_view, engine);
    push_button_init(&dialog->ok_button, engine, text);
    push_button_set_label(&dialog->ok_button, "OK");
    push_button_init(&dialog->cancel_button, engine, text);
    push_button_set_label(&dialog->cancel_button, "CANCEL");
    dialog->icon = nullptr;
    dialog->owner = no_window;
    dialog->reading = nullptr;
    dialog->entering = false;
    folder_list_image_invalidate(dialog);
    go_home();
}

void folder_dialog_destroy(FolderDialog* dialog) {
    folder_dialog_close(dialog);
    scroll_bar_destroy(&dialog->scroll_bar);
    scroll_view_destroy(&dialog->scroll_view);
    push_button_destroy(&dialog->ok_button);
    push_button_destroy(&dialog->cancel_button);
    folder_listing_clear(dialog->entries);
    free_chosen_path(dialog);
    std::free(dialog->title);
    dialog->title = nullptr;
}

// In two steps, since making a window waits for table_lock, and the event thread may hold that
// while it waits for the mutex. No handler can run in between: none is registered yet.
void folder_dialog_open(FolderDialog* dialog) {
    if (!begin_opening(dialog)) {
        return;
    }
    const WindowId id =
        window_create_plain(dialog->engine, dialog->device_x, dialog->device_y,
                            dialog->device_width, dialog->device_height, dialog, 1.0F);
    FolderDialogEnding failure;
    {
        const std::lock_guard<std::mutex> lock(dialog->mutex);
        dialog->window = id;
        if (id != no_window && make_images(dialog) && show_window(dialog)) {
            return;
        }
        failure = folder_dialog_detach(dialog);
        failure.callback = dialog->on_cancel;
    }
    folder_dialog_finish(dialog, failure);
}

void folder_dialog_close(FolderDialog* dialog) {
    FolderDialogEnding ending;
    {
        const std::lock_guard<std::mutex> lock(dialog->mutex);
        if (!dialog->open) {
            return;
        }
        ending = folder_dialog_detach(dialog);
    }
    folder_dialog_finish(dialog, ending);
}

FolderDialogEnding folder_dialog_detach(FolderDialog* dialog) {
    FolderDialogEnding ending;
    ending.window = dialog->window;
    ending.user = dialog->user;
    folder_reading_abandon(dialog->reading);
    dialog->reading = nullptr;
    folder_list_image_free(dialog);
    orx_image_free(dialog->engine, dialog->window_image);
    dialog->window_image = nullptr;
    orx_pixbuf_free(dialog->engine, dialog->image);
    dialog->image = nullptr;
    dialog->window = no_window;
    dialog->open = false;
    return ending;
}

void folder_dialog_finish(FolderDialog* dialog, const FolderDialogEnding& ending) {
    if (ending.window != no_window) {
        // The close handler outlives the window in its slot, and must not meet the slot's next one.
        window_set_on_close(dialog->engine, ending.window, nullptr);
        window_destroy(dialog->engine, ending.window);
    }
    if (ending.callback != nullptr) {
        ending.callback(ending.path, ending.user);
    }
    std::free(ending.path);
}

bool folder_dialog_is_open(const FolderDialog* dialog) {
    return dialog->open;
}

void folder_dialog_set_scale(FolderDialog* dialog, float scale) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    dialog->scale = scale;
    scroll_bar_set_scale(&dialog->scroll_bar, scale);
    scroll_view_set_scale(&dialog->scroll_view, scale);
    push_button_set_scale(&dialog->ok_button, scale);
    push_button_set_scale(&dialog->cancel_button, scale);
}

void folder_dialog_set_title(FolderDialog* dialog, const char* title) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    char* copy = title == nullptr ? nullptr : strdup(title);
    std::free(dialog->title);
    dialog->title = copy;
}

void folder_dialog_set_icon(FolderDialog* dialog, const unsigned char* blob) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    dialog->icon = blob;
}

void folder_dialog_set_owner(FolderDialog* dialog, WindowId owner) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    dialog->owner = owner;
}

void folder_dialog_set_accept_callback(FolderDialog* dialog, FolderDialogCallback callback,
                                       void* user) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    dialog->on_accept = callback;
    dialog->user = user;
}

void folder_dialog_set_cancel_callback(FolderDialog* dialog, FolderDialogCallback callback,
                                       void* user) {
    const std::lock_guard<std::mutex> lock(dialog->mutex);
    dialog->on_cancel = callback;
    dialog->user = user;
}
