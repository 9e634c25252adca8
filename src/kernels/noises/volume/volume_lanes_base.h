// Eight float lanes on two SSE2 registers, which every x86-64 processor has. The counterpart of
// volume_lanes_avx2.h: the same names, the same operations, the same bits. The bodies of the volume
// kernels are written once, on these names.
//
// Everything is in an unnamed namespace, so that each source that includes it has its own copy.
#pragma once

#include "kernels/noises/volume/volume_trig.h"

#include <emmintrin.h>

namespace nezaiva {
namespace {

using Four = __m128;
constexpr bool kEightAreTwoRegisters = true;
struct Eight {
    __m128 low, high;
};

inline Eight combine(Four low, Four high)
{
    return {low, high};
}
inline Four lowHalf(Eight a)
{
    return a.low;
}
inline Four highHalf(Eight a)
{
    return a.high;
}
inline Eight broadcast(float value)
{
    return {_mm_set1_ps(value), _mm_set1_ps(value)};
}
inline Eight load(const float* eight)
{
    return {_mm_loadu_ps(eight), _mm_loadu_ps(eight + 4)};
}
inline Eight loadBits(const int* eight)
{
    return {_mm_castsi128_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(eight))),
            _mm_castsi128_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(eight + 4)))};
}
inline Eight loadHalves(const float* low, const float* high)
{
    return {_mm_loadu_ps(low), _mm_loadu_ps(high)};
}
inline Eight loadTwice(const float* four)
{
    return {_mm_loadu_ps(four), _mm_loadu_ps(four)};
}

inline Eight operator+(Eight a, Eight b)
{
    return {_mm_add_ps(a.low, b.low), _mm_add_ps(a.high, b.high)};
}
inline Eight operator-(Eight a, Eight b)
{
    return {_mm_sub_ps(a.low, b.low), _mm_sub_ps(a.high, b.high)};
}
inline Eight operator*(Eight a, Eight b)
{
    return {_mm_mul_ps(a.low, b.low), _mm_mul_ps(a.high, b.high)};
}
inline Eight operator/(Eight a, Eight b)
{
    return {_mm_div_ps(a.low, b.low), _mm_div_ps(a.high, b.high)};
}

inline Four squareRoot(Four a)
{
    return _mm_sqrt_ps(a);
}
inline Eight squareRoot(Eight a)
{
    return {_mm_sqrt_ps(a.low), _mm_sqrt_ps(a.high)};
}
inline Four bitAnd(Four a, Four b)
{
    return _mm_and_ps(a, b);
}
inline Eight bitAnd(Eight a, Eight b)
{
    return {_mm_and_ps(a.low, b.low), _mm_and_ps(a.high, b.high)};
}

inline Eight bitOr(Eight a, Eight b)
{
    return {_mm_or_ps(a.low, b.low), _mm_or_ps(a.high, b.high)};
}

inline Eight bitXor(Eight a, Eight b)
{
    return {_mm_xor_ps(a.low, b.low), _mm_xor_ps(a.high, b.high)};
}
// The lowest bit of each lane in the place of its sign; the other bits are 0.
inline Four lowestBitAsSign(Four a)
{
    return _mm_castsi128_ps(_mm_slli_epi32(_mm_castps_si128(a), 31));
}
inline Eight lowestBitAsSign(Eight a)
{
    return {lowestBitAsSign(a.low), lowestBitAsSign(a.high)};
}

// All bits of a lane where the comparison holds; none for a NaN.
inline Four less(Four a, Four b)
{
    return _mm_cmplt_ps(a, b);
}
inline Eight less(Eight a, Eight b)
{
    return {_mm_cmplt_ps(a.low, b.low), _mm_cmplt_ps(a.high, b.high)};
}
inline Four lessEqual(Four a, Four b)
{
    return _mm_cmple_ps(a, b);
}
inline Eight lessEqual(Eight a, Eight b)
{
    return {_mm_cmple_ps(a.low, b.low), _mm_cmple_ps(a.high, b.high)};
}

inline Four choose(Four mask, Four a, Four b)
{
    return _mm_or_ps(_mm_and_ps(mask, a), _mm_andnot_ps(mask, b));
}
inline Eight choose(Eight mask, Eight a, Eight b)
{
    return {choose(mask.low, a.low, b.low), choose(mask.high, a.high, b.high)};
}

// The same lane of each half in all four of its lanes.
template <int Lane>
Four spread(Four a)
{
    return _mm_shuffle_ps(a, a, Lane * 0x55);
}
template <int Lane>
Eight spread(Eight a)
{
    return {spread<Lane>(a.low), spread<Lane>(a.high)};
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
    return {shuffled<A, B, C, D>(first.low, second.low), shuffled<A, B, C, D>(first.high, second.high)};
}

// In each half the lower two lanes of both operands in turn.
inline Eight lowerLanes(Eight first, Eight second)
{
    return {_mm_unpacklo_ps(first.low, second.low), _mm_unpacklo_ps(first.high, second.high)};
}

// How many halves are in each lane, as bits of integers, and how many wholes, for lanes of 0 or more.
struct Halves {
    Eight numbers, wholes;
};
inline Halves halvesOf(Eight a)
{
    const __m128i low = _mm_cvttps_epi32(_mm_add_ps(a.low, a.low));
    const __m128i high = _mm_cvttps_epi32(_mm_add_ps(a.high, a.high));
    return {{_mm_castsi128_ps(low), _mm_castsi128_ps(high)},
            {_mm_cvtepi32_ps(_mm_srli_epi32(low, 1)), _mm_cvtepi32_ps(_mm_srli_epi32(high, 1))}};
}

// Truncation of lanes within the range of 32 bits.
inline Four truncated(Four a)
{
    return _mm_cvtepi32_ps(_mm_cvttps_epi32(a));
}
inline Eight truncated(Eight a)
{
    return {truncated(a.low), truncated(a.high)};
}

// The second operand where the first is NaN.
inline Eight minimum(Eight a, Eight b)
{
    return {_mm_min_ps(a.low, b.low), _mm_min_ps(a.high, b.high)};
}
inline Eight maximum(Eight a, Eight b)
{
    return {_mm_max_ps(a.low, b.low), _mm_max_ps(a.high, b.high)};
}

// a - floor(a), 0 for what is not finite. From 2^23 on a float is whole.
inline Four unitFraction(Four a)
{
    const Four small = _mm_cmplt_ps(_mm_andnot_ps(_mm_set1_ps(-0.0f), a), _mm_set1_ps(8388608.0f));
    const Four bounded = _mm_and_ps(a, small);
    const Four whole = truncated(bounded);
    const Four below = _mm_and_ps(_mm_cmpgt_ps(whole, bounded), _mm_set1_ps(1.0f));
    return _mm_max_ps(_mm_sub_ps(bounded, _mm_sub_ps(whole, below)), _mm_setzero_ps());
}
inline Eight unitFraction(Eight a)
{
    return {unitFraction(a.low), unitFraction(a.high)};
}

// The same; NaN is allowed for what is not finite.
inline Eight fractionOrNan(Eight a)
{
    return unitFraction(a);
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
    return {gather<Axis>(first.low, second.low, third.low),
            gather<Axis>(first.high, second.high, third.high)};
}

// The cells of four coordinates on a lattice of 32, as the offset of their corner: the sum of each
// cell times its stride. The cell 32, to which the largest fractions round, is cell 0.
inline int cornerOffset(Four cells, int stride0, int stride1, int stride2)
{
    const __m128i wrapped = _mm_and_si128(_mm_cvttps_epi32(cells), _mm_set1_epi32(31));
    const __m128i parts = _mm_madd_epi16(wrapped, _mm_setr_epi32(stride0, stride1, stride2, 0));
    const __m128i pairs = _mm_add_epi32(parts, _mm_shuffle_epi32(parts, 0xB1));
    return _mm_cvtsi128_si32(_mm_add_epi32(pairs, _mm_shuffle_epi32(pairs, 0x4E)));
}
struct CornerOffsets {
    int low, high;
};
inline CornerOffsets cornerOffsets(Eight cells, int stride0, int stride1, int stride2)
{
    return {cornerOffset(cells.low, stride0, stride1, stride2),
            cornerOffset(cells.high, stride0, stride1, stride2)};
}

// 0.25 - |u| for the turns u of each angle less the phase, a part of a turn, and less whole turns; for
// |angle| <= kLargestPlainAngle.
inline __m128d quarterLessTurns(__m128d angles, double phase)
{
    const __m128d turns = _mm_sub_pd(_mm_mul_pd(angles, _mm_set1_pd(kTurnsPerRadian)), _mm_set1_pd(phase));
    const __m128d magic = _mm_set1_pd(kRoundToWhole);
    const __m128d rest = _mm_sub_pd(turns, _mm_sub_pd(_mm_add_pd(turns, magic), magic));
    return _mm_sub_pd(_mm_set1_pd(0.25), _mm_andnot_pd(_mm_set1_pd(-0.0), rest));
}
inline Four quarterLessTurns(Four angles, double phase = 0.0)
{
    const __m128 low = _mm_cvtpd_ps(quarterLessTurns(_mm_cvtps_pd(angles), phase));
    const __m128 high = _mm_cvtpd_ps(quarterLessTurns(_mm_cvtps_pd(_mm_movehl_ps(angles, angles)), phase));
    return _mm_movelh_ps(low, high);
}
inline Eight quarterLessTurns(Eight angles, double phase = 0.0)
{
    return {quarterLessTurns(angles.low, phase), quarterLessTurns(angles.high, phase)};
}

inline bool anyLane(Eight mask)
{
    return (_mm_movemask_ps(mask.low) | _mm_movemask_ps(mask.high)) != 0;
}

inline void store(float* eight, Eight a)
{
    _mm_storeu_ps(eight, a.low);
    _mm_storeu_ps(eight + 4, a.high);
}
inline void storeBits(int* eight, Eight a)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(eight), _mm_castps_si128(a.low));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(eight + 4), _mm_castps_si128(a.high));
}

// Eight lanes from which others are picked by number.
struct Picked {
    alignas(16) float lanes[8];
};
inline Picked toPickFrom(Eight a)
{
    Picked from;
    store(from.lanes, a);
    return from;
}
inline Eight pick(const Picked& from, const int* lanes)
{
    const float* f = from.lanes;
    return {_mm_setr_ps(f[lanes[0]], f[lanes[1]], f[lanes[2]], f[lanes[3]]),
            _mm_setr_ps(f[lanes[4]], f[lanes[5]], f[lanes[6]], f[lanes[7]])};
}

// A lane for each of four octaves.
using Levels = Four;
using PickedLevels = Picked;
inline PickedLevels toPickFrom(Levels a)
{
    Picked from;
    _mm_store_ps(from.lanes, a);
    return from;
}
inline Levels allLevels(const float& value)
{
    return _mm_load1_ps(&value);
}
inline Levels levelsOf(float value)
{
    return _mm_set1_ps(value);
}
inline Levels loadLevels(const float* fourTwice)
{
    return _mm_loadu_ps(fourTwice);
}
inline Four oneHalf(Levels a)
{
    return a;
}

// The levels of the second operand where the bits of Mask are set, from the lowest on.
template <int Mask>
Levels mixedLevels(Levels a, Levels b)
{
    const Four second =
        _mm_castsi128_ps(_mm_setr_epi32(-(Mask & 1), -(Mask >> 1 & 1), -(Mask >> 2 & 1), -(Mask >> 3 & 1)));
    return choose(second, b, a);
}

// Eight lanes by the numbers of their levels, which are 0 to 3.
inline Eight pickLevels(const PickedLevels& from, const int* levels)
{
    return pick(from, levels);
}

} // namespace
} // namespace nezaiva
