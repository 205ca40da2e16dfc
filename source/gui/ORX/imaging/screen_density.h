// screen_density.h: the arithmetic behind the UI scale. Pure, no display.
#pragma once

#include <cmath>
#include <cstdint>

// A float as a whole number, truncated toward zero. What has no such number (a screen that says it
// is 0 mm wide makes infinity or nothing at all) gives the most negative one.
[[nodiscard]] inline std::int32_t truncate_to_int32(float value) {
    const bool fits = value >= -2147483648.0F && value < 2147483648.0F;
    return fits ? static_cast<std::int32_t>(value) : INT32_MIN;
}

// Diagonal of a rectangle. The squares are summed in 32 bits, as everywhere in this measure.
[[nodiscard]] inline float diagonal(std::int32_t width, std::int32_t height) {
    const auto w = static_cast<std::uint32_t>(width);
    const auto h = static_cast<std::uint32_t>(height);
    return std::sqrt(static_cast<float>(static_cast<std::int32_t>(w * w + h * h)));
}

// Dots per inch of a length in pixels that measures so many millimetres.
[[nodiscard]] inline std::int32_t dots_per_inch(float pixels, float millimetres) {
    return truncate_to_int32(pixels / (millimetres / 25.4F));
}

// The UI scale for a density: 1.0 to 2.0, rounded down to a step of 0.125.
[[nodiscard]] inline float scale_of_density(std::int32_t dpi) {
    const float scale = static_cast<float>(dpi) / 96.0F;
    const float bounded = std::fmin(std::fmax(scale, 1.0F), 2.0F);
    return std::floor(bounded * 8.0F) * 0.125F;
}
