// window_properties.cpp: what the window manager is told about a window, and its size.
#include "gui/ORX/core/window_properties.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_properties_locked.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/x_error_trap.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>

#include <cstring>

namespace {

constexpr std::int32_t largest_side = 65535; // the X protocol's own bound

bool size_can_be_sent(std::int32_t width, std::int32_t height) {
    return width >= 1 && height >= 1 && width <= largest_side && height <= largest_side;
}

void set_text_property(Display* display, Window window, Atom property, Atom type,
                       const char* text) {
    XChangeProperty(display, window, property, type, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(text),
                    static_cast<int>(std::strlen(text)));
}

void set_one_atom(UiEngine* engine, WindowId id, const char* property, const char* value) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    set_atom_property(display, engine->windows[id].window, property, value);
}

} // namespace

void set_atom_property(Display* display, Window window, const char* property, const char* value) {
    const Atom property_atom = XInternAtom(display, property, False);
    const Atom value_atom = XInternAtom(display, value, False);
    XChangeProperty(display, window, property_atom, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&value_atom), 1);
}

void set_window_type(Display* display, Window window, const char* type) {
    set_atom_property(display, window, "_NET_WM_WINDOW_TYPE", type);
}

void window_set_title(UiEngine* engine, WindowId id, const char* utf8_text) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    const Window window = engine->windows[id].window;
    set_text_property(display, window, XA_WM_NAME, XA_STRING, utf8_text);
    set_text_property(display, window, XInternAtom(display, "_NET_WM_NAME", False),
                      XInternAtom(display, "UTF8_STRING", False), utf8_text);
}

void window_set_class_hint(UiEngine* engine, WindowId id, const char* text) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XClassHint hint{const_cast<char*>(text), const_cast<char*>(text)};
    XSetClassHint(display, engine->windows[id].window, &hint);
}

void window_set_owner(UiEngine* engine, WindowId id, WindowId owner) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr || owner < 0 || window_display(engine, owner) == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    const Window window = engine->windows[id].window;
    const Window owner_window = engine->windows[owner].window;
    XSetTransientForHint(display, window, owner_window);
    XClassHint hint{nullptr, nullptr};
    if (XGetClassHint(display, owner_window, &hint) != 0) {
        XSetClassHint(display, window, &hint);
        XFree(hint.res_name);
        XFree(hint.res_class);
    }
}

void window_set_type_utility(UiEngine* engine, WindowId id) {
    set_one_atom(engine, id, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_UTILITY");
}

void window_set_type_splash(UiEngine* engine, WindowId id) {
    set_one_atom(engine, id, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_SPLASH");
}

void window_set_above(UiEngine* engine, WindowId id) {
    set_one_atom(engine, id, "_NET_WM_STATE", "_NET_WM_STATE_ABOVE");
}

void window_set_protocols(UiEngine* engine, WindowId id, unsigned long atom) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XSetWMProtocols(display, engine->windows[id].window, &atom, 1);
}

void window_set_size_hints(UiEngine* engine, std::int32_t min_width, std::int32_t min_height,
                           std::int32_t max_width, std::int32_t max_height, std::int32_t aspect_x,
                           std::int32_t aspect_y, std::int32_t x, std::int32_t y, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const WindowSlot& slot = engine->windows[id];
    XSizeHints hints{};
    hints.flags = PSize | PMinSize;
    hints.width = static_cast<int>(slot.width);
    hints.height = static_cast<int>(slot.height);
    hints.min_width = hints.base_width = min_width;
    hints.min_height = hints.base_height = min_height;
    hints.max_width = max_width;
    hints.max_height = max_height;
    hints.min_aspect = {aspect_x, aspect_y};
    hints.max_aspect = {aspect_x, aspect_y};
    if (x != 0 || y != 0) {
        hints.flags |= PPosition;
        hints.x = x;
        hints.y = y;
    }
    if (max_width != 0 || max_height != 0) {
        hints.flags |= PMaxSize;
    }
    if (aspect_x != 0 || aspect_y != 0) {
        hints.flags |= PAspect;
    }
    const XErrorTrap trap(engine);
    XSetNormalHints(display, slot.window, &hints);
}

void window_map(UiEngine* engine, WindowId id) {
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XMapWindow(display, engine->windows[id].window);
    XFlush(display);
}

void window_resize(UiEngine* engine, WindowId id, std::int32_t width, std::int32_t height) {
    if (!size_can_be_sent(width, height)) {
        return;
    }
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    Display* display = window_display(engine, id);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    WindowSlot& slot = engine->windows[id];
    XResizeWindow(display, slot.window, static_cast<unsigned>(width),
                  static_cast<unsigned>(height));
    slot.width = static_cast<std::uint32_t>(width);
    slot.height = static_cast<std::uint32_t>(height);
}

void x_window_resize(UiEngine* engine, unsigned long x_window, std::int32_t width,
                     std::int32_t height) {
    if (!size_can_be_sent(width, height)) {
        return;
    }
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XResizeWindow(display, x_window, static_cast<unsigned>(width), static_cast<unsigned>(height));
}

void x_window_size(UiEngine* engine, unsigned long x_window, std::int32_t* width,
                   std::int32_t* height) {
    *width = 0;
    *height = 0;
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return;
    }
    const XErrorTrap trap(engine);
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, x_window, &attributes) != 0) {
        *width = attributes.width;
        *height = attributes.height;
    }
}
