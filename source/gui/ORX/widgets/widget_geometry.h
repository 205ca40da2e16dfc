// widget_geometry.h: where a widget lies on the screen, and colours. Pure, no display.
//
// Widgets are laid out in design pixels and shown enlarged by a scale of 1.0 to 2.0. All arithmetic
// is single precision, truncated toward zero: left and top edges as they come, right and bottom
// edges rounded.
#pragma once

#include <cstdint>

// 0 to 255 each, as they appear on the screen.
struct WidgetColour {
    std::int32_t r;
    std::int32_t g;
    std::int32_t b;
};

struct WidgetColourAlpha {
    std::int32_t r;
    std::int32_t g;
    std::int32_t b;
    std::int32_t alpha;
};

// Device pixels.
struct DeviceRect {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

// value * scale, toward zero; and the same with 0.5 added first.
[[nodiscard]] std::int32_t scale_truncated(std::int32_t value, float scale);
[[nodiscard]] std::int32_t scale_rounded(std::int32_t value, float scale);

// A float as an integer, toward zero; what no integer can hold becomes the nearest one that can,
// and what is no number becomes 0.
[[nodiscard]] std::int32_t truncate_to_int(float value);

// The device rectangle of a design rectangle.
[[nodiscard]] DeviceRect device_rect(std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                                     float scale);

// Whether a device point lies in it, all four edges included.
[[nodiscard]] bool device_rect_hit(const DeviceRect& rect, std::int32_t px, std::int32_t py);
