// scaler_weights.h: the weights of the cubic convolution (a = -0.5) at 256 phases.
//
// Row p holds the weights of the samples floor - 1, floor, floor + 1 and floor + 2 at t = p / 256,
// times 256. Each is floor(256 w + 1/4); what is then missing to a sum of 256 goes to the larger
// centre weight.
#pragma once

#include <array>
#include <cstdint>

using TapRow = std::array<std::int32_t, 4>;

consteval std::array<TapRow, 256> make_scaler_weights() {
    std::array<TapRow, 256> table{};
    constexpr std::int64_t n = 256; // phases
    for (std::int64_t p = 0; p < n; ++p) {
        // 2 * 256^2 times each weight, so that all of it is integer arithmetic.
        const std::int64_t p2 = p * p;
        const std::int64_t p3 = p2 * p;
        const std::int64_t numerators[4] = {
            -p3 + 2 * n * p2 - n * n * p,
            3 * p3 - 5 * n * p2 + 2 * n * n * n,
            -3 * p3 + 4 * n * p2 + n * n * p,
            p3 - n * p2,
        };
        TapRow& row = table[static_cast<std::size_t>(p)];
        std::int32_t missing = 256;
        for (std::size_t tap = 0; tap < 4; ++tap) {
            row[tap] = static_cast<std::int32_t>((numerators[tap] + 32768) >> 17);
            missing -= row[tap];
        }
        (row[1] >= row[2] ? row[1] : row[2]) += missing;
    }
    return table;
}

inline constexpr std::array<TapRow, 256> scaler_weights = make_scaler_weights();
