// surface_scaling.cpp: the scaler's rows on a surface.
#include "gui/ORX/imaging/scaler.h"

#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/imaging/scaler_rows.h"
#include "gui/ORX/imaging/surface_pixels.h"

#include <X11/Xlib.h>

namespace {

void write_scaled_row(void* sink_data, std::int64_t x, std::int64_t y, const std::uint8_t* pixels,
                      std::size_t count) {
    surface_write_row(*static_cast<const SurfaceWriter*>(sink_data), x, y, pixels, count);
}

} // namespace

void orx_image_scale_from_pixbuf(UiEngine* engine, const Pixbuf* source, ImageSurface* destination,
                                 std::int32_t x, std::int32_t y, std::int32_t width,
                                 std::int32_t height, std::int32_t image_x, std::int32_t image_y,
                                 float scale) {
    if (destination == nullptr) {
        return;
    }
    const XLockGuard lock(engine);
    SurfaceWriter writer = surface_writer(destination);
    scale_rows(best_row_kernels(), source, {x, y, width, height, image_x, image_y, scale},
               destination->width, destination->height, write_scaled_row, &writer);
}
