// surface_effects.cpp: greying out, dimming, and the patterned edge.
#include "gui/ORX/imaging/surface_effects.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/imaging/drawable_access.h"
#include "gui/ORX/imaging/surface_pixels.h"

#include <X11/Xutil.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

struct Channels {
    std::uint32_t r;
    std::uint32_t g;
    std::uint32_t b;
};

Channels read_pixel(const SurfaceWriter& writer, int x, int y) {
    const unsigned long pixel = XGetPixel(writer.surface, x, y);
    return {surface_channel(writer, pixel, 0), surface_channel(writer, pixel, 1),
            surface_channel(writer, pixel, 2)};
}

void write_pixel(const SurfaceWriter& writer, int x, int y, const Channels& channels) {
    XPutPixel(writer.surface, x, y, surface_pixel(writer, channels.r, channels.g, channels.b));
}

// Changes every pixel by effect(channels, row), shows the result and puts the old pixels back. The
// old ones are kept as bytes, which any format has.
template <typename Effect>
void show_changed(UiEngine* engine, WindowId id, ImageSurface* surface, Effect effect) {
    if (surface == nullptr) {
        return;
    }
    const XLockGuard lock(engine);
    const WindowSlot* slot = drawable_slot(engine, id);
    const std::size_t bytes = static_cast<std::size_t>(surface->bytes_per_line) *
                              static_cast<std::size_t>(surface->height);
    const std::unique_ptr<void, FreeMemory> previous(slot == nullptr ? nullptr
                                                                     : std::malloc(bytes));
    if (previous == nullptr) {
        return;
    }
    std::memcpy(previous.get(), surface->data, bytes);
    const SurfaceWriter writer = surface_writer(surface);
    for (int y = 0; y < surface->height; ++y) {
        for (int x = 0; x < surface->width; ++x) {
            write_pixel(writer, x, y, effect(read_pixel(writer, x, y), y));
        }
    }
    put_surface(engine, slot->window, surface, {0, 0, 0, 0, surface->width, surface->height});
    std::memcpy(surface->data, previous.get(), bytes);
}

bool on_edge(int x, int y, const XImage* surface, int band) {
    return x < band || y < band || x >= surface->width - band || y >= surface->height - band;
}

} // namespace

void orx_image_show_greyed(UiEngine* engine, WindowId id, ImageSurface* surface, float scale) {
    const float rows_per_device_row = 256.0F / scale; // design rows, times 256
    if (!(scale > 0.0F) || !(rows_per_device_row < 65536.0F)) {
        return;
    }
    const auto step = static_cast<std::int64_t>(rows_per_device_row);
    show_changed(engine, id, surface, [step](const Channels& pixel, int row) -> Channels {
        std::uint32_t grey = (pixel.r >> 2U) + (pixel.g >> 1U) + (pixel.b >> 3U);
        if ((((row * step) >> 8) & 1) != 0) {
            grey -= grey >> 3U;
        }
        return {grey, grey, grey};
    });
}

void orx_image_show_dimmed(UiEngine* engine, WindowId id, ImageSurface* surface) {
    show_changed(engine, id, surface, [](const Channels& pixel, int) -> Channels {
        return {pixel.r >> 1U, pixel.g >> 1U, pixel.b >> 1U};
    });
}

ImageSurface* orx_image_new_with_edge(UiEngine* engine, std::int32_t width, std::int32_t height,
                                      std::int32_t band, std::int32_t r, std::int32_t g,
                                      std::int32_t b) {
    ImageSurface* surface = orx_image_new(engine, width, height);
    if (surface == nullptr || band < 1) {
        return surface;
    }
    const XLockGuard lock(engine);
    const SurfaceWriter writer = surface_writer(surface);
    const Channels colours[2] = {
        {static_cast<std::uint32_t>(r) & 255U, static_cast<std::uint32_t>(g) & 255U,
         static_cast<std::uint32_t>(b) & 255U},
        {(static_cast<std::uint32_t>(r) & 255U) >> 1U, (static_cast<std::uint32_t>(g) & 255U) >> 1U,
         (static_cast<std::uint32_t>(b) & 255U) >> 1U}};
    for (int y = 0; y < surface->height; ++y) {
        for (int x = 0; x < surface->width; ++x) {
            if (on_edge(x, y, surface, band)) {
                write_pixel(writer, x, y, colours[((x + y) / band) & 1]);
            }
        }
    }
    return surface;
}
