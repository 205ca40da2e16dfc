// row_kernels_avx2.cpp: the inner loops with AVX2, eight pixels at a time.
//
// How the scaler's sum stays exact in 16-bit lanes. Channels are taken as q = p - 128, signed, so
// that four weights that sum to 256 give S - 32768, which saturates exactly where S is clamped and
// whose upper byte is the result, again less 128. Of the two centre weights the larger one is split
// into 144 and the rest:
//
//     base = 144 q_large                                  within 16 bits
//     rest = (large - 144) q_large + small q_small
//            - |outer0| q_0 - |outer3| q_3                within 16 bits
//
// and only the last addition, base + rest, saturates. Rows between the two passes keep q.
#include "gui/ORX/imaging/row_kernels.h"

#include "gui/ORX/imaging/scaler_weights.h"

#include <immintrin.h>

#include <cstring>

namespace {

constexpr std::int32_t base_weight = 144;

// base + rest, term by term, for the weights that there are.
constexpr bool sums_fit() {
    for (const TapRow& taps : scaler_weights) {
        const std::int32_t large = taps[1] >= taps[2] ? taps[1] : taps[2];
        const std::int32_t small = taps[1] >= taps[2] ? taps[2] : taps[1];
        const std::int32_t outer = -taps[0] - taps[3];
        if (large < base_weight || small < 0 || taps[0] > 0 || taps[3] > 0 ||
            (large - base_weight + small + outer) * 128 > 32767) {
            return false;
        }
    }
    return true;
}
static_assert(sums_fit());

__m256i load(const std::uint8_t* bytes) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}
void store(std::uint8_t* bytes, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), value);
}

// The weights of one vector of 16 channels, and the sum that they give.
struct WeightVectors {
    __m256i base;
    __m256i centre;
    __m256i outer;
};

__m256i weighted_sum(const WeightVectors& weights, __m256i centre_pairs, __m256i outer_pairs) {
    const __m256i base = _mm256_maddubs_epi16(weights.base, centre_pairs);
    const __m256i rest = _mm256_sub_epi16(_mm256_maddubs_epi16(weights.centre, centre_pairs),
                                          _mm256_maddubs_epi16(weights.outer, outer_pairs));
    return _mm256_srai_epi16(_mm256_adds_epi16(base, rest), 8);
}

// The plan of eight output pixels: how far their source pixels lie from the first one's, then two
// blocks of three weight vectors, for pixels 0, 1, 4, 5 and for pixels 2, 3, 6, 7, which is the
// order in which unpacking bytes puts them.
constexpr std::size_t vector_bytes = 32;
constexpr std::size_t block_bytes = 3 * vector_bytes;
constexpr std::size_t group_bytes = vector_bytes + 2 * block_bytes;

void plan_weights(const TapRow& taps, std::uint8_t* block, std::size_t place_in_vector) {
    const bool first_is_large = taps[1] >= taps[2];
    const std::int32_t base_1 = first_is_large ? base_weight : 0;
    const std::int32_t base_2 = first_is_large ? 0 : base_weight;
    const std::int32_t pairs[3][2] = {
        {base_1, base_2}, {taps[1] - base_1, taps[2] - base_2}, {-taps[0], -taps[3]}};
    for (const auto& pair : pairs) {
        for (std::size_t byte = 0; byte < 8; ++byte) {
            block[place_in_vector + byte] = static_cast<std::uint8_t>(pair[byte % 2]);
        }
        block += vector_bytes;
    }
}

void plan_columns(const std::uint32_t* offsets, const std::uint8_t* phases, std::size_t count,
                  std::uint8_t* plan) {
    constexpr std::size_t quarter_of_vector[8] = {0, 1, 0, 1, 2, 3, 2, 3};
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t in_group = i % 8;
        std::uint8_t* group = plan + i / 8 * group_bytes;
        const std::uint32_t step = offsets[i] - offsets[i - in_group];
        std::memcpy(group + in_group * 4, &step, 4);
        plan_weights(scaler_weights[phases[i]],
                     group + vector_bytes + (in_group / 2 % 2) * block_bytes,
                     quarter_of_vector[in_group] * 8);
    }
}

WeightVectors block_weights(const std::uint8_t* block) {
    return {load(block), load(block + vector_bytes), load(block + 2 * vector_bytes)};
}

// One tap of eight output pixels. Where the image is not made smaller, eight neighbours need no
// more than eight neighbouring source pixels, which one load brings.
__m256i load_tap(const std::uint8_t* pixels, __m256i steps, bool together) {
    const __m256i taps =
        together ? _mm256_permutevar8x32_epi32(load(pixels), steps)
                 : _mm256_i32gather_epi32(reinterpret_cast<const int*>(pixels), steps, 4);
    return _mm256_xor_si256(taps, _mm256_set1_epi8(static_cast<char>(0x80)));
}

void scale_row(const std::uint8_t* source, const std::uint32_t* offsets, const std::uint8_t* plan,
               std::size_t count, std::uint8_t* output) {
    for (std::size_t i = 0; i < count; i += 8) {
        const std::uint8_t* pixels = source + std::size_t{offsets[i]} * 4;
        const bool together = offsets[i + 7] - offsets[i] < 8;
        const __m256i steps = load(plan);
        const __m256i outer_0 = load_tap(pixels, steps, together);
        const __m256i centre_1 = load_tap(pixels + 4, steps, together);
        const __m256i centre_2 = load_tap(pixels + 8, steps, together);
        const __m256i outer_3 = load_tap(pixels + 12, steps, together);
        const __m256i low = weighted_sum(block_weights(plan + vector_bytes),
                                         _mm256_unpacklo_epi8(centre_1, centre_2),
                                         _mm256_unpacklo_epi8(outer_0, outer_3));
        const __m256i high = weighted_sum(block_weights(plan + vector_bytes + block_bytes),
                                          _mm256_unpackhi_epi8(centre_1, centre_2),
                                          _mm256_unpackhi_epi8(outer_0, outer_3));
        store(output + i * 4, _mm256_packs_epi16(low, high));
        plan += group_bytes;
    }
}

__m256i pair_of(std::int32_t first, std::int32_t second) {
    return _mm256_set1_epi16(static_cast<std::int16_t>(first | second << 8));
}

void mix_rows(const std::uint8_t* const rows[4], std::uint32_t phase, std::size_t count,
              std::uint8_t* output) {
    const TapRow& taps = scaler_weights[phase];
    const std::size_t large = taps[1] >= taps[2] ? 1 : 2;
    const std::size_t small = 3 - large;
    const WeightVectors weights = {pair_of(base_weight, 0),
                                   pair_of(taps[large] - base_weight, taps[small]),
                                   pair_of(-taps[0], -taps[3])};
    const __m256i signs = _mm256_set1_epi8(static_cast<char>(0x80));
    const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xFF000000U));
    for (std::size_t i = 0; i < count * 4; i += vector_bytes) {
        const __m256i centre_large = load(rows[large] + i);
        __m256i mixed = centre_large;
        if (phase != 0) { // phase 0 is the row itself, as every other row is at twice the size
            const __m256i centre_small = load(rows[small] + i);
            const __m256i outer_0 = load(rows[0] + i);
            const __m256i outer_3 = load(rows[3] + i);
            mixed = _mm256_packs_epi16(
                weighted_sum(weights, _mm256_unpacklo_epi8(centre_large, centre_small),
                             _mm256_unpacklo_epi8(outer_0, outer_3)),
                weighted_sum(weights, _mm256_unpackhi_epi8(centre_large, centre_small),
                             _mm256_unpackhi_epi8(outer_0, outer_3)));
        }
        store(output + i, _mm256_or_si256(_mm256_xor_si256(mixed, signs), opaque));
    }
}

// floor((c - d) * a / 256) for 16 channels: the upper byte of the product's low 16 bits, since only
// eight bits of the result are kept.
__m256i blend_step(__m256i source, __m256i destination, __m256i alpha) {
    return _mm256_srli_epi16(_mm256_mullo_epi16(_mm256_sub_epi16(source, destination), alpha), 8);
}

void blend_row(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i one = _mm256_set1_epi8(1);
    const __m256i alphas = _mm256_set1_epi32(static_cast<int>(0xFF000000U));
    // The alpha of each pixel beside its three colours, 0 beside alpha itself.
    const __m256i low_alphas = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(3, -1, 3, -1, 3, -1, -1, -1, 7, -1, 7, -1, 7, -1, -1, -1));
    const __m256i high_alphas = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(11, -1, 11, -1, 11, -1, -1, -1, 15, -1, 15, -1, 15, -1, -1, -1));
    const std::size_t vectors = count / 8;
    for (std::size_t i = 0; i < vectors; ++i) {
        const __m256i s = load(source + i * vector_bytes);
        if (_mm256_testz_si256(s, alphas) != 0) {
            continue;
        }
        const __m256i d = load(destination + i * vector_bytes);
        __m256i blended;
        if (_mm256_testc_si256(s, alphas) != 0) {
            // Alpha 255 gives c, or c - 1 where c is above d.
            const __m256i residue = _mm256_min_epu8(_mm256_subs_epu8(s, d), one);
            blended = _mm256_blendv_epi8(_mm256_sub_epi8(s, residue), d, alphas);
        } else {
            const __m256i low =
                blend_step(_mm256_unpacklo_epi8(s, zero), _mm256_unpacklo_epi8(d, zero),
                           _mm256_shuffle_epi8(s, low_alphas));
            const __m256i high =
                blend_step(_mm256_unpackhi_epi8(s, zero), _mm256_unpackhi_epi8(d, zero),
                           _mm256_shuffle_epi8(s, high_alphas));
            blended = _mm256_add_epi8(d, _mm256_packus_epi16(low, high));
        }
        store(destination + i * vector_bytes, blended);
    }
    portable_row_kernels.blend_row(source + vectors * vector_bytes,
                                   destination + vectors * vector_bytes, count % 8);
}

void place_bytes(const std::uint8_t* pixels, std::size_t count, const std::uint32_t shifts[3],
                 std::uint8_t* output) {
    alignas(16) std::uint8_t order[16];
    for (std::size_t i = 0; i < 16; ++i) {
        order[i] = 0x80; // a zero byte
    }
    for (std::size_t pixel = 0; pixel < 16; pixel += 4) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            order[pixel + shifts[channel] / 8] = static_cast<std::uint8_t>(pixel + channel);
        }
    }
    const __m256i shuffle =
        _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(order)));
    const std::size_t vectors = count / 8;
    for (std::size_t i = 0; i < vectors; ++i) {
        store(output + i * vector_bytes,
              _mm256_shuffle_epi8(load(pixels + i * vector_bytes), shuffle));
    }
    portable_row_kernels.place_bytes(pixels + vectors * vector_bytes, count % 8, shifts,
                                     output + vectors * vector_bytes);
}

} // namespace

const RowKernels avx2_row_kernels = {"AVX2",   group_bytes / 8, plan_columns, scale_row,
                                     mix_rows, blend_row,       place_bytes};
