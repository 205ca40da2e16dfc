// window_icon_property.cpp: _NET_WM_ICON: width, height, then pixels as 0xAARRGGBB.
#include "gui/ORX/imaging/window_icon_property.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/x_error_trap.h"
#include "gui/ORX/imaging/drawable_access.h"
#include "gui/ORX/imaging/pixbuf.h"

#include <X11/Xatom.h>

#include <cstddef>
#include <cstdlib>

namespace {

constexpr std::size_t header_words = 2;   // width and height
constexpr std::size_t request_words = 16; // more than a request has before its data

// Xlib takes 32-bit data as longs, whatever their size.
unsigned long argb(const std::uint8_t* rgba) {
    return static_cast<unsigned long>(rgba[3]) << 24 | static_cast<unsigned long>(rgba[0]) << 16 |
           static_cast<unsigned long>(rgba[1]) << 8 | rgba[2];
}

void fill(unsigned long* words, const Pixbuf* icon) {
    *words++ = icon->width;
    *words++ = icon->height;
    for (std::uint32_t y = 0; y < icon->height; ++y) {
        const std::uint8_t* row = icon->pixels + static_cast<std::size_t>(y) * icon->rowstride;
        for (std::uint32_t x = 0; x < icon->width; ++x) {
            *words++ = argb(row + static_cast<std::size_t>(x) * icon->n_channels);
        }
    }
}

} // namespace

void set_icon_property(UiEngine* engine, WindowId id, const Pixbuf* icon) {
    const XLockGuard lock(engine);
    const WindowSlot* slot = drawable_slot(engine, id);
    if (slot == nullptr) {
        return;
    }
    Display* display = engine_display(engine);
    const std::size_t count = header_words + static_cast<std::size_t>(icon->width) * icon->height;
    if (count + request_words > static_cast<std::size_t>(XMaxRequestSize(display))) {
        return;
    }
    auto* words = static_cast<unsigned long*>(std::malloc(count * sizeof(unsigned long)));
    if (words == nullptr) {
        return;
    }
    fill(words, icon);
    const XErrorTrap trap(engine);
    XChangeProperty(display, slot->window, XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL,
                    32, PropModeReplace, reinterpret_cast<const unsigned char*>(words),
                    static_cast<int>(count));
    std::free(words);
}
