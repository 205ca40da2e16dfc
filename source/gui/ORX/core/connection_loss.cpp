// connection_loss.cpp: keeping a broken X connection from ending the process.
#include "gui/ORX/core/connection_loss.h"

#ifdef ORX_HAS_IO_ERROR_EXIT_HANDLER

namespace {

// Xlib's own handler would end the process before the display's exit handler is asked.
int go_on(Display*) {
    return 0;
}

void note_loss(Display*, void* lost) {
    if (lost != nullptr) {
        *static_cast<std::atomic<bool>*>(lost) = true;
    }
}

} // namespace

void watch_connection(Display* display, std::atomic<bool>* lost) {
    XSetIOErrorHandler(go_on);
    XSetIOErrorExitHandler(display, note_loss, lost);
}

#else

#include <cstdlib>

namespace {

int end_process(Display*) {
    std::exit(0);
}

} // namespace

void watch_connection(Display*, std::atomic<bool>*) {
    XSetIOErrorHandler(end_process);
}

#endif
