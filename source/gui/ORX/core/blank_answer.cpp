// blank_answer.cpp: asking for zeros, and reading them at once.
#include "gui/ORX/core/blank_answer.h"

#include "gui/ORX/core/elapsed_time.h"

#include <X11/Xatom.h>
#include <sys/ioctl.h>

#include <ctime>

// What Xlib's extensions are written with; it has macros of common names, so it comes last.
#include <X11/Xlibint.h>

namespace {

constexpr float patience_seconds = 0.1F;
constexpr long look_again_nanoseconds = 200'000;

void wait_for_bytes(int connection, unsigned long size) {
    const MonotonicTime start = monotonic_now();
    int there = 0;
    while (ioctl(connection, FIONREAD, &there) == 0 && static_cast<unsigned long>(there) < size &&
           elapsed_seconds(start, monotonic_now()) < patience_seconds) {
        const timespec moment{.tv_sec = 0, .tv_nsec = look_again_nanoseconds};
        nanosleep(&moment, nullptr);
    }
}

void ask_for_property(Display* dpy, Window window, Atom property, unsigned long size) {
    xGetPropertyReq* req = nullptr; // "dpy" and "req" are the names that the macro goes by
    GetReq(GetProperty, req);
    req->window = static_cast<CARD32>(window);
    req->property = static_cast<CARD32>(property);
    req->type = AnyPropertyType;
    req->c_delete = False;
    req->longOffset = 0;
    req->longLength = static_cast<CARD32>((size + 3) / 4);
    _XFlush(dpy);
}

} // namespace

void take_blank_answer(Display* display, Window window, Atom property, unsigned long size) {
    static const unsigned char blanks[more_than_the_buffer] = {};
    XChangeProperty(display, window, property, XA_STRING, 8, PropModeReplace, blanks,
                    static_cast<int>(size));
    LockDisplay(display);
    ask_for_property(display, window, property, size);
    if (size == more_than_the_buffer) {
        wait_for_bytes(ConnectionNumber(display), size);
    }
    xGetPropertyReply reply{};
    _XReply(display, reinterpret_cast<xReply*>(&reply), 0, xTrue);
    UnlockDisplay(display);
}
