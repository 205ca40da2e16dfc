// The least that a program with a window does: connect, one window of the splash's size with a
// background, shown, until the server or a signal ends it. What others are measured against.

#include <X11/Xlib.h>

int main() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return 1;
    }
    constexpr unsigned width = 600;
    constexpr unsigned height = 400;
    constexpr unsigned long dark_grey = 0x383838;
    const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, width,
                                              height, 0, 0, dark_grey);
    XMapWindow(display, window);
    for (;;) {
        XEvent event;
        XNextEvent(display, &event);
    }
}
