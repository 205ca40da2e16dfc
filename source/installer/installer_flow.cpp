// installer_flow.cpp: the screens, in the order in which a person meets them.
#include "installer/installer_flow.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/imaging/ui_scale.h"
#include "gui/ORX/widgets/widget_geometry.h"
#include "installer/choice_buttons.h"
#include "installer/console_log.h"
#include "installer/flow_timing.h"
#include "installer/installation.h"
#include "installer/installer_state.h"
#include "installer/lock_file.h"
#include "installer/main_window.h"
#include "installer/payload.h"
#include "installer/product_settings.h"
#include "installer/splash_window.h"
#include "installer/window_picture.h"
#include "privilege/auth_method.h"
#include "privilege/su_command.h"
#include "privilege/sudo_command.h"

namespace {

constexpr std::int32_t poll_ms = 10;
constexpr std::int32_t no_auth_method_seconds = 10;

bool cancelled() {
    return installer.cancel_requested != 0;
}

// Waits until the flag is set; false when the installation is cancelled first.
bool wait_for(const std::atomic<std::int32_t>& flag) {
    while (flag == 0 && !cancelled()) {
        sleep_milliseconds(poll_ms);
    }
    return !cancelled();
}

bool open_display() {
    if (installer.engine == nullptr) {
        log_print("** ERROR ** %s: GUI Engine is not running or was not started\n",
                  installer.title);
        return false;
    }
    if (!engine_open_display(installer.engine)) {
        log_print("** ERROR ** %s: Unable to connect to X server\n", installer.title);
        return false;
    }
    return true;
}

void compute_sizes() {
    installer.scale = orx_ui_scale(installer.engine);
    installer.splash_w = scale_rounded(design_width, installer.scale);
    installer.splash_h = scale_rounded(design_height, installer.scale);
    installer.main_w = installer.splash_w;
    installer.main_h = installer.splash_h;
}

bool password_is_right() {
    const WorkLock lock(installer.work_lock);
    if (installer.password == nullptr) {
        return false;
    }
    return installer.auth_method == auth_method_sudo
               ? sudo_check_password(&installer.runner, installer.password)
               : su_check_password(&installer.runner, installer.password);
}

// Asks for whom it is installed, where the product does; false when cancelled.
bool choose_recipient() {
    if (product.install_for != InstallFor::ask) {
        return true;
    }
    main_window_accept_keys();
    if (!wait_for(installer.recipient_chosen)) {
        return false;
    }
    if (installer.recipient_chosen == choice_person) {
        installer.auth_method = auth_method_own;
    }
    main_window_go_on_to_authentication();
    return true;
}

// Asks until a password is accepted, as often as it takes; false when cancelled. One person's own
// rights need none.
bool authenticate() {
    if (installer.auth_method == auth_method_own) {
        main_window_accept_keys();
        return !cancelled();
    }
    main_window_ask_for_password();
    main_window_accept_keys();
    for (;;) {
        if (!wait_for(installer.password_submitted)) {
            return false;
        }
        main_window_hold_password();
        main_window_take_password();
        if (password_is_right()) {
            log_print("** INFO ** %s: Password OK\n", installer.title);
            return true;
        }
        forget_password();
        if (cancelled()) {
            return false;
        }
        main_window_refuse_password();
    }
}

// The last screen stays until OK is pressed, for hours perhaps: nothing needs the password any
// more.
void finish() {
    forget_password();
    main_window_offer_ok();
    (void)wait_for(installer.finish_requested);
}

void finish_without_installing(ScreenText screen) {
    screen.reason = installer.failure_reason;
    main_window_show_last_screen(screen);
    remove_temporary_files();
    finish();
}

enum class FolderChoice { chosen, cancelled_by_person, interrupted };

FolderChoice choose_folder() {
    main_window_open_browser();
    while (installer.folder_chosen == 0 && installer.folder_cancelled == 0 && !cancelled()) {
        sleep_milliseconds(poll_ms);
    }
    main_window_close_browser();
    if (installer.folder_cancelled != 0) {
        return FolderChoice::cancelled_by_person;
    }
    return installer.folder_chosen != 0 ? FolderChoice::chosen : FolderChoice::interrupted;
}

// Returns early, without a last screen, when cancelled.
void clean_up_and_report() {
    log_print("** INFO ** %s: Removing Temporary Files\n", installer.title);
    main_window_start_progress("Removing Temporary Files", ProgressKind::fraction);
    wait_seconds(2);
    remove_temporary_files();
    if (cancelled()) {
        return;
    }
    main_window_set_progress(1.0F);
    wait_seconds(2);
    if (cancelled()) {
        return;
    }
    log_print("** INFO ** %s: Installation Complete\n", installer.title);
    ScreenText screen = complete_screen;
    screen.reason = tell_uninstaller();
    main_window_show_last_screen(screen);
    finish();
}

void copy_and_report() {
    sleep_milliseconds(500);
    main_window_start_progress("Copying Files", ProgressKind::bouncing);
    if (copy_files() == 0) {
        clean_up_and_report();
    } else if (cancelled()) {
        remove_temporary_files();
    } else {
        finish_without_installing(copy_failed_screen);
    }
}

void install() {
    main_window_start_installing();
    if (!find_default_folder()) {
        finish_without_installing(copy_failed_screen);
        return;
    }
    if (unpack_payload() != 0) {
        if (cancelled()) {
            remove_temporary_files();
        } else {
            finish_without_installing(unpack_failed_screen);
        }
        return;
    }
    sleep_milliseconds(1000);
    offer_default_folder();
    switch (choose_folder()) {
    case FolderChoice::cancelled_by_person:
        log_print("** INFO ** %s: Install cancelled by user.\n", installer.title);
        finish_without_installing(cancelled_screen);
        break;
    case FolderChoice::interrupted:
        // Without a display nobody has said anything; a cancel while the browser is open installs
        // into the default folder.
        if (engine_connection_lost(installer.engine)) {
            remove_temporary_files();
            break;
        }
        [[fallthrough]];
    case FolderChoice::chosen:
        copy_and_report();
        break;
    }
}

} // namespace

void run_installer_flow() {
    installer.tick_ms = measure_tick();
    installer.password_submitted = 0;
    installer.finish_requested = 0;
    installer.ui_dirty = 0;
    if (!open_display()) {
        return;
    }
    compute_sizes();
    if (!show_splash() || !main_window_create()) {
        return;
    }
    main_window_open();
    if (!choose_recipient()) {
        return;
    }
    if (installer.auth_method == auth_method_none) {
        wait_seconds(no_auth_method_seconds);
        return;
    }
    if (check_lock_file() != 0) {
        installer.another_instance = 1;
        main_window_show_screen(another_instance_screen);
        finish();
        return;
    }
    if (authenticate()) {
        install();
    }
    forget_password();
}
