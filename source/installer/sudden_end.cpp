// sudden_end.cpp: the lost display, and the end that comes with it where Xlib is old.
#include "installer/sudden_end.h"

#include "installer/console_log.h"
#include "installer/installer_state.h"
#include "installer/lock_file.h"
#include "installer/payload.h"
#include "installer/signals.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>

void report_lost_display() {
    // In this order: the console may keep this thread waiting.
    installer.cancel_requested = 1;
    if (!installer.lost_display_reported.exchange(true)) {
        log_print("** ERROR ** %s: Lost connection to X server\n", installer.title);
    }
}

void say_farewell() {
    wait_for_handlers();
    log_print("\n");
    log_print("** INFO ** %s: Exiting\n", installer.title);
    log_print("\n");
    installer.farewell_said = true;
}

void end_without_main_thread() {
    // With it the main thread, should it come on just now, begins nothing any more. Without it, it
    // is what hangs, with the lock.
    (void)installer.work_lock.try_lock();
    if (installer.password != nullptr) {
        explicit_bzero(installer.password, std::strlen(installer.password));
    }
    if (installer.field != nullptr) {
        password_field_clear(installer.field);
    }
    unlink_temporary_files();
    if (installer.another_instance != 1) {
        unlink_lock_file();
    }
    char farewell[title_size + 64];
    const int length =
        std::snprintf(farewell, sizeof farewell, "\n** INFO ** %s: Exiting\n\n", installer.title);
    log_without_waiting(farewell, static_cast<std::size_t>(length));
    _exit(0);
}

void end_suddenly() {
    installer.cancel_requested = 1; // what runs as root sees it, and nothing begins after it
    installer.work_lock.lock();
    report_lost_display();
    flockfile(stdout); // the flow may still be about to say something
    forget_password();
    if (installer.field != nullptr) {
        // Without screen_lock, which this thread may be holding; nobody paints any more.
        password_field_clear(installer.field);
    }
    remove_temporary_files();
    if (installer.another_instance != 1) {
        remove_lock_file();
    }
    say_farewell();
}
