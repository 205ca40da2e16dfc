// window_icon.cpp: a window's icon, from a blob to the window manager's hint.
#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/imaging/drawable_access.h"
#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/inline_image.h"
#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/window_icon_property.h"

#include <X11/Xutil.h>

namespace {

// Sends the surface to a new pixmap and names it in the window's hints. The window owns the pixmap;
// an earlier icon is freed once nothing names it any more. false when there is no pixmap.
bool set_icon_pixmap(UiEngine* engine, WindowId id, ImageSurface* surface) {
    const XLockGuard lock(engine);
    WindowSlot* slot = drawable_slot(engine, id);
    if (slot == nullptr) {
        return false;
    }
    Display* display = engine_display(engine);
    trap_x_errors(engine);
    const Pixmap pixmap =
        XCreatePixmap(display, slot->window, static_cast<unsigned>(surface->width),
                      static_cast<unsigned>(surface->height), static_cast<unsigned>(engine->depth));
    if (answer_trapped_calls(engine) != 0) {
        return false;
    }
    put_surface(engine, pixmap, surface, {0, 0, 0, 0, surface->width, surface->height});

    XWMHints* hints = XAllocWMHints();
    trap_x_errors(engine);
    if (hints != nullptr) {
        hints->flags = IconPixmapHint | IconPositionHint;
        hints->icon_pixmap = pixmap;
        hints->icon_x = 0;
        hints->icon_y = 0;
        XSetWMHints(display, slot->window, hints);
        XFree(hints);
    }
    if (slot->pixmap != 0) {
        XFreePixmap(display, slot->pixmap);
    }
    (void)answer_trapped_calls(engine);
    slot->pixmap = pixmap;
    return true;
}

} // namespace

void orx_window_set_icon(UiEngine* engine, const unsigned char* blob, WindowId id) {
    Pixbuf* icon = orx_pixbuf_new_from_inline(engine, blob);
    if (icon == nullptr) {
        return;
    }
    const auto width = static_cast<std::int32_t>(icon->width);
    const auto height = static_cast<std::int32_t>(icon->height);
    // A surface comes first: sizes that no screen has are refused there.
    ImageSurface* surface = orx_image_new(engine, width, height);
    Pixbuf* flattened = surface == nullptr ? nullptr : orx_pixbuf_new(engine, width, height);
    if (flattened != nullptr) {
        orx_pixbuf_composite(engine, icon, flattened, 0, 0, 0, 0, width, height);
        orx_image_from_pixbuf(engine, flattened, surface, 0, 0, 0, 0, width, height);
        if (set_icon_pixmap(engine, id, surface)) {
            set_icon_property(engine, id, icon);
        }
    }
    orx_pixbuf_free(engine, flattened);
    orx_image_free(engine, surface);
    orx_pixbuf_free_inline(engine, icon);
}
