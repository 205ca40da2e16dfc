// blend.h: the one rule by which a colour covers another.
#pragma once

#include <cstdint>

// d + floor((c - d) * a / 256), the low eight bits. Unsigned on purpose: the product wraps and any
// arguments are defined. Alpha 255 leaves a residue: 255 over 0 gives 254.
inline std::uint8_t blend_channel(std::uint32_t d, std::uint32_t c, std::uint32_t a) {
    return static_cast<std::uint8_t>(d + (((c - d) * a) >> 8U));
}
