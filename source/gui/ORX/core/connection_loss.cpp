// connection_loss.cpp: keeping a broken X connection from ending the process.
#include "gui/ORX/core/connection_loss.h"

#include <csetjmp>
#include <cstdlib>

// In libX11 since 1.7. In an older one it is not there, and its address is null.
#pragma weak XSetIOErrorExitHandler

namespace {

// Of the thread that is opening a display: nobody can ask a display that is not open yet to report
// its loss, and Xlib does not return from a loss by itself.
thread_local std::jmp_buf* way_out_of_opening = nullptr;
thread_local Display* lost_while_opening = nullptr; // stays known, as memory that nobody frees

std::atomic<void (*)()> before_exit{nullptr};

bool loss_can_be_outlived() {
    return XSetIOErrorExitHandler != nullptr;
}

// Xlib's own handler would end the process before the display's exit handler is asked.
int go_on(Display* display) {
    if (way_out_of_opening != nullptr) {
        lost_while_opening = display;
        // Between here and there are frames of Xlib's alone, which hold no lock but that display's.
        std::longjmp(*way_out_of_opening, 1); // NOLINT(cert-err52-cpp)
    }
    if (!loss_can_be_outlived()) {
        if (void (*last_act)() = before_exit.exchange(nullptr); last_act != nullptr) {
            last_act();
        }
        std::exit(0); // what Xlib would do next, with status 1
    }
    return 0;
}

void note_loss(Display*, void* lost) {
    if (lost != nullptr) {
        *static_cast<std::atomic<bool>*>(lost) = true;
    }
}

} // namespace

Display* open_display_or_none() {
    std::jmp_buf way_out;
    XSetIOErrorHandler(go_on);
    if (setjmp(way_out) != 0) { // NOLINT(cert-err52-cpp)
        way_out_of_opening = nullptr;
        return nullptr;
    }
    way_out_of_opening = &way_out;
    Display* display = XOpenDisplay(nullptr);
    way_out_of_opening = nullptr;
    return display;
}

void watch_connection(Display* display, std::atomic<bool>* lost) {
    XSetIOErrorHandler(go_on);
    if (loss_can_be_outlived()) {
        XSetIOErrorExitHandler(display, note_loss, lost);
    }
}

void set_last_act(void (*last_act)()) {
    before_exit = last_act;
}
