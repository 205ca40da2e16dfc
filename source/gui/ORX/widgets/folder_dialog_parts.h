// folder_dialog_parts.h: how the folder dialog's files work together. Not for others.
//
// Everything here is called with the dialog's mutex held and takes x_lock, never table_lock, unless
// it says otherwise.
#pragma once

#include "gui/ORX/widgets/folder_dialog.h"

#include <cstdint>

// What is left to do for a dialog that has just closed, once its mutex is free.
struct FolderDialogEnding {
    WindowId window = no_window; // to be destroyed
    FolderDialogCallback callback = nullptr;
    char* path = nullptr; // owned: whoever listens may open the dialog again meanwhile
    void* user = nullptr;
};

// Closes the dialog: frees its images and forgets its window, which the ending names.
[[nodiscard]] FolderDialogEnding folder_dialog_detach(FolderDialog* dialog);

// Destroys the window, calls the callback and frees the path. With the mutex free; takes
// table_lock.
void folder_dialog_finish(FolderDialog* dialog, const FolderDialogEnding& ending);

// The working directory's absolute path, for free(), or null when it has none any more.
[[nodiscard]] char* folder_dialog_working_directory();

// Drawing into the dialog's image.
void folder_dialog_paint(FolderDialog* dialog);
void folder_dialog_paint_path(FolderDialog* dialog);
void folder_dialog_repaint_scroll_bar(FolderDialog* dialog);
void folder_dialog_repaint_button(FolderDialog* dialog, const PushButton* button);

// Asks for a repaint of the path's row.
void folder_dialog_redraw_path(const FolderDialog* dialog);

// Brings a region of the image, in device pixels, and the list to the window.
void folder_dialog_show_region(FolderDialog* dialog, std::int32_t left, std::int32_t top,
                               std::int32_t width, std::int32_t height);

// Puts the view over the list's frame, at the top of a list that is no longer than the view.
void folder_dialog_reset_view(FolderDialog* dialog);

// Makes `folder` the working directory if it is not null and can be entered, reads the working
// directory and shows it from its top: at once, or, where that takes longer than nobody notices,
// once folder_dialog_show_read finds it read. Meanwhile dialog->reading is set.
void folder_dialog_read(FolderDialog* dialog, const char* folder);
void folder_dialog_show_read(FolderDialog* dialog);

// Registers the handlers of the dialog's window. No lock needed.
void folder_dialog_register_handlers(FolderDialog* dialog);
