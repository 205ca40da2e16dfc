// window_placement.cpp: where windows go and where they stand.
#include "gui/ORX/core/window_placement.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_placement_locked.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

namespace {

constexpr int deepest_frame = 10;
constexpr float pointer_band = 32.0F; // twice the distance from the top edge to the pointer

struct Position {
    int x = 0;
    int y = 0;
};

struct Size {
    int width = 0;
    int height = 0;
};

bool root_size(Display* display, Size* size) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, DefaultRootWindow(display), &attributes) == 0) {
        return false;
    }
    *size = {attributes.width, attributes.height};
    return true;
}

bool pointer_position(Display* display, Position* pointer) {
    Window root = 0;
    Window child = 0;
    Position in_window;
    unsigned buttons = 0;
    return XQueryPointer(display, DefaultRootWindow(display), &root, &child, &pointer->x,
                         &pointer->y, &in_window.x, &in_window.y, &buttons) != False;
}

int scaled(float length, float scale) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): as windows are made, at half a pixel too
    return static_cast<int>(static_cast<double>(length * scale) + 0.5);
}

// A window that is too long for the screen keeps its place, and only the top left corner counts.
int keep_on_screen(int start, int length, int screen_length) {
    if (length < screen_length && start + length > screen_length) {
        start = screen_length - length;
    }
    return start < 0 ? 0 : start;
}

} // namespace

void screen_centre(UiEngine* engine, std::int32_t* x, std::int32_t* y) {
    *x = 0;
    *y = 0;
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    if (Size root; root_size(display, &root)) {
        *x = root.width / 2;
        *y = root.height / 2;
    }
}

bool place_near_pointer(UiEngine* engine, std::int32_t* x, std::int32_t* y, std::int32_t width,
                        std::int32_t height, float scale) {
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    Position pointer;
    Size root;
    bool known = false;
    if (display != nullptr) {
        const XErrorTrap trap(engine);
        known = pointer_position(display, &pointer) && root_size(display, &root);
    }
    if (!known) {
        *x = 0;
        *y = 0;
        return false;
    }
    if (*x == 0 && *y == 0) {
        const int device_width = scaled(static_cast<float>(width), scale);
        const int device_height = scaled(static_cast<float>(height), scale);
        *x = keep_on_screen(pointer.x - device_width / 2, device_width, root.width);
        *y =
            keep_on_screen(pointer.y - scaled(pointer_band, scale) / 2, device_height, root.height);
    }
    return true;
}

void outer_position(Display* display, Window window, std::int32_t* x, std::int32_t* y) {
    *x = 0;
    *y = 0;
    for (int level = 0; level < deepest_frame; ++level) {
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned child_count = 0;
        if (XQueryTree(display, window, &root, &parent, &children, &child_count) == 0) {
            return;
        }
        if (children != nullptr) {
            XFree(children);
        }
        if (parent == root) {
            Position position;
            Window child = 0;
            if (XTranslateCoordinates(display, window, root, 0, 0, &position.x, &position.y,
                                      &child) != False) {
                *x = position.x;
                *y = position.y;
            }
            return;
        }
        window = parent;
    }
}

void window_root_position(UiEngine* engine, WindowId id, std::int32_t* x, std::int32_t* y) {
    *x = 0;
    *y = 0;
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    outer_position(display, engine->windows[id].window, x, y);
}
