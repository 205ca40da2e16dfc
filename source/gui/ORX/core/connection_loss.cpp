// connection_loss.cpp: keeping a broken X connection from ending the process.
#include "gui/ORX/core/connection_loss.h"

#ifdef ORX_HAS_IO_ERROR_EXIT_HANDLER

namespace {

void note_loss(Display*, void* lost) {
    if (lost != nullptr) {
        *static_cast<std::atomic<bool>*>(lost) = true;
    }
}

} // namespace

void watch_connection(Display* display, std::atomic<bool>* lost) {
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
