// scaler.h: the Catmull-Rom scaler from design pixels to a surface in device pixels.
//
// Separable cubic convolution, a = -0.5 (R. G. Keys, "Cubic convolution interpolation for digital
// image processing", 1981), 256 phases of four 8-bit taps, 16.16 fixed point.
#pragma once

#include "gui/ORX/imaging/image_surface.h"

#include <cstdint>

// Renders the part of the scaled image that falls into the rectangle (x, y, width, height), in
// device pixels of the surface; (image_x, image_y) is where the scaled image's origin lies on the
// surface. The rectangle is clamped to the surface and to 8,192 x 8,192. The output is opaque.
// Takes x_lock.
void orx_image_scale_from_pixbuf(UiEngine* engine, const Pixbuf* source, ImageSurface* destination,
                                 std::int32_t x, std::int32_t y, std::int32_t width,
                                 std::int32_t height, std::int32_t image_x, std::int32_t image_y,
                                 float scale);
