// The places of double coordinates on the lattice, for the kernels of every instruction set.
//
// Adding kRoundToGrid rounds a coordinate to 2^-22 and lays it out in the bits of the sum: whole units,
// the five bits of the cell, 17 bits within the cell. That is much faster than floor, and no table can be
// read before the cell is known. A coordinate just below a border may thus count to the cell behind
// it, with a fraction below 0 by 2^-18 at most. The parabolas of both cells touch at the border, so that
// the noise differs by less than 1e-10; it would not do for the steps of time.
//
// Everything is in an unnamed namespace, so that each source that includes it has its own copy.
#pragma once

#include "kernels/noises/random_tables.h"

#include <emmintrin.h>

#include <cstdint>

namespace nezaiva {
namespace {

constexpr double kRoundToGrid = 1610612736.0; // 1.5 * 2^30
constexpr double kLargestOnGrid = 67108864.0; // 2^26; what is larger or not a number is placed otherwise
constexpr int kBitsWithinCell = 17;
constexpr long long kBitsOfUnits = -(1LL << (kBitsWithinCell + 5));

inline bool areOnGrid(__m128d d)
{
    const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), d);
    return _mm_movemask_pd(_mm_cmplt_pd(magnitude, _mm_set1_pd(kLargestOnGrid))) == 3;
}

inline __m128d onGrid(__m128d d)
{
    return _mm_add_pd(d, _mm_set1_pd(kRoundToGrid));
}

inline std::uint64_t cellOf(double d)
{
    const __m128i sum = _mm_castpd_si128(_mm_set_sd(d + kRoundToGrid));
    const auto bits = static_cast<std::uint64_t>(_mm_cvtsi128_si64(sum));
    return bits >> kBitsWithinCell & (kLatticeCells - 1);
}

// The cells of two pairs of coordinates, from their sums.
inline __m128i cellsOf(__m128d low, __m128d high)
{
    constexpr int kLowWords = _MM_SHUFFLE(2, 0, 2, 0);
    const __m128 words = _mm_shuffle_ps(_mm_castpd_ps(low), _mm_castpd_ps(high), kLowWords);
    constexpr int kBitsAboveCell = 32 - 5 - kBitsWithinCell;
    return _mm_srli_epi32(_mm_slli_epi32(_mm_castps_si128(words), kBitsAboveCell), 32 - 5);
}

// How far two coordinates lie behind their whole units, in the first two lanes.
inline __m128 behindUnits(__m128d d, __m128d sum)
{
    const __m128i bits = _mm_and_si128(_mm_castpd_si128(sum), _mm_set1_epi64x(kBitsOfUnits));
    const __m128d units = _mm_sub_pd(_mm_castsi128_pd(bits), _mm_set1_pd(kRoundToGrid));
    return _mm_cvtpd_ps(_mm_sub_pd(d, units));
}

} // namespace
} // namespace nezaiva
