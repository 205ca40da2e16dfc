// window_pixels.cpp: scrolling and repainting windows, and the server's pixmaps.
#include "gui/ORX/imaging/window_pixels.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/imaging/drawable_access.h"

#include <X11/Xutil.h>

namespace {

struct AwaitedWindow {
    Window window;
};

Bool is_scroll_report(Display*, XEvent* event, XPointer argument) {
    const Window window = reinterpret_cast<const AwaitedWindow*>(argument)->window;
    return (event->type == GraphicsExpose && event->xgraphicsexpose.drawable == window) ||
                   (event->type == NoExpose && event->xnoexpose.drawable == window)
               ? True
               : False;
}

// Where the window was covered there was nothing to copy; the server names those areas, and they
// are repainted.
void take_scroll_reports(Display* display, WindowSlot* slot) {
    AwaitedWindow awaited{slot->window};
    XEvent event;
    while (XCheckIfEvent(display, &event, is_scroll_report, reinterpret_cast<XPointer>(&awaited)) ==
           True) {
        if (event.type == GraphicsExpose) {
            const XGraphicsExposeEvent& area = event.xgraphicsexpose;
            damage_add(&slot->damage, area.x, area.y, area.x + area.width, area.y + area.height);
        }
    }
}

void copy_drawable(Display* display, Drawable from, Drawable to, bool report, CopyArea area) {
    if (!fit_copy(area)) {
        return;
    }
    XGCValues values{};
    values.graphics_exposures = report ? True : False;
    GC context = XCreateGC(display, to, GCGraphicsExposures, &values);
    if (context != nullptr) {
        XCopyArea(display, from, to, context, static_cast<int>(area.source_x),
                  static_cast<int>(area.source_y), static_cast<unsigned>(area.width),
                  static_cast<unsigned>(area.height), static_cast<int>(area.destination_x),
                  static_cast<int>(area.destination_y));
        XFreeGC(display, context);
    }
}

} // namespace

void orx_window_scroll(UiEngine* engine, WindowId id, std::int32_t x, std::int32_t y,
                       std::int32_t width, std::int32_t height, std::int32_t dy) {
    if (dy == 0) {
        return;
    }
    const XLockGuard lock(engine);
    WindowSlot* slot = drawable_slot(engine, id);
    if (slot == nullptr) {
        return;
    }
    const std::int64_t h = height;
    CopyArea area{x, y, x, y, width, h};
    if (dy > 0) {
        const std::int64_t moved = std::min<std::int64_t>(h, dy);
        area.destination_y += moved;
        area.height -= moved;
    } else {
        const std::int64_t moved = std::max<std::int64_t>(dy, -h);
        area.source_y -= moved;
        area.height += moved;
    }
    Display* display = engine_display(engine);
    trap_x_errors(engine);
    copy_drawable(display, slot->window, slot->window, true, area);
    (void)answer_trapped_calls(engine);
    if (engine_display(engine) != nullptr) {
        take_scroll_reports(display, slot);
    }
}

void orx_window_request_redraw(UiEngine* engine, WindowId id, std::int32_t x, std::int32_t y,
                               std::int32_t width, std::int32_t height) {
    const XLockGuard lock(engine);
    const WindowSlot* slot = drawable_slot(engine, id);
    if (slot == nullptr) {
        return;
    }
    CopyArea area{x, y, x, y, width, height};
    if (!fit_copy(area)) {
        return;
    }
    Display* display = engine_display(engine);
    XEvent event{};
    event.xexpose.type = Expose;
    event.xexpose.display = display;
    event.xexpose.window = slot->window;
    event.xexpose.x = static_cast<int>(area.destination_x);
    event.xexpose.y = static_cast<int>(area.destination_y);
    event.xexpose.width = static_cast<int>(area.width);
    event.xexpose.height = static_cast<int>(area.height);
    trap_x_errors(engine);
    (void)XSendEvent(display, slot->window, True, ExposureMask, &event);
    (void)answer_trapped_calls(engine);
}

unsigned long orx_pixmap_new(UiEngine* engine, WindowId id, std::int32_t width,
                             std::int32_t height) {
    if (width < 1 || height < 1 || width > largest_wire_position ||
        height > largest_wire_position) {
        return 0;
    }
    const XLockGuard lock(engine);
    const WindowSlot* slot = drawable_slot(engine, id);
    if (slot == nullptr) {
        return 0;
    }
    trap_x_errors(engine);
    const Pixmap pixmap =
        XCreatePixmap(engine_display(engine), slot->window, static_cast<unsigned>(width),
                      static_cast<unsigned>(height), static_cast<unsigned>(engine->depth));
    return answer_trapped_calls(engine) == 0 ? pixmap : 0;
}

void orx_pixmap_free(UiEngine* engine, unsigned long pixmap) {
    const XLockGuard lock(engine);
    Display* display = engine_display(engine);
    if (display == nullptr || pixmap == 0) {
        return;
    }
    trap_x_errors(engine);
    XFreePixmap(display, pixmap);
    (void)answer_trapped_calls(engine);
}

void orx_pixmap_put(UiEngine* engine, unsigned long pixmap, ImageSurface* surface,
                    std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                    std::int32_t destination_y, std::int32_t width, std::int32_t height) {
    const XLockGuard lock(engine);
    put_surface(engine, pixmap, surface,
                {source_x, source_y, destination_x, destination_y, width, height});
}

void orx_pixmap_show(UiEngine* engine, unsigned long pixmap, WindowId id, std::int32_t source_x,
                     std::int32_t source_y, std::int32_t width, std::int32_t height,
                     std::int32_t destination_x, std::int32_t destination_y) {
    const XLockGuard lock(engine);
    const WindowSlot* slot = drawable_slot(engine, id);
    if (slot == nullptr || pixmap == 0) {
        return;
    }
    trap_x_errors(engine);
    copy_drawable(engine_display(engine), pixmap, slot->window, false,
                  {source_x, source_y, destination_x, destination_y, width, height});
    (void)answer_trapped_calls(engine);
}
