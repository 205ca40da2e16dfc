// row_kernels_portable.cpp: the inner loops in plain C++, which define what the others compute.
#include "gui/ORX/imaging/row_kernels.h"

#include "gui/ORX/imaging/blend.h"
#include "gui/ORX/imaging/scaler_weights.h"

#include <cstring>

namespace {

// Weights sum to 256 and overshoot on both sides of an edge, so the sum is clamped. 65,280 is 255
// at full weight.
std::uint8_t clamp_sum(std::int32_t sum) {
    if (sum < 0) {
        return 0;
    }
    return static_cast<std::uint8_t>(sum > 65280 ? 255 : sum >> 8);
}

void plan_columns(const std::uint32_t*, const std::uint8_t* phases, std::size_t count,
                  std::uint8_t* plan) {
    std::memcpy(plan, phases, count);
}

void scale_row(const std::uint8_t* source, const std::uint32_t* offsets, const std::uint8_t* plan,
               std::size_t count, std::uint8_t* output) {
    for (std::size_t i = 0; i < count; ++i) {
        const TapRow& taps = scaler_weights[plan[i]];
        const std::uint8_t* pixels = source + std::size_t{offsets[i]} * 4;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            output[i * 4 + channel] =
                clamp_sum(taps[0] * pixels[channel] + taps[1] * pixels[channel + 4] +
                          taps[2] * pixels[channel + 8] + taps[3] * pixels[channel + 12]);
        }
        output[i * 4 + 3] = 255;
    }
}

void mix_rows(const std::uint8_t* const rows[4], std::uint32_t phase, std::size_t count,
              std::uint8_t* output) {
    const TapRow taps = scaler_weights[phase];
    for (std::size_t i = 0; i < count * 4; ++i) {
        output[i] = clamp_sum(taps[0] * rows[0][i] + taps[1] * rows[1][i] + taps[2] * rows[2][i] +
                              taps[3] * rows[3][i]);
    }
}

void blend_row(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    for (std::size_t i = 0; i < count * 4; i += 4) {
        const std::uint32_t alpha = source[i + 3];
        for (std::size_t channel = i; channel < i + 3; ++channel) {
            destination[channel] = blend_channel(destination[channel], source[channel], alpha);
        }
    }
}

void place_bytes(const std::uint8_t* pixels, std::size_t count, const std::uint32_t shifts[3],
                 std::uint8_t* output) {
    std::memset(output, 0, count * 4);
    for (std::size_t i = 0; i < count * 4; i += 4) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            output[i + shifts[channel] / 8] = pixels[i + channel];
        }
    }
}

} // namespace

const RowKernels portable_row_kernels = {"portable", 1,         plan_columns, scale_row,
                                         mix_rows,   blend_row, place_bytes};
