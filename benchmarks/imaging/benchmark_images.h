// Images and surfaces for the benchmarks, made without a display.
#pragma once

#include "gui/ORX/imaging/pixbuf.h"
#include "gui/ORX/imaging/surface_pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <random>
#include <vector>

namespace pictures {

// Soft colour ramps with some noise, opaque: what artwork is like.
inline std::vector<std::uint8_t> artwork(int width, int height) {
    std::mt19937 random(7);
    std::vector<std::uint8_t> rgba;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int noise = static_cast<int>(random() % 8);
            rgba.push_back(static_cast<std::uint8_t>(x * 200 / width + noise));
            rgba.push_back(static_cast<std::uint8_t>(y * 120 / height + noise));
            rgba.push_back(static_cast<std::uint8_t>((x + y) * 90 / (width + height) + noise));
            rgba.push_back(255);
        }
    }
    return rgba;
}

inline Pixbuf view(std::vector<std::uint8_t>& rgba, int width, int height) {
    return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
            static_cast<std::uint32_t>(width) * 4, 4, rgba.data()};
}

// A 24-bit TrueColor surface with the engine's own pixel functions, or with Xlib's.
struct Surface {
    Surface(int width, int height, bool own_functions = true)
        : memory(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {
        image.width = width;
        image.height = height;
        image.format = ZPixmap;
        image.byte_order = LSBFirst;
        image.bitmap_unit = 32;
        image.bitmap_bit_order = LSBFirst;
        image.bitmap_pad = 32;
        image.depth = 24;
        image.bits_per_pixel = 32;
        image.bytes_per_line = width * 4;
        image.red_mask = 0xFF0000;
        image.green_mask = 0xFF00;
        image.blue_mask = 0xFF;
        image.data = reinterpret_cast<char*>(memory.data());
        XInitImage(&image);
        if (own_functions) {
            surface_install_functions(&image);
        }
    }
    std::vector<std::uint8_t> memory;
    XImage image{};
};

} // namespace pictures
