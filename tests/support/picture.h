// Pictures of the screen, as tests compare them and people look at them.
//
// A picture holds 8-bit red, green, blue whatever the depth of the screen: channels of other widths
// are stretched to 0..255, a palette is looked up. Coordinates are device pixels.

#pragma once

#include "support/display_view.h"

#include <cstdint>
#include <string>
#include <vector>

namespace support {

struct Colour {
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
};

// True when no channel differs by more than tolerance.
[[nodiscard]] bool near_colour(Colour a, Colour b, int tolerance);

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb; // rows from the top, three bytes a pixel, no padding

    // The pixel at (x, y), which must lie inside.
    [[nodiscard]] Colour at(int x, int y) const;
};

// What is on the window now, its sub-windows included. The window must be viewable and wholly on
// the screen: without either (or without the window) the picture is empty. Other windows above it
// show.
[[nodiscard]] Picture take_picture(const DisplayView& view, XWindow window);
[[nodiscard]] Picture take_picture(const DisplayView& view, XWindow window, const Place& part);

[[nodiscard]] Picture crop(const Picture& picture, const Place& part);

// Number of pixels of the part that are within tolerance of the colour.
[[nodiscard]] int count_colour(const Picture& picture, const Place& part, Colour colour,
                               int tolerance = 0);

// Number of pixels with a channel that differs by more than tolerance; every pixel when sizes
// differ.
[[nodiscard]] int count_differences(const Picture& a, const Picture& b, int tolerance = 0);

// PNG files; throw std::runtime_error when they cannot be written or read. Alpha is dropped.
void save_png(const Picture& picture, const std::string& path);
[[nodiscard]] Picture load_png(const std::string& path);

} // namespace support
