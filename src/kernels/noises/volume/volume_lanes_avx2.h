// Eight float lanes on an AVX2 register. The counterpart of volume_lanes_base.h: the same names, the
// same operations, the same bits. For sources compiled for AVX2 only.
//
// Everything is in an unnamed namespace, so that each source that includes it has its own copy.
#pragma once

#include "kernels/noises/volume/volume_trig.h"

#include <immintrin.h>

namespace nezaiva {
namespace {

using Four = __m128;
constexpr bool kEightAreTwoRegisters = false;
using Eight = __m256; // its arithmetic operators are those of the compiler, lane by lane

inline Eight combine(Four low, Four high)
{
    return _mm256_set_m128(high, low);
}
inline Four lowHalf(Eight a)
{
    return _mm256_castps256_ps128(a);
}
inline Four highHalf(Eight a)
{
    return _mm256_extractf128_ps(a, 1);
}
inline Eight broadcast(float value)
{
    return _mm256_set1_ps(value);
}
inline Eight load(const float* eight)
{
    return _mm256_loadu_ps(eight);
}
inline Eight loadBits(const int* eight)
{
    return _mm256_castsi256_ps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(eight)));
}
inline Eight loadHalves(const float* low, const float* high)
{
    return _mm256_loadu2_m128(high, low);
}
inline Eight loadTwice(const float* four)
{
    return _mm256_broadcast_ps(reinterpret_cast<const __m128*>(four));
}

inline Four squareRoot(Four a)
{
    return _mm_sqrt_ps(a);
}
inline Eight squareRoot(Eight a)
{
    return _mm256_sqrt_ps(a);
}
inline Four bitAnd(Four a, Four b)
{
    return _mm_and_ps(a, b);
}
inline Eight bitAnd(Eight a, Eight b)
{
    return _mm256_and_ps(a, b);
}

inline Eight bitOr(Eight a, Eight b)
{
    return _mm256_or_ps(a, b);
}

inline Eight bitXor(Eight a, Eight b)
{
    return _mm256_xor_ps(a, b);
}
// The lowest bit of each lane in the place of its sign; the other bits are 0.
inline Eight lowestBitAsSign(Eight a)
{
    return _mm256_castsi256_ps(_mm256_slli_epi32(_mm256_castps_si256(a), 31));
}

// All bits of a lane where the comparison holds; none for a NaN.
inline Four less(Four a, Four b)
{
    return _mm_cmp_ps(a, b, _CMP_LT_OQ);
}
inline Eight less(Eight a, Eight b)
{
    return _mm256_cmp_ps(a, b, _CMP_LT_OQ);
}
inline Four lessEqual(Four a, Four b)
{
    return _mm_cmp_ps(a, b, _CMP_LE_OQ);
}
inline Eight lessEqual(Eight a, Eight b)
{
    return _mm256_cmp_ps(a, b, _CMP_LE_OQ);
}

inline Four choose(Four mask, Four a, Four b)
{
    return _mm_blendv_ps(b, a, mask);
}
inline Eight choose(Eight mask, Eight a, Eight b)
{
    return _mm256_blendv_ps(b, a, mask);
}

// The same lane of each half in all four of its lanes.
template <int Lane>
Four spread(Four a)
{
    return _mm_permute_ps(a, Lane * 0x55);
}
template <int Lane>
Eight spread(Eight a)
{
    return _mm256_permute_ps(a, Lane * 0x55);
}

// In each half lanes A and B of the first operand, then C and D of the second.
template <int A, int B, int C, int D>
Four shuffled(Four first, Four second)
{
    return _mm_shuffle_ps(first, second, _MM_SHUFFLE(D, C, B, A));
}
template <int A, int B, int C, int D>
Eight shuffled(Eight first, Eight second)
{
    return _mm256_shuffle_ps(first, second, _MM_SHUFFLE(D, C, B, A));
}

// In each half the lower two lanes of both operands in turn.
inline Eight lowerLanes(Eight first, Eight second)
{
    return _mm256_unpacklo_ps(first, second);
}

// How many halves are in each lane, as bits of integers, and how many wholes, for lanes of 0 or more.
struct Halves {
    Eight numbers, wholes;
};
inline Halves halvesOf(Eight a)
{
    const __m256i numbers = _mm256_cvttps_epi32(_mm256_add_ps(a, a));
    return {_mm256_castsi256_ps(numbers), _mm256_cvtepi32_ps(_mm256_srli_epi32(numbers, 1))};
}

// Truncation of lanes within the range of 32 bits.
inline Four truncated(Four a)
{
    return _mm_cvtepi32_ps(_mm_cvttps_epi32(a));
}
inline Eight truncated(Eight a)
{
    return _mm256_cvtepi32_ps(_mm256_cvttps_epi32(a));
}

// The second operand where the first is NaN.
inline Eight minimum(Eight a, Eight b)
{
    return _mm256_min_ps(a, b);
}
inline Eight maximum(Eight a, Eight b)
{
    return _mm256_max_ps(a, b);
}

// a - floor(a), 0 for what is not finite: the maximum of a NaN and 0 is its second operand.
inline Four unitFraction(Four a)
{
    return _mm_max_ps(_mm_sub_ps(a, _mm_floor_ps(a)), _mm_setzero_ps());
}
inline Eight unitFraction(Eight a)
{
    return _mm256_max_ps(_mm256_sub_ps(a, _mm256_floor_ps(a)), _mm256_setzero_ps());
}

// The same; NaN is allowed for what is not finite.
inline Eight fractionOrNan(Eight a)
{
    return _mm256_sub_ps(a, _mm256_floor_ps(a));
}

// Lane Axis of each of the three, for each half: (first, second, third, third).
template <int Axis>
Four gather(Four first, Four second, Four third)
{
    const Four two = _mm_shuffle_ps(first, second, Axis * 0x55); // (first, first, second, second)
    return _mm_shuffle_ps(two, third, _MM_SHUFFLE(Axis, Axis, 2, 0));
}
template <int Axis>
Eight gather(Eight first, Eight second, Eight third)
{
    const Eight two = _mm256_shuffle_ps(first, second, Axis * 0x55); // (first, first, second, second)
    return _mm256_shuffle_ps(two, third, _MM_SHUFFLE(Axis, Axis, 2, 0));
}

// The cells of two times four coordinates on a lattice of 32, as the offsets of their corners: the
// sum of each cell times its stride. The cell 32, to which the largest fractions round, is cell 0.
struct CornerOffsets {
    int low, high;
};
inline CornerOffsets cornerOffsets(Eight cells, int stride0, int stride1, int stride2)
{
    const __m256i wrapped = _mm256_and_si256(_mm256_cvttps_epi32(cells), _mm256_set1_epi32(31));
    const __m256i strides = _mm256_setr_epi32(stride0, stride1, stride2, 0, stride0, stride1, stride2, 0);
    const __m256i parts = _mm256_madd_epi16(wrapped, strides);
    const __m256i pairs = _mm256_add_epi32(parts, _mm256_shuffle_epi32(parts, 0xB1));
    const __m256i sums = _mm256_add_epi32(pairs, _mm256_shuffle_epi32(pairs, 0x4E));
    return {_mm_cvtsi128_si32(_mm256_castsi256_si128(sums)),
            _mm_cvtsi128_si32(_mm256_extracti128_si256(sums, 1))};
}

// 0.25 - |u| for the turns u of each angle less the phase, a part of a turn, and less whole turns; for
// |angle| <= kLargestPlainAngle.
inline Four quarterLessTurns(Four angles, double phase = 0.0)
{
    const __m256d turns = _mm256_sub_pd(
        _mm256_mul_pd(_mm256_cvtps_pd(angles), _mm256_set1_pd(kTurnsPerRadian)), _mm256_set1_pd(phase));
    const __m256d magic = _mm256_set1_pd(kRoundToWhole);
    const __m256d rest = _mm256_sub_pd(turns, _mm256_sub_pd(_mm256_add_pd(turns, magic), magic));
    return _mm256_cvtpd_ps(_mm256_sub_pd(_mm256_set1_pd(0.25), _mm256_andnot_pd(_mm256_set1_pd(-0.0), rest)));
}
inline Eight quarterLessTurns(Eight angles, double phase = 0.0)
{
    return combine(quarterLessTurns(lowHalf(angles), phase), quarterLessTurns(highHalf(angles), phase));
}

inline bool anyLane(Eight mask)
{
    return _mm256_movemask_ps(mask) != 0;
}

inline void store(float* eight, Eight a)
{
    _mm256_storeu_ps(eight, a);
}
inline void storeBits(int* eight, Eight a)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(eight), _mm256_castps_si256(a));
}

// Eight lanes from which others are picked by number.
using Picked = Eight;
inline Picked toPickFrom(Eight a)
{
    return a;
}
inline Eight pick(Picked from, const int* lanes)
{
    return _mm256_permutevar8x32_ps(from, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(lanes)));
}

// A lane for each of four octaves: here in both halves, so that lanes are picked within their half.
using Levels = Eight;
using PickedLevels = Eight;
inline Levels allLevels(const float& value)
{
    return _mm256_broadcast_ss(&value);
}
inline Levels levelsOf(float value)
{
    return _mm256_set1_ps(value);
}
inline Levels loadLevels(const float* fourTwice)
{
    return _mm256_loadu_ps(fourTwice);
}
inline Four oneHalf(Levels a)
{
    return lowHalf(a);
}

// The levels of the second operand where the bits of Mask are set, from the lowest on.
template <int Mask>
Levels mixedLevels(Levels a, Levels b)
{
    return _mm256_blend_ps(a, b, Mask * 0x11);
}

// Eight lanes by the numbers of their levels, which are 0 to 3.
inline Eight pickLevels(PickedLevels from, const int* levels)
{
    return _mm256_permutevar_ps(from, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(levels)));
}

} // namespace
} // namespace nezaiva
