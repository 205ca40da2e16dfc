// installer_state.h: the installer's one process-wide record.
//
// Owned by main. The flow (main thread) and the callbacks (event thread) share it: flags are
// atomic, and the widgets' fields are read and written under screen_lock, so that a screen is
// always painted whole. Order of locks: the engine's table_lock, screen_lock, the engine's x_lock,
// work_lock.
// The flow must therefore not create or destroy windows while it holds screen_lock.
#pragma once

#include "gui/ORX/core/window_id.h"
#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/text/text_renderer.h"
#include "gui/ORX/widgets/folder_dialog.h"
#include "gui/ORX/widgets/message_panel.h"
#include "gui/ORX/widgets/password_field.h"
#include "gui/ORX/widgets/progress_bar.h"
#include "gui/ORX/widgets/push_button.h"
#include "installer/main_layout.h"
#include "privilege/privileged_runner.h"

#include <pthread.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <cstdint>
#include <mutex>

struct Pixbuf;

inline constexpr std::size_t title_size = 1024;
inline constexpr std::size_t panel_line_size = 63; // bytes of a whole line, with the zero

// What a window shows: a picture of design size that widgets draw into, and its copy in device
// pixels as the screen wants it. Both owned.
struct WindowPicture {
    Pixbuf* surface = nullptr;
    ImageSurface* image = nullptr;
};

struct InstallerState { // NOLINT(clang-analyzer-optin.performance.Padding)
    // The process frame.
    char title[title_size] = {};    // "PRODUCT VERSION Installer": names the process in each line
    char subtitle[title_size] = {}; // "- PRODUCT VERSION Installer -": line 0 of every screen
    std::int32_t auth_method = 0;   // AuthMethod
    std::atomic<std::int32_t> cancel_requested{0};
    std::atomic<bool> lost_display_reported{false};
    std::recursive_mutex work_lock;                // see sudden_end.h
    std::atomic<std::uint32_t> steps{0};           // how often the main thread has come on
    std::atomic<bool> farewell_said{false};        // nothing is left to be done
    std::atomic<std::int32_t> another_instance{0}; // 1 = the lock file is somebody else's and stays
    std::atomic<char*> install_folder{nullptr};    // owned; null = none chosen
    char home_folder[PATH_MAX] = {};               // what default_folder may point to
    const char* default_folder = nullptr;          // for whom it is installed
    std::int32_t default_folder_levels_made = 0;   // of its names, from the last, by this run
    char uninstaller_line[panel_line_size] = {};   // what the last screen says of it
    const char* failure_reason = nullptr;          // for the last screen; null = none is known
    char* password = nullptr;                      // owned, for secret_free
    UiEngine* engine = nullptr;                    // owned
    TextRenderer* text = nullptr;                  // owned
    pthread_t gui_thread{};
    int gui_thread_result = 0;
    struct sigaction saved_sigterm {};
    struct sigaction saved_sigint {};
    struct sigaction saved_sighup {};
    PrivilegedRunner runner{};

    bool modern_input = false; // product.modern_input; nothing changes it once there are windows

    // The flow.
    std::int32_t tick_ms = 1; // measured length of a nominal 1 ms sleep
    float scale = 1.0F;
    std::int32_t splash_w = 0; // device pixels
    std::int32_t splash_h = 0;
    std::int32_t main_w = 0;
    std::int32_t main_h = 0;
    WindowId splash_window = no_window;
    WindowId main_window = no_window;
    std::atomic<std::uint8_t> splash_dismissed{0};
    std::atomic<std::int32_t> recipient_chosen{0}; // RecipientChoice
    std::atomic<std::int32_t> password_submitted{0};
    std::atomic<std::int32_t> finish_requested{0};
    std::atomic<std::int32_t> folder_chosen{0};
    std::atomic<std::int32_t> folder_cancelled{0};
    std::atomic<std::uint8_t> ui_dirty{0}; // some widget wants repainting

    std::mutex screen_lock; // guards the fields of the widgets
    MessagePanel* panel = nullptr;
    PasswordField* field = nullptr;
    ProgressBar* bar = nullptr;
    PushButton* button = nullptr;
    PushButton* choice_buttons[choice_count] = {}; // null where the product does not ask
    std::size_t choice_with_keyboard = 0;
    FolderDialog* browser = nullptr;
    Pixbuf* splash_pixbuf = nullptr;     // inline
    Pixbuf* background_pixbuf = nullptr; // inline
    WindowPicture splash_picture;
    WindowPicture main_picture;
};

extern InstallerState installer;

using WorkLock = std::lock_guard<std::recursive_mutex>;

// Wipes and frees the accepted password. Takes work_lock.
void forget_password();
