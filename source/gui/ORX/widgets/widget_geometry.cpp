// widget_geometry.cpp: from design pixels to device pixels.

#include "gui/ORX/widgets/widget_geometry.h"

#include <cmath>
#include <limits>

std::int32_t truncate_to_int(float value) {
    // The nearest floats outside the range of the integer; converting those would be undefined.
    constexpr float too_large = 2147483648.0F;
    constexpr float smallest = -2147483648.0F;
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= too_large) {
        return std::numeric_limits<std::int32_t>::max();
    }
    if (value < smallest) {
        return std::numeric_limits<std::int32_t>::min();
    }
    return static_cast<std::int32_t>(value);
}

std::int32_t scale_truncated(std::int32_t value, float scale) {
    return truncate_to_int(static_cast<float>(value) * scale);
}

std::int32_t scale_rounded(std::int32_t value, float scale) {
    return truncate_to_int(static_cast<float>(value) * scale + 0.5F);
}

DeviceRect device_rect(std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                       float scale) {
    return DeviceRect{scale_truncated(x, scale), scale_truncated(y, scale),
                      scale_rounded(x + w, scale), scale_rounded(y + h, scale)};
}

bool device_rect_hit(const DeviceRect& rect, std::int32_t px, std::int32_t py) {
    return rect.left <= px && px <= rect.right && rect.top <= py && py <= rect.bottom;
}
