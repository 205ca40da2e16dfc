// scaler_rows.h: the scaler's arithmetic, from a Pixbuf to rows of pixels. Pure, no display.
//
// The rows go one after another to a function of the caller's, which puts them where they belong.
// Two passes: each source row that is needed is scaled horizontally once and kept while the output
// rows that use it are mixed from it.
#pragma once

#include "gui/ORX/imaging/row_kernels.h"

#include <cstddef>
#include <cstdint>

struct Pixbuf;

// What is to be rendered, in device pixels of the surface.
struct ScaleRequest {
    std::int32_t x; // the rectangle
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
    std::int32_t image_x; // where the scaled image's origin lies
    std::int32_t image_y;
    float scale;
};

// count opaque pixels (R, G, B, 255) for the surface's row y from column x on, all of them on the
// surface.
using RowSink = void (*)(void* sink_data, std::int64_t x, std::int64_t y,
                         const std::uint8_t* pixels, std::size_t count);

// Renders the request for a surface of that size. Draws nothing when nothing of the image falls
// into the rectangle, when the rows asked for come from a single source row, when the scale is not
// a number above 0 or reaches below 1 / 32,768. When no memory can be had the rows come in short
// pieces, from left to right; below a tenth of the source's size there are none then.
void scale_rows(const RowKernels& kernels, const Pixbuf* source, const ScaleRequest& request,
                std::int64_t surface_width, std::int64_t surface_height, RowSink sink,
                void* sink_data);
