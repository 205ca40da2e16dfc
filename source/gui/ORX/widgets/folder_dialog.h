// folder_dialog.h: the window in which the person picks a folder.
//
// A window of fixed size with a title, the path of the folder being shown, its entries, a scroll
// bar, OK and CANCEL. A click on a folder makes it the process's working directory and shows it;
// OK gives the path of the folder being shown, whatever was clicked. Where the person went stays
// the working directory. While a folder is read that takes its time, what was shown before stays;
// the list and, on the way into another folder, OK are deaf, and CANCEL and closing work as ever.
// It is shown by the window's tick, so let window ticks run.
//
// Threads. The dialog has a mutex of its own. Every function here takes it, and so do the handlers
// that run on the event thread, so one thread may open the dialog while the other works. It is
// taken before x_lock and never held while table_lock is waited for: windows are made and destroyed
// with it free. Do not hold x_lock in any call. Callbacks are called with no lock held, on the
// event thread but for one case (folder_dialog_open), and may call any function here but destroy.
//
// Fields are design pixels unless they say so.
#pragma once

#include "gui/ORX/widgets/folder_reading.h"
#include "gui/ORX/widgets/push_button.h"
#include "gui/ORX/widgets/scroll_bar.h"
#include "gui/ORX/widgets/scroll_view.h"

#include "gui/ORX/core/window_id.h"
#include "gui/ORX/imaging/image_surface.h"

#include <atomic>
#include <cstdint>
#include <mutex>

struct Pixbuf;
struct TextRenderer;

// path is an absolute path, valid during the call (copy it), or null for a cancel.
using FolderDialogCallback = void (*)(const char* path, void* user);

// Device rows of the list that are drawn into its pixmap at a time, when they first come into view.
inline constexpr std::int32_t folder_list_band_height = 64;
inline constexpr std::int32_t folder_list_band_count = 32768 / folder_list_band_height;

struct FolderDialog {
    DirEntry entries[folder_listing_capacity];
    char* chosen_path; // owned or null
    char* title;       // owned or null
    void* user;        // handed to both callbacks
    std::int32_t width;
    std::int32_t height;
    std::int32_t device_x;
    std::int32_t device_y;
    std::int32_t device_width;
    std::int32_t device_height;
    std::int32_t list_device_width; // of the list pixmap
    std::int32_t list_device_height;
    std::int32_t visible_count;
    float scale;
    ImageSurface* window_image; // the whole dialog in device pixels, owned while open
    unsigned long list_pixmap;  // on the server, owned while open
    Pixbuf* image;              // the whole dialog in design pixels, owned while open
    WindowId window;
    std::atomic<bool> open;
    FolderDialogCallback on_accept;
    FolderDialogCallback on_cancel;
    UiEngine* engine;   // not owned
    TextRenderer* text; // not owned
    ScrollBar scroll_bar;
    ScrollView scroll_view;
    PushButton ok_button;
    PushButton cancel_button;
    const unsigned char* icon; // not owned, null = none
    WindowId owner;            // the window that the dialog belongs to, no_window = none
    FolderReading* reading;    // under way, owned; null = none
    bool entering;             // what it reads, or read last, is another folder than before
    bool list_band_drawn[folder_list_band_count];
    std::mutex mutex;
};

// Prepares a dialog, closed, and makes HOME the working directory if it is set (where that cannot
// be done the working directory stays). The record is large: keep it on the heap.
void folder_dialog_init(FolderDialog* dialog, UiEngine* engine, TextRenderer* text);

// Closes the dialog and frees what it owns; the record stays its maker's. No other thread may be
// using the dialog. Works after the display has been closed.
void folder_dialog_destroy(FolderDialog* dialog);

// Shows the dialog, with the working directory as it is. Does nothing when it is already open. Any
// thread. When the window cannot be made it stays closed and the cancel callback is called on the
// caller's thread, so that nobody waits for an answer that cannot come.
void folder_dialog_open(FolderDialog* dialog);

// Closes the dialog without calling a callback. Any thread.
void folder_dialog_close(FolderDialog* dialog);

// No lock, any thread.
[[nodiscard]] bool folder_dialog_is_open(const FolderDialog* dialog);

// Before opening. The title is copied. The icon is a GdkPixdata blob that outlives the dialog, null
// for none. The owner is a window of the same engine: the dialog stays above it and has its class.
// Both callback setters overwrite the one user pointer.
void folder_dialog_set_scale(FolderDialog* dialog, float scale);
void folder_dialog_set_title(FolderDialog* dialog, const char* title);
void folder_dialog_set_icon(FolderDialog* dialog, const unsigned char* blob);
void folder_dialog_set_owner(FolderDialog* dialog, WindowId owner);
void folder_dialog_set_accept_callback(FolderDialog* dialog, FolderDialogCallback callback,
                                       void* user);
void folder_dialog_set_cancel_callback(FolderDialog* dialog, FolderDialogCallback callback,
                                       void* user);
