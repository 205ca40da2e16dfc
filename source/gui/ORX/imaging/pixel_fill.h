// pixel_fill.h: a run of pixels in one colour.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

inline void fill_pixels(std::uint8_t* pixels, std::size_t count, std::uint8_t r, std::uint8_t g,
                        std::uint8_t b, std::uint8_t a) {
    const std::uint8_t pixel[4] = {r, g, b, a};
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(pixels + i * 4, pixel, sizeof pixel);
    }
}
