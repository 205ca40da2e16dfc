// The scaler without any art: two passes over whole columns, a multiplication for each tap of each
// channel, and the image's put-pixel for each pixel. What the fast one is measured against.
#pragma once

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/scaler_weights.h"
#include "gui/ORX/imaging/surface_pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cstdlib>

namespace plain {

inline std::uint32_t clamped(std::int32_t sum) {
    return sum < 0 ? 0U : sum > 65280 ? 255U : static_cast<std::uint32_t>(sum >> 8);
}

inline std::uint32_t mixed(const TapRow& taps, const std::uint32_t p[4]) {
    std::uint32_t pixel = 0xFF000000U;
    for (unsigned shift = 0; shift < 24; shift += 8) {
        std::int32_t sum = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            sum += taps[i] * static_cast<std::int32_t>(p[i] >> shift & 255U);
        }
        pixel |= clamped(sum) << shift;
    }
    return pixel;
}

inline void scale(const Pixbuf& source, XImage& image, int w, int h, float factor) {
    const int step = static_cast<int>((1 / factor) * 65536);
    const int last_x = static_cast<int>(source.width) - 1;
    const int last_y = static_cast<int>(source.height) - 1;
    const int stride = last_y + 9;
    const auto* words = reinterpret_cast<const std::uint32_t*>(source.pixels);
    auto* buffer = static_cast<std::uint32_t*>(
        std::malloc(static_cast<std::size_t>(w + 8) * static_cast<std::size_t>(stride) * 4));
    const SurfaceWriter format = surface_writer(&image);
    int columns = 0;
    for (int row = 0; row <= last_y; ++row) {
        for (int c = 0; c < w && (c * step) >> 16 <= last_x; ++c) {
            std::uint32_t p[4];
            for (int i = 0; i < 4; ++i) {
                p[i] =
                    words[row * (last_x + 1) + std::clamp(((c * step) >> 16) - 1 + i, 0, last_x)];
            }
            buffer[c * stride + row] =
                mixed(scaler_weights[static_cast<std::size_t>((c * step) >> 8 & 255)], p);
            columns = std::max(columns, c + 1);
        }
    }
    for (int c = 0; c < columns; ++c) {
        for (int r = 0; r < h && (r * step) >> 16 <= last_y; ++r) {
            std::uint32_t p[4];
            for (int i = 0; i < 4; ++i) {
                p[i] = buffer[c * stride + std::clamp(((r * step) >> 16) - 1 + i, 0, last_y)];
            }
            const std::uint32_t pixel =
                mixed(scaler_weights[static_cast<std::size_t>((r * step) >> 8 & 255)], p);
            XPutPixel(&image, c, r,
                      surface_pixel(format, pixel & 255U, pixel >> 8U & 255U, pixel >> 16U & 255U));
        }
    }
    std::free(buffer);
}

} // namespace plain
