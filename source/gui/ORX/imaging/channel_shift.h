// channel_shift.h: where an 8-bit channel lies in a screen's pixel. Pure, no display.
#pragma once

#include <bit>
#include <cstdint>

// Rotation that brings the top bits of an 8-bit value into the mask's field: trailing zeros plus
// set bits minus 8, modulo 32. A zero mask gives 24.
inline std::uint32_t channel_shift(std::uint32_t mask) {
    const auto zeros = static_cast<std::uint32_t>(std::countr_zero(mask)); // 32 for a zero mask
    const auto bits = static_cast<std::uint32_t>(std::popcount(mask));
    return (zeros + bits - 8U) & 31U;
}

// The channel's bits of a pixel, and back. Bits that a narrow field has no room for are lost.
inline std::uint32_t place_channel(std::uint32_t value, std::uint32_t mask, std::uint32_t shift) {
    return std::rotl(value, static_cast<int>(shift & 31U)) & mask;
}
inline std::uint32_t read_channel(std::uint32_t pixel, std::uint32_t mask, std::uint32_t shift) {
    return std::rotr(pixel & mask, static_cast<int>(shift & 31U));
}
