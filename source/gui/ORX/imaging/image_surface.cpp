// image_surface.cpp: making surfaces, filling them 1:1 and putting them on windows.
#include "gui/ORX/imaging/image_surface.h"

#include "gui/ORX/core/engine.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/imaging/drawable_access.h"
#include "gui/ORX/imaging/pixel_run.h"
#include "gui/ORX/imaging/surface_pixels.h"
#include "gui/ORX/imaging/wire_area.h"

#include <X11/Xutil.h>

#include <cstdlib>

namespace {

constexpr int scanline_pad_bits = 32;
// No screen comes near this; whatever asks for more has lost its way.
constexpr std::int64_t largest_surface_bytes = 0x7FFFFFFF;

} // namespace

ImageSurface* orx_image_new(UiEngine* engine, std::int32_t width, std::int32_t height) {
    if (width < 1 || height < 1 || width > largest_extent || height > largest_extent) {
        return nullptr;
    }
    const XLockGuard lock(engine);
    Display* display = engine_display(engine);
    if (display == nullptr) {
        return nullptr;
    }
    XImage* image = XCreateImage(display, engine->visual, static_cast<unsigned>(engine->depth),
                                 ZPixmap, 0, nullptr, static_cast<unsigned>(width),
                                 static_cast<unsigned>(height), scanline_pad_bits, 0);
    if (image == nullptr) {
        return nullptr;
    }
    const std::int64_t bytes = std::int64_t{image->bytes_per_line} * height;
    if (bytes <= largest_surface_bytes) {
        image->data = static_cast<char*>(std::calloc(1, static_cast<std::size_t>(bytes)));
    }
    if (image->data == nullptr) {
        XDestroyImage(image);
        return nullptr;
    }
    surface_install_functions(image);
    return image;
}

void orx_image_free(UiEngine* engine, ImageSurface* surface) {
    const XLockGuard lock(engine);
    // A surface is memory of ours: it goes also when the connection is lost.
    if (surface != nullptr && engine->display != nullptr) {
        XDestroyImage(surface);
    }
}

void orx_image_put(UiEngine* engine, WindowId id, ImageSurface* surface, std::int32_t source_x,
                   std::int32_t source_y, std::int32_t destination_x, std::int32_t destination_y,
                   std::int32_t width, std::int32_t height) {
    const XLockGuard lock(engine);
    const WindowSlot* slot = drawable_slot(engine, id);
    if (slot != nullptr) {
        put_surface(engine, slot->window, surface,
                    {source_x, source_y, destination_x, destination_y, width, height});
    }
}

void orx_image_from_pixbuf(UiEngine* engine, const Pixbuf* source, ImageSurface* destination,
                           std::int32_t source_x, std::int32_t source_y, std::int32_t destination_x,
                           std::int32_t destination_y, std::int32_t width, std::int32_t height) {
    const std::int64_t source_pixels = pixel_count(source);
    if (height < 1 || source_pixels == 0 || destination == nullptr) {
        return;
    }
    const XLockGuard lock(engine);
    const SurfaceWriter writer = surface_writer(destination);
    const std::int64_t first_x = std::clamp<std::int64_t>(source_x, 0, source->width);
    const std::int64_t first_y = std::clamp<std::int64_t>(source_y, 0, source->height);
    const std::int64_t columns = std::min<std::int64_t>(width, source->width);
    const std::int64_t rows = std::min<std::int64_t>(height, source->height);
    // Only what lands on the surface is written, and only pixels that the source has are read.
    const std::int64_t left = std::max<std::int64_t>(0, -std::int64_t{destination_x});
    const std::int64_t right = std::min(columns, std::int64_t{destination->width} - destination_x);
    const std::int64_t top = std::max<std::int64_t>(0, -std::int64_t{destination_y});
    const std::int64_t bottom = std::min(rows, std::int64_t{destination->height} - destination_y);
    for (std::int64_t row = top; row < bottom; ++row) {
        const std::int64_t start = pixel_index(source, first_x + left, first_y + row);
        const std::int64_t count = std::min(right - left, source_pixels - start);
        if (count > 0) {
            surface_write_row(writer, destination_x + left, destination_y + row,
                              pixel_at(source, start), static_cast<std::size_t>(count));
        }
    }
}
