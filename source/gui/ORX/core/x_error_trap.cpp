// x_error_trap.cpp: collecting X protocol errors while a trap is set.
#include "gui/ORX/core/x_error_trap.h"

#include "gui/ORX/core/console_line.h"
#include "gui/ORX/core/engine.h"

std::atomic<int> last_x_error{0};

namespace {

int collect_x_error(Display*, XErrorEvent* event) {
    last_x_error = event->error_code;
    print_line("ORX-UI Engine: XErrorHandler trapped non-fatal X11 problem :(");
    return 0;
}

} // namespace

void trap_x_errors(UiEngine* engine) {
    last_x_error = 0;
    engine->saved_error_handler = XSetErrorHandler(collect_x_error);
}

int untrap_x_errors(UiEngine* engine) {
    XSetErrorHandler(engine->saved_error_handler);
    return last_x_error;
}

XErrorTrap::XErrorTrap(UiEngine* engine) : engine_(engine) {
    Display* display = engine_display(engine);
    if (display != nullptr) {
        first_request_ = NextRequest(display);
    }
    trap_x_errors(engine);
}

XErrorTrap::~XErrorTrap() {
    finish();
}

int XErrorTrap::finish() {
    if (!active_) {
        return 0;
    }
    active_ = false;
    Display* display = engine_display(engine_);
    if (display != nullptr && NextRequest(display) != first_request_) {
        XSync(display, False);
    }
    return untrap_x_errors(engine_);
}
