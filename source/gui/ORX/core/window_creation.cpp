// window_creation.cpp: the four ways of making a window.
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/input_method.h"
#include "gui/ORX/core/window_properties_locked.h"
#include "gui/ORX/core/window_records.h"
#include "gui/ORX/core/window_table.h"
#include "gui/ORX/core/x_error_trap.h"

#include <algorithm>

namespace {

constexpr double largest_side = 65535.0; // the X protocol's own bound

enum class WindowKind { simple, splash, colored, plain };

// What a window is to be: position and size in device pixels; a size of 0 cannot be made.
struct NewWindow {
    WindowKind kind;
    std::int32_t x;
    std::int32_t y;
    std::uint32_t width;
    std::uint32_t height;
    float scale;
    void* user_data;
    XColor background;
};

std::uint32_t device_size(std::int32_t design_size, float scale) {
    const double size = static_cast<double>(static_cast<float>(design_size) * scale) + 0.5;
    return size >= 1.0 && size <= largest_side ? static_cast<std::uint32_t>(size) : 0;
}

std::uint32_t inverse_of(float scale) {
    const double inverse = (1.0 / static_cast<double>(scale)) * 65536.0;
    return static_cast<std::uint32_t>(std::min(inverse, 4294967295.0));
}

NewWindow describe(WindowKind kind, std::int32_t x, std::int32_t y, std::int32_t width,
                   std::int32_t height, void* user_data, float scale) {
    return {kind,  x,         y, device_size(width, scale), device_size(height, scale),
            scale, user_data, {}};
}

// What every creation does with its new X window. table_lock and x_lock held, errors trapped.
WindowId register_window(UiEngine* engine, XErrorTrap* trap, Window window,
                         const NewWindow& described) {
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return no_window;
    }
    Atom delete_atom = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(display, window, &delete_atom, 1);
    XIC context = make_input_context(engine, window);
    if (trap->finish() != 0 || engine->connection_lost) {
        if (!engine->connection_lost) {
            const XErrorTrap undoing(engine);
            destroy_input_context(engine, &context);
            XDestroyWindow(display, window);
        }
        return no_window;
    }
    const WindowId id = first_free_slot(engine);
    if (id == no_window) {
        return no_window; // what was made stays until the connection ends
    }
    window_reset_slot(engine, id);
    add_to_live_order(engine, id);
    WindowSlot& slot = engine->windows[id];
    slot.scale = described.scale;
    slot.in_use = 1;
    slot.window = window;
    slot.delete_atom = delete_atom;
    slot.width = described.width;
    slot.height = described.height;
    slot.x = static_cast<std::uint32_t>(described.x);
    slot.y = static_cast<std::uint32_t>(described.y);
    slot.user_data = described.user_data;
    slot.input_context = context;
    slot.inverse_scale = inverse_of(described.scale);
    return id;
}

Window make_simple(Display* display, const NewWindow& window, unsigned long background) {
    return XCreateSimpleWindow(display, DefaultRootWindow(display), window.x, window.y,
                               window.width, window.height, 0, 0, background);
}

Window make_splash(Display* display, const NewWindow& described) {
    const Window window = make_simple(display, described, WhitePixel(display, 0));
    set_window_type(display, window, "_NET_WM_WINDOW_TYPE_SPLASH");
    return window;
}

Window make_with_gravity(Display* display, const NewWindow& window, unsigned long background) {
    XSetWindowAttributes attributes{};
    attributes.background_pixel = background;
    attributes.bit_gravity = NorthWestGravity;
    return XCreateWindow(display, DefaultRootWindow(display), window.x, window.y, window.width,
                         window.height, 0, CopyFromParent, CopyFromParent, CopyFromParent,
                         CWBackPixel | CWBitGravity, &attributes);
}

Window make_colored(Display* display, const NewWindow& described) {
    const Colormap colormap = DefaultColormap(display, 0);
    XColor color = described.background;
    // A full colour map leaves the window black rather than unmade.
    const bool allocated = XAllocColor(display, colormap, &color) != 0;
    const Window window = make_with_gravity(display, described, allocated ? color.pixel : 0);
    if (allocated) {
        XFreeColors(display, colormap, &color.pixel, 1, 0);
    }
    return window;
}

Window make_window(Display* display, const NewWindow& described) {
    switch (described.kind) {
    case WindowKind::splash:
        return make_splash(display, described);
    case WindowKind::colored:
        return make_colored(display, described);
    case WindowKind::plain:
        return make_with_gravity(display, described, 0);
    case WindowKind::simple:
        break;
    }
    return make_simple(display, described, 0);
}

WindowId create_window(UiEngine* engine, const NewWindow& described) {
    if (described.width == 0 || described.height == 0) {
        return no_window;
    }
    const TableLockGuard table_guard(engine);
    const XLockGuard x_guard(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return no_window;
    }
    XErrorTrap trap(engine);
    const Window window = make_window(display, described);
    return register_window(engine, &trap, window, described);
}

} // namespace

WindowId window_create_simple(UiEngine* engine, std::int32_t x, std::int32_t y, std::int32_t width,
                              std::int32_t height, void* user_data, float scale) {
    return create_window(engine,
                         describe(WindowKind::simple, x, y, width, height, user_data, scale));
}

WindowId window_create_splash(UiEngine* engine, std::int32_t x, std::int32_t y, std::int32_t width,
                              std::int32_t height, void* user_data, float scale) {
    return create_window(engine,
                         describe(WindowKind::splash, x, y, width, height, user_data, scale));
}

WindowId window_create_colored(UiEngine* engine, std::int32_t x, std::int32_t y, std::int32_t width,
                               std::int32_t height, std::int32_t red, std::int32_t green,
                               std::int32_t blue, void* user_data, float scale) {
    NewWindow described = describe(WindowKind::colored, x, y, width, height, user_data, scale);
    described.background.red = static_cast<unsigned short>(red << 8);
    described.background.green = static_cast<unsigned short>(green << 8);
    described.background.blue = static_cast<unsigned short>(blue << 8);
    return create_window(engine, described);
}

WindowId window_create_plain(UiEngine* engine, std::int32_t x, std::int32_t y, std::int32_t width,
                             std::int32_t height, void* user_data, float scale) {
    return create_window(engine,
                         describe(WindowKind::plain, x, y, width, height, user_data, scale));
}
