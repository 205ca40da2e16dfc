// The plain arithmetic of imaging.
#include "unit/imaging/reference.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace reference {

namespace {

Rgb pixel(const Pixbuf& source, std::int64_t x, std::int64_t y) {
    const std::uint8_t* bytes = source.pixels + (y * source.width + x) * 4;
    return {bytes[0], bytes[1], bytes[2]};
}

std::uint8_t weighted(const Taps& taps, std::int32_t p0, std::int32_t p1, std::int32_t p2,
                      std::int32_t p3) {
    const std::int32_t sum = taps[0] * p0 + taps[1] * p1 + taps[2] * p2 + taps[3] * p3;
    if (sum < 0) {
        return 0;
    }
    if (sum > 65280) {
        return 255;
    }
    return static_cast<std::uint8_t>(sum / 256);
}

Rgb mix(const Taps& taps, const std::array<Rgb, 4>& p) {
    return {weighted(taps, p[0].r, p[1].r, p[2].r, p[3].r),
            weighted(taps, p[0].g, p[1].g, p[2].g, p[3].g),
            weighted(taps, p[0].b, p[1].b, p[2].b, p[3].b)};
}

} // namespace

Taps weights(int phase) {
    const double t = phase / 256.0;
    const double exact[4] = {
        (-t * t * t + 2 * t * t - t) / 2,
        (3 * t * t * t - 5 * t * t + 2) / 2,
        (-3 * t * t * t + 4 * t * t + t) / 2,
        (t * t * t - t * t) / 2,
    };
    Taps taps{};
    std::int32_t sum = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        taps[i] = static_cast<std::int32_t>(std::floor(256 * exact[i] + 0.25));
        sum += taps[i];
    }
    taps[taps[1] >= taps[2] ? 1 : 2] += 256 - sum;
    return taps;
}

int channel_shift(std::uint32_t mask) {
    if (mask == 0) {
        return 24;
    }
    int zeros = 0;
    while ((mask >> zeros & 1U) == 0) {
        ++zeros;
    }
    int bits = 0;
    for (int bit = 0; bit < 32; ++bit) {
        bits += static_cast<int>(mask >> bit & 1U);
    }
    return (zeros + bits - 8 + 32) % 32;
}

std::uint32_t place(std::uint32_t value, std::uint32_t mask) {
    for (int i = 0; i < channel_shift(mask); ++i) {
        value = value << 1U | value >> 31U;
    }
    return value & mask;
}

std::uint32_t read(std::uint32_t pixel, std::uint32_t mask) {
    std::uint32_t value = pixel & mask;
    for (int i = 0; i < channel_shift(mask); ++i) {
        value = value >> 1U | value << 31U;
    }
    return value;
}

std::uint8_t blend(int d, int c, int a) {
    const double change = std::floor((c - d) * a / 256.0);
    return static_cast<std::uint8_t>(d + static_cast<int>(change));
}

void scale(const Pixbuf& source, Rectangle rectangle, std::int64_t image_x, std::int64_t image_y,
           float scale, std::int64_t surface_width, std::int64_t surface_height, const Put& put) {
    const std::int64_t x0 = std::max<std::int64_t>(rectangle.x, 0);
    const std::int64_t y0 = std::max<std::int64_t>(rectangle.y, 0);
    std::int64_t w = std::min<std::int64_t>(rectangle.width, 8192);
    std::int64_t h = std::min<std::int64_t>(rectangle.height, 8192);
    w = std::min(w, surface_width - x0);
    h = std::min(h, surface_height - y0);
    if (w < 1 || h < 1 || x0 > surface_width - 1 || y0 > surface_height - 1 ||
        image_x > surface_width - 1 || image_y > surface_height - 1) {
        return;
    }
    const std::int64_t step = static_cast<int>((1 / scale) * 65536);
    const std::int64_t r0 = std::max<std::int64_t>(y0 - image_y, 0);
    const std::int64_t r1 = r0 + h;
    const std::int64_t c0 = std::max<std::int64_t>(x0 - image_x, 0);
    const std::int64_t last_row = static_cast<std::int64_t>(source.height) - 1;
    const std::int64_t last_column = static_cast<std::int64_t>(source.width) - 1;
    const std::int64_t sy0 = std::clamp<std::int64_t>(((step * r0) >> 16) - 1, 0, last_row);
    const std::int64_t sy1 = std::clamp<std::int64_t>((((r1 - 1) * step) >> 16) + 3, 0, last_row);
    if (sy1 == sy0) {
        return;
    }
    std::vector<std::vector<Rgb>> columns;
    for (std::int64_t c = c0; c < c0 + w && (c * step) >> 16 <= last_column; ++c) {
        const Taps taps = weights(static_cast<int>(((c * step) >> 8) & 255));
        const std::int64_t floor = (c * step) >> 16;
        std::vector<Rgb> column;
        for (std::int64_t row = sy0; row <= sy1; ++row) {
            std::array<Rgb, 4> p{};
            for (std::int64_t i = 0; i < 4; ++i) {
                p[static_cast<std::size_t>(i)] =
                    pixel(source, std::clamp<std::int64_t>(floor - 1 + i, 0, last_column), row);
            }
            column.push_back(mix(taps, p));
        }
        columns.push_back(column);
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::vector<Rgb>& column = columns[i];
        for (std::int64_t r = r0; r < r1 && (r * step) >> 16 <= last_row; ++r) {
            const Taps taps = weights(static_cast<int>(((r * step) >> 8) & 255));
            const std::int64_t floor = ((r * step) >> 16) - sy0;
            std::array<Rgb, 4> p{};
            for (std::int64_t tap = 0; tap < 4; ++tap) {
                p[static_cast<std::size_t>(tap)] = column[static_cast<std::size_t>(
                    std::clamp<std::int64_t>(floor - 1 + tap, 0, sy1 - sy0))];
            }
            put(image_x + c0 + static_cast<std::int64_t>(i), image_y + r, mix(taps, p));
        }
    }
}

void put_pixel(ImageSurface& surface, std::int64_t x, std::int64_t y, Rgb colour) {
    if (x < 0 || y < 0 || x >= surface.width || y >= surface.height) {
        return;
    }
    XPutPixel(&surface, static_cast<int>(x), static_cast<int>(y),
              place(colour.r, static_cast<std::uint32_t>(surface.red_mask)) |
                  place(colour.g, static_cast<std::uint32_t>(surface.green_mask)) |
                  place(colour.b, static_cast<std::uint32_t>(surface.blue_mask)));
}

void scale_into(const Pixbuf& source, ImageSurface& surface, Rectangle rectangle,
                std::int64_t image_x, std::int64_t image_y, float scale) {
    reference::scale(source, rectangle, image_x, image_y, scale, surface.width, surface.height,
                     [&surface](std::int64_t x, std::int64_t y, Rgb colour) {
                         put_pixel(surface, x, y, colour);
                     });
}

} // namespace reference
