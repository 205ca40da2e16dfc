// row_kernels.h: the inner loops of imaging, one row at a time.
//
// Every set gives the same bytes; they differ in the instructions they use. The portable one says
// what is computed. Pixels are four bytes R, G, B, A. Sizes are pixels. Pure, no lock, no
// allocation.
#pragma once

#include <cstddef>
#include <cstdint>

struct RowKernels {
    const char* name;

    // Bytes that plan_columns needs for one output column.
    std::size_t plan_bytes_per_column;

    // Turns the first source pixel and the phase of each output column into the form in which
    // scale_row wants them. Offsets do not fall. count is a multiple of row_granularity; plan is
    // aligned to 64 bytes.
    void (*plan_columns)(const std::uint32_t* offsets, const std::uint8_t* phases,
                         std::size_t count, std::uint8_t* plan);

    // Scales a source row horizontally: column i mixes the four pixels from offsets[i] on.
    // readable_slack pixels behind the last of them may be read, and mean nothing. The output is in
    // the set's own form and only for its mix_rows. count is a multiple of row_granularity.
    void (*scale_row)(const std::uint8_t* source, const std::uint32_t* offsets,
                      const std::uint8_t* plan, std::size_t count, std::uint8_t* output);

    // Mixes four scaled rows into one row of opaque pixels. count is a multiple of row_granularity.
    void (*mix_rows)(const std::uint8_t* const rows[4], std::uint32_t phase, std::size_t count,
                     std::uint8_t* output);

    // Blends source over destination by the source's alpha; the destination's alpha stays.
    void (*blend_row)(const std::uint8_t* source, std::uint8_t* destination, std::size_t count);

    // Writes pixels whose three channels are whole bytes of a little-endian 32-bit word: channel c
    // goes to bit shifts[c], the fourth byte becomes 0.
    void (*place_bytes)(const std::uint8_t* pixels, std::size_t count,
                        const std::uint32_t shifts[3], std::uint8_t* output);
};

// Rows for the scaler are made in multiples of this many pixels, so that no set needs a remainder
// loop there.
inline constexpr std::size_t row_granularity = 8;

// Pixels of memory that a source row for scale_row has behind its last tap.
inline constexpr std::size_t readable_slack = 8;

extern const RowKernels portable_row_kernels;
#ifdef ORX_VECTOR_CODE
extern const RowKernels sse2_row_kernels;
extern const RowKernels avx2_row_kernels;
#endif

// The fastest set that this processor can run.
[[nodiscard]] const RowKernels& best_row_kernels();
