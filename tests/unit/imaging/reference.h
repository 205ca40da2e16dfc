// The arithmetic of imaging once more, as plainly as it can be said: one pixel at a time, in the
// order in which the rules are written. What the engine draws must equal this byte for byte.
#pragma once

#include "gui/ORX/imaging/image_surface.h"
#include "gui/ORX/imaging/pixbuf.h"

#include <array>
#include <cstdint>
#include <functional>

namespace reference {

using Taps = std::array<std::int32_t, 4>;

// The cubic convolution at phase / 256, in floating point, rounded down after adding 1/4, and the
// rest given to the larger centre weight.
[[nodiscard]] Taps weights(int phase);

[[nodiscard]] int channel_shift(std::uint32_t mask);
[[nodiscard]] std::uint32_t place(std::uint32_t value, std::uint32_t mask);
[[nodiscard]] std::uint32_t read(std::uint32_t pixel, std::uint32_t mask);

// floor by division of negative numbers, not by shifting.
[[nodiscard]] std::uint8_t blend(int d, int c, int a);

struct Rgb {
    std::uint8_t r;
    std::uint8_t g;
    std::uint8_t b;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};

// What a surface pixel is set to; positions may lie outside the surface.
using Put = std::function<void(std::int64_t x, std::int64_t y, Rgb colour)>;

struct Rectangle {
    std::int64_t x;
    std::int64_t y;
    std::int64_t width;
    std::int64_t height;
};

// The scaler: a whole horizontal pass into a buffer of columns, then a vertical pass.
void scale(const Pixbuf& source, Rectangle rectangle, std::int64_t image_x, std::int64_t image_y,
           float scale, std::int64_t surface_width, std::int64_t surface_height, const Put& put);

// The same into an image through the functions that it carries, positions outside left out.
void scale_into(const Pixbuf& source, ImageSurface& surface, Rectangle rectangle,
                std::int64_t image_x, std::int64_t image_y, float scale);

void put_pixel(ImageSurface& surface, std::int64_t x, std::int64_t y, Rgb colour);

} // namespace reference
