// drawable_access.cpp: what window and pixmap operations share.
#include "gui/ORX/imaging/drawable_access.h"

#include <X11/Xutil.h>

WindowSlot* drawable_slot(UiEngine* engine, WindowId id) {
    if (engine_display(engine) == nullptr || id < 0 || id >= window_capacity) {
        return nullptr;
    }
    WindowSlot* slot = &engine->windows[id];
    return slot->in_use.load() != 0 ? slot : nullptr;
}

int answer_trapped_calls(UiEngine* engine) {
    if (engine_display(engine) != nullptr) {
        XSync(engine_display(engine), False);
    }
    return untrap_x_errors(engine);
}

void put_surface(UiEngine* engine, Drawable drawable, ImageSurface* surface, CopyArea area) {
    Display* display = engine_display(engine);
    if (display == nullptr || drawable == 0 || surface == nullptr || !fit_copy(area)) {
        return;
    }
    trap_x_errors(engine);
    GC context = XCreateGC(display, drawable, 0, nullptr);
    if (context != nullptr) {
        XPutImage(display, drawable, context, surface, static_cast<int>(area.source_x),
                  static_cast<int>(area.source_y), static_cast<int>(area.destination_x),
                  static_cast<int>(area.destination_y), static_cast<unsigned>(area.width),
                  static_cast<unsigned>(area.height));
        XFreeGC(display, context);
    }
    (void)answer_trapped_calls(engine);
}
