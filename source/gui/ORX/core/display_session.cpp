// display_session.cpp: opening and closing the display and its input method.
#include "gui/ORX/core/connection_loss.h"
#include "gui/ORX/core/console_line.h"
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/input_method.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

namespace {

void close_connection(UiEngine* engine) {
    trap_x_errors(engine);
    end_all_windows(engine);
    close_input_method(engine);
    print_line("ORX-UI Engine: XClose");
    XCloseDisplay(engine->display);
    // The error handler is the process's own, not the display's, and so can be put back after it.
    static_cast<void>(untrap_x_errors(engine));
}

// Xlib does not promise that a broken display can be closed; its memory stays with the process.
void abandon_connection(UiEngine* engine) {
    end_all_windows(engine);
    engine->input_method = nullptr;
}

} // namespace

bool engine_open_display(UiEngine* engine) {
    const XLockGuard x_guard(engine);
    if (engine->display != nullptr) {
        return !engine->connection_lost;
    }
    engine->display = open_display_or_none();
    if (engine->display == nullptr) {
        return false;
    }
    watch_connection(engine->display, &engine->connection_lost);
    engine->depth = DefaultDepth(engine->display, 0);
    engine->visual = DefaultVisual(engine->display, 0);
    open_input_method(engine);
    return !engine->connection_lost;
}

void engine_close_display(UiEngine* engine) {
    engine->stop_requested = true;
    {
        const LoopLockGuard loop_guard(engine);
        const TableLockGuard table_guard(engine);
        const XLockGuard x_guard(engine);
        if (engine->display != nullptr) {
            if (engine->connection_lost) {
                abandon_connection(engine);
            } else {
                close_connection(engine);
            }
            engine->display = nullptr;
            engine->visual = nullptr;
            engine->depth = 0;
            engine->busy_cursor = 0;
        }
        engine->connection_lost = false;
    }
    engine->stop_requested = false;
}
