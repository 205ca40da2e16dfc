// row_kernels_sse2.cpp: the inner loops with SSE2, which every x86-64 processor has, four pixels at
// a time.
//
// Sums of weighted channels are made in 32 bits, two products at a time; packing them down to bytes
// with saturation is the clamp. Rows between the two passes are plain pixels whose alpha means
// nothing.
#include "gui/ORX/imaging/row_kernels.h"

#include "gui/ORX/imaging/scaler_weights.h"

#include <emmintrin.h>

#include <cstring>

namespace {

__m128i load(const std::uint8_t* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}
void store(std::uint8_t* bytes, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), value);
}

constexpr std::size_t vector_bytes = 16;

// Four 16-bit weights for each column.
constexpr std::size_t taps_bytes = 8;

void plan_columns(const std::uint32_t*, const std::uint8_t* phases, std::size_t count,
                  std::uint8_t* plan) {
    for (std::size_t i = 0; i < count; ++i) {
        const TapRow& taps = scaler_weights[phases[i]];
        const std::int16_t weights[4] = {
            static_cast<std::int16_t>(taps[0]), static_cast<std::int16_t>(taps[1]),
            static_cast<std::int16_t>(taps[2]), static_cast<std::int16_t>(taps[3])};
        std::memcpy(plan + i * taps_bytes, weights, taps_bytes);
    }
}

// One output pixel as four 32-bit channels, not yet clamped.
__m128i scale_pixel(const std::uint8_t* taps, const std::uint8_t* weights) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i pixels = load(taps);
    const __m128i first = _mm_unpacklo_epi8(pixels, zero);
    const __m128i second = _mm_unpackhi_epi8(pixels, zero);
    const __m128i pairs_01 = _mm_unpacklo_epi16(first, _mm_srli_si128(first, 8));
    const __m128i pairs_23 = _mm_unpacklo_epi16(second, _mm_srli_si128(second, 8));
    const __m128i w = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(weights));
    const __m128i sum = _mm_add_epi32(_mm_madd_epi16(pairs_01, _mm_shuffle_epi32(w, 0x00)),
                                      _mm_madd_epi16(pairs_23, _mm_shuffle_epi32(w, 0x55)));
    return _mm_srai_epi32(sum, 8);
}

void scale_row(const std::uint8_t* source, const std::uint32_t* offsets, const std::uint8_t* plan,
               std::size_t count, std::uint8_t* output) {
    for (std::size_t i = 0; i < count; i += 4) {
        __m128i pixels[4];
        for (std::size_t pixel = 0; pixel < 4; ++pixel) {
            pixels[pixel] = scale_pixel(source + std::size_t{offsets[i + pixel]} * 4,
                                        plan + (i + pixel) * taps_bytes);
        }
        store(output + i * 4, _mm_packus_epi16(_mm_packs_epi32(pixels[0], pixels[1]),
                                               _mm_packs_epi32(pixels[2], pixels[3])));
    }
}

// Eight channels of four rows, as 16-bit lanes, to eight clamped sums.
__m128i mix_channels(__m128i row_0, __m128i row_1, __m128i row_2, __m128i row_3, __m128i weights_01,
                     __m128i weights_23) {
    const __m128i low = _mm_add_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(row_0, row_1), weights_01),
                                      _mm_madd_epi16(_mm_unpacklo_epi16(row_2, row_3), weights_23));
    const __m128i high =
        _mm_add_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(row_0, row_1), weights_01),
                      _mm_madd_epi16(_mm_unpackhi_epi16(row_2, row_3), weights_23));
    return _mm_packs_epi32(_mm_srai_epi32(low, 8), _mm_srai_epi32(high, 8));
}

__m128i pair_of(std::int32_t first, std::int32_t second) {
    const auto low = static_cast<std::int16_t>(first);
    const auto high = static_cast<std::int16_t>(second);
    return _mm_setr_epi16(low, high, low, high, low, high, low, high);
}

void mix_rows(const std::uint8_t* const rows[4], std::uint32_t phase, std::size_t count,
              std::uint8_t* output) {
    const TapRow& taps = scaler_weights[phase];
    const __m128i weights_01 = pair_of(taps[0], taps[1]);
    const __m128i weights_23 = pair_of(taps[2], taps[3]);
    const __m128i zero = _mm_setzero_si128();
    const __m128i opaque = _mm_set1_epi32(static_cast<int>(0xFF000000U));
    for (std::size_t i = 0; i < count * 4; i += vector_bytes) {
        __m128i mixed = load(rows[1] + i);
        if (phase != 0) { // phase 0 is the row itself, as every other row is at twice the size
            const __m128i row_0 = load(rows[0] + i);
            const __m128i row_1 = mixed;
            const __m128i row_2 = load(rows[2] + i);
            const __m128i row_3 = load(rows[3] + i);
            const __m128i low =
                mix_channels(_mm_unpacklo_epi8(row_0, zero), _mm_unpacklo_epi8(row_1, zero),
                             _mm_unpacklo_epi8(row_2, zero), _mm_unpacklo_epi8(row_3, zero),
                             weights_01, weights_23);
            const __m128i high =
                mix_channels(_mm_unpackhi_epi8(row_0, zero), _mm_unpackhi_epi8(row_1, zero),
                             _mm_unpackhi_epi8(row_2, zero), _mm_unpackhi_epi8(row_3, zero),
                             weights_01, weights_23);
            mixed = _mm_packus_epi16(low, high);
        }
        store(output + i, _mm_or_si128(mixed, opaque));
    }
}

// floor((c - d) * a / 256) for eight channels: the upper byte of the product's low 16 bits, since
// only eight bits of the result are kept. Alpha itself stays.
__m128i blend_step(__m128i source, __m128i destination) {
    const __m128i colours = _mm_setr_epi16(-1, -1, -1, 0, -1, -1, -1, 0);
    const __m128i alpha = _mm_shufflehi_epi16(_mm_shufflelo_epi16(source, 0xFF), 0xFF);
    const __m128i product = _mm_mullo_epi16(_mm_sub_epi16(source, destination), alpha);
    return _mm_srli_epi16(_mm_and_si128(product, colours), 8);
}

void blend_row(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i one = _mm_set1_epi8(1);
    const __m128i alphas = _mm_set1_epi32(static_cast<int>(0xFF000000U));
    const std::size_t vectors = count / 4;
    for (std::size_t i = 0; i < vectors; ++i) {
        const __m128i s = load(source + i * vector_bytes);
        const __m128i alpha = _mm_and_si128(s, alphas);
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(alpha, zero)) == 0xFFFF) {
            continue;
        }
        const __m128i d = load(destination + i * vector_bytes);
        __m128i blended;
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(alpha, alphas)) == 0xFFFF) {
            // Alpha 255 gives c, or c - 1 where c is above d.
            const __m128i residue = _mm_min_epu8(_mm_subs_epu8(s, d), one);
            blended = _mm_or_si128(_mm_andnot_si128(alphas, _mm_sub_epi8(s, residue)),
                                   _mm_and_si128(alphas, d));
        } else {
            const __m128i low = blend_step(_mm_unpacklo_epi8(s, zero), _mm_unpacklo_epi8(d, zero));
            const __m128i high = blend_step(_mm_unpackhi_epi8(s, zero), _mm_unpackhi_epi8(d, zero));
            blended = _mm_add_epi8(d, _mm_packus_epi16(low, high));
        }
        store(destination + i * vector_bytes, blended);
    }
    portable_row_kernels.blend_row(source + vectors * vector_bytes,
                                   destination + vectors * vector_bytes, count % 4);
}

// One channel of four pixels at its place in the surface's word.
__m128i place(__m128i pixels, int channel, std::uint32_t shift) {
    const __m128i values =
        _mm_and_si128(_mm_srl_epi32(pixels, _mm_cvtsi32_si128(channel * 8)), _mm_set1_epi32(0xFF));
    return _mm_sll_epi32(values, _mm_cvtsi32_si128(static_cast<int>(shift)));
}

void place_bytes(const std::uint8_t* pixels, std::size_t count, const std::uint32_t shifts[3],
                 std::uint8_t* output) {
    const std::uint32_t red = shifts[0];
    const std::uint32_t green = shifts[1];
    const std::uint32_t blue = shifts[2];
    const std::size_t vectors = count / 4;
    for (std::size_t i = 0; i < vectors; ++i) {
        const __m128i words = load(pixels + i * vector_bytes);
        store(output + i * vector_bytes,
              _mm_or_si128(place(words, 0, red),
                           _mm_or_si128(place(words, 1, green), place(words, 2, blue))));
    }
    portable_row_kernels.place_bytes(pixels + vectors * vector_bytes, count % 4, shifts,
                                     output + vectors * vector_bytes);
}

} // namespace

const RowKernels sse2_row_kernels = {"SSE2",   taps_bytes, plan_columns, scale_row,
                                     mix_rows, blend_row,  place_bytes};
