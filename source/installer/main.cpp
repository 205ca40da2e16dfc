// main.cpp: the process from its titles to its farewell.
#include "gui/ORX/core/connection_loss.h"
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/event_loop.h"
#include "gui/ORX/core/input_method.h"
#include "gui/ORX/text/text_renderer.h"
#include "installer/console_log.h"
#include "installer/hang_watch.h"
#include "installer/installer_flow.h"
#include "installer/installer_state.h"
#include "installer/lock_file.h"
#include "installer/main_window.h"
#include "installer/product_settings.h"
#include "installer/signals.h"
#include "installer/sudden_end.h"
#include "privilege/auth_method.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::int32_t display_watch_ms = 100;

void format_titles() {
    (void)std::snprintf(installer.title, sizeof installer.title, "%s %s Installer",
                        product.product_name, product.product_version);
    (void)std::snprintf(installer.subtitle, sizeof installer.subtitle, "- %s %s Installer -",
                        product.product_name, product.product_version);
}

void print_titles() {
    log_print("\n");
    log_print("%s", installer.subtitle);
    log_print("\n");
    log_print("\n");
}

void refuse_root() {
    if (getuid() != 0) {
        return;
    }
    log_print("You appear to be running the installer as root.\n");
    log_print("Restart the installer as a normal user and you\n");
    log_print("will be prompted for your password when required.\n");
    log_print("\n");
    std::exit(-1);
}

// The password will be in this memory: it goes into no core file, and no other program of the same
// person may look into it.
void close_memory_to_others() {
    (void)prctl(PR_SET_DUMPABLE, 0);
}

void choose_auth_method() {
    installer.runner.title = installer.title;
    installer.runner.cancel_requested = &installer.cancel_requested;
    installer.runner.log = log_print;
    if (product.install_for == InstallFor::person) {
        installer.auth_method = auth_method_own;
    } else if (find_sudo(&installer.runner) == 1) {
        installer.auth_method = auth_method_sudo;
    } else if (find_su(&installer.runner) == 1) {
        installer.auth_method = auth_method_su;
    } else {
        installer.auth_method = auth_method_none;
    }
}

// A display that goes away ends the installation as a cancel does; an input method that goes, or
// was not to be had, leaves the keyboard.
bool watch_display() {
    engine_use_keyboard_alone(installer.engine);
    if (!engine_connection_lost(installer.engine)) {
        return true;
    }
    report_lost_display();
    return false;
}

void* run_event_loop(void* engine) {
    event_loop_run(static_cast<UiEngine*>(engine));
    return nullptr;
}

void destroy_engine() {
    if (installer.engine == nullptr) {
        return;
    }
    engine_close_display(installer.engine);
    text_renderer_destroy(installer.text);
    engine_destroy(installer.engine);
    installer.text = nullptr;
    installer.engine = nullptr;
}

void create_engine() {
    if (installer.engine == nullptr) {
        installer.engine = engine_new();
        installer.text =
            installer.engine != nullptr ? text_renderer_new(installer.engine) : nullptr;
    }
    if (installer.text == nullptr) {
        destroy_engine(); // without memory for either the flow reports that there is no engine
        return;
    }
    set_last_act(end_suddenly);
    installer.modern_input = product.modern_input != 0;
    engine_set_composed_text(installer.engine, installer.modern_input);
    engine_set_converted_paste(installer.engine, installer.modern_input);
    engine_set_tick_callback(installer.engine, watch_display);
    engine_set_tick_interval(installer.engine, display_watch_ms);
}

void start_gui_thread() {
    if (installer.engine == nullptr) {
        return;
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_JOINABLE);
    installer.gui_thread_result =
        pthread_create(&installer.gui_thread, &attributes, run_event_loop, installer.engine);
    pthread_attr_destroy(&attributes);
    if (installer.gui_thread_result == 0) {
        return;
    }
    log_print("** ERROR ** %s: Unable to create GUI thread :(\n", installer.title);
    destroy_engine();
    remove_lock_file();
    restore_signal_handlers();
    std::exit(-1);
}

void tear_down() {
    if (installer.engine != nullptr) {
        event_loop_stop(installer.engine);
        pthread_join(installer.gui_thread, nullptr);
        installer.steps += 1;
        main_window_destroy();
        installer.steps += 1;
        destroy_engine();
    }
    forget_password();
    std::free(installer.install_folder.exchange(nullptr));
    if (installer.another_instance != 1) {
        remove_lock_file();
    }
    restore_signal_handlers();
}

} // namespace

// Without memory for the engine there was nobody to run the event loop, as without a thread for it.
int exit_status(bool had_engine) {
    return had_engine ? 0 : -1;
}

int main() {
    open_closed_streams();
    ignore_failed_writes();
    format_titles();
    print_titles();
    refuse_root();
    close_memory_to_others();
    choose_auth_method();
    install_signal_handlers();
    create_engine();
    take_signals_here(false);
    start_gui_thread();
    start_hang_watch();
    const bool had_engine = installer.engine != nullptr;
    run_installer_flow();
    tear_down();
    say_farewell();
    std::exit(exit_status(had_engine));
}
