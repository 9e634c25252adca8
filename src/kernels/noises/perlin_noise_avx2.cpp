// Gradient noise with AVX2: a register holds the three components of one corner, so that a gradient is
// one load. Operation for operation the arithmetic of perlin_noise.cpp.
//
// Compiled for another instruction set, so it includes nothing that emits a shared inline function.

#include "kernels/noises/perlin_noise_kernels.h"

#include "kernels/noises/perlin_tables.h"

#include <immintrin.h>

namespace OUtils {

namespace {

constexpr unsigned kWrap = kPerlinTableSize - 1;

// Up to here a cell is the floor of the float, but for the exception below. What is larger, or not a
// number, is left to the baseline.
constexpr float kLargestFast = 4194304.0f; // 2^22

// The bits of -1e-9. Negative floats nearer to 0 stay in cell 0; as integers they are the smallest.
constexpr int kNearlyZero = static_cast<int>(0xb089705fu);

template <int Lane>
__m256d everyLane(__m256d v)
{
    return _mm256_permute4x64_pd(v, Lane * 0x55);
}

// The weights of the four corners of a side, which are those along x and y.
struct CornerWeights {
    __m256d nearNear, farNear, nearFar, farFar; // x, then y
};

// What a corner's gradient is multiplied with: its distances, by component, times its weight. The
// bits of FarAxes name the axes on which the corner is the far one.
template <int FarAxes>
__m256d share(__m256d near, __m256d far, __m256d weight)
{
    return _mm256_mul_pd(_mm256_blend_pd(near, far, FarAxes), weight);
}

// The sum of the four corners at one z, by component. The rows are those of the near corners in x.
template <int FarZ>
__m256d sideOf(const double* nearY, const double* farY, __m256d near, __m256d far, const CornerWeights& w)
{
    constexpr int kNextX = 4; // the row of the corner one cell further along x
    const __m256d low =
        _mm256_add_pd(_mm256_mul_pd(_mm256_load_pd(nearY), share<FarZ>(near, far, w.nearNear)),
                      _mm256_mul_pd(_mm256_load_pd(nearY + kNextX), share<FarZ | 1>(near, far, w.farNear)));
    const __m256d high =
        _mm256_add_pd(_mm256_mul_pd(_mm256_load_pd(farY), share<FarZ | 2>(near, far, w.nearFar)),
                      _mm256_mul_pd(_mm256_load_pd(farY + kNextX), share<FarZ | 3>(near, far, w.farFar)));
    return _mm256_add_pd(low, high);
}

} // namespace

double gradientNoise3Avx2(__m128 point)
{
    const __m128 magnitude = _mm_andnot_ps(_mm_set1_ps(-0.0f), point);
    if (_mm_movemask_ps(_mm_cmplt_ps(magnitude, _mm_set1_ps(kLargestFast))) != 0xF)
        return gradientNoise3Baseline(point);

    const __m128 stays =
        _mm_castsi128_ps(_mm_cmplt_epi32(_mm_castps_si128(point), _mm_set1_epi32(kNearlyZero)));
    const __m128 floor = _mm_andnot_ps(stays, _mm_floor_ps(point));
    const __m128i cells = _mm_cvttps_epi32(floor);
    const __m256d value = _mm256_cvtps_pd(point);
    const __m256d whole = _mm256_cvtps_pd(floor);
    const __m256d one = _mm256_set1_pd(1.0);
    const __m256d f = _mm256_sub_pd(value, whole);
    const __m256d far = _mm256_sub_pd(value, _mm256_add_pd(whole, one));
    const __m256d slope = _mm256_sub_pd(_mm256_mul_pd(_mm256_set1_pd(6.0), f), _mm256_set1_pd(15.0));
    const __m256d bend = _mm256_add_pd(_mm256_mul_pd(slope, f), _mm256_set1_pd(10.0));
    const __m256d fade = _mm256_mul_pd(_mm256_mul_pd(_mm256_mul_pd(f, f), f), bend);
    const __m256d rest = _mm256_sub_pd(one, fade);

    // The low byte of a cell is its wrapped index.
    const auto cellX = static_cast<unsigned>(_mm_extract_epi8(cells, 0));
    const std::uint8_t* const permutedY = perlinTables.permutation + _mm_extract_epi8(cells, 4);
    const std::uint8_t* const permutedZ = perlinTables.permutation + _mm_extract_epi8(cells, 8);
    const auto row = [cellX](unsigned permuted) {
        return perlinTables.gradients[(cellX + permuted) & kWrap];
    };
    const std::uint8_t* const front = permutedY + permutedZ[0];
    const std::uint8_t* const back = permutedY + permutedZ[1];

    const __m256d nearX = everyLane<0>(rest);
    const __m256d farX = everyLane<0>(fade);
    const __m256d nearY = everyLane<1>(rest);
    const __m256d farY = everyLane<1>(fade);
    const CornerWeights w{_mm256_mul_pd(nearX, nearY), _mm256_mul_pd(farX, nearY), _mm256_mul_pd(nearX, farY),
                          _mm256_mul_pd(farX, farY)};
    const __m256d frontSide = sideOf<0>(row(front[0]), row(front[1]), f, far, w);
    const __m256d backSide = sideOf<4>(row(back[0]), row(back[1]), f, far, w);
    const __m256d sides = _mm256_add_pd(_mm256_mul_pd(frontSide, everyLane<2>(rest)),
                                        _mm256_mul_pd(backSide, everyLane<2>(fade)));
    const __m128d xy = _mm256_castpd256_pd128(sides);
    const __m128d sum = _mm_add_sd(xy, _mm_unpackhi_pd(xy, xy));
    return _mm_cvtsd_f64(_mm_add_sd(sum, _mm256_extractf128_pd(sides, 1)));
}

} // namespace OUtils
