// scaler.h: the Catmull-Rom scaler from design pixels to a surface in device pixels.
//
// Separable cubic convolution, a = -0.5 (R. G. Keys, "Cubic convolution interpolation for digital
// image processing", 1981), 256 phases of four 8-bit taps, 16.16 fixed point: first horizontally,
// rounded to 8 bits, then vertically. Every processor gives the same bytes.
#pragma once

#include "gui/ORX/imaging/image_surface.h"

#include <cstdint>

// Renders the part of the scaled image that falls into the rectangle (x, y, width, height), in
// device pixels of the surface; (image_x, image_y) is where the scaled image's origin lies on the
// surface. A rectangle that starts left of or above the surface starts at its edge, with its whole
// size; it is then cut to 8,192 x 8,192 and to the surface. The source's alpha plays no part and
// the output is opaque.
//
// Nothing is drawn when nothing of the image falls into the rectangle, from a source of one row,
// for a null image, and for a scale that is not a number above 0 or lies below about 1 / 32,768.
// When no memory can be had the picture takes longer, and one at less than a tenth of its size is
// not drawn. Takes x_lock for the whole time; works without a display.
void orx_image_scale_from_pixbuf(UiEngine* engine, const Pixbuf* source, ImageSurface* destination,
                                 std::int32_t x, std::int32_t y, std::int32_t width,
                                 std::int32_t height, std::int32_t image_x, std::int32_t image_y,
                                 float scale);
