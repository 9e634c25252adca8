// Gradient noise with AVX2: the three axes are placed together, and the four corners at either end of
// x share a register. Operation for operation the arithmetic of perlin_noise.cpp.
//
// Compiled for another instruction set, so it includes nothing that emits a shared inline function.

#include "perlin_noise_avx2.h"

#include "perlin_tables.h"

#include <immintrin.h>

namespace OUtils {

namespace {

constexpr unsigned kWrap = kPerlinTableSize - 1;

__m256d mix(__m256d a, __m256d b, __m256d s)
{
    return _mm256_add_pd(a, _mm256_mul_pd(s, _mm256_sub_pd(b, a)));
}

__m128d mix(__m128d a, __m128d b, __m128d s)
{
    return _mm_add_pd(a, _mm_mul_pd(s, _mm_sub_pd(b, a)));
}

// The values of the four corners whose gradients begin at the rows, in this order of lanes.
__m256d corners(const double* const (&rows)[4], int offset, __m256d dx, __m256d dy, __m256d dz)
{
    // (x, y) of two rows in one register, so that one unpacking sorts four rows by component.
    const __m256d a = _mm256_loadu2_m128d(rows[2] + offset, rows[0] + offset);
    const __m256d b = _mm256_loadu2_m128d(rows[3] + offset, rows[1] + offset);
    const __m256d za = _mm256_loadu2_m128d(rows[2] + offset + 2, rows[0] + offset + 2);
    const __m256d zb = _mm256_loadu2_m128d(rows[3] + offset + 2, rows[1] + offset + 2);
    const __m256d xy = _mm256_add_pd(_mm256_mul_pd(_mm256_unpacklo_pd(a, b), dx),
                                     _mm256_mul_pd(_mm256_unpackhi_pd(a, b), dy));
    return _mm256_add_pd(xy, _mm256_mul_pd(_mm256_unpacklo_pd(za, zb), dz));
}

} // namespace

double gradientNoise3Avx2(float x, float y, float z)
{
    // The places of the three axes. What is not finite counts as 0; a cell index saturates.
    const __m128 point = _mm_setr_ps(x, y, z, 0.0f);
    const __m128 magnitude = _mm_andnot_ps(_mm_set1_ps(-0.0f), point);
    const __m128 finite = _mm_and_ps(point, _mm_cmple_ps(magnitude, _mm_set1_ps(3.40282347e+38f)));
    const __m256d value = _mm256_cvtps_pd(finite);
    const __m256d below = _mm256_cmp_pd(value, _mm256_setzero_pd(), _CMP_LT_OQ);
    const __m256d shifted = _mm256_add_pd(_mm256_sub_pd(value, _mm256_set1_pd(1.0)), _mm256_set1_pd(1e-9));
    const __m256d floored = _mm256_blendv_pd(value, shifted, below);
    const __m256d bounded =
        _mm256_max_pd(_mm256_min_pd(floored, _mm256_set1_pd(2147483647.0)), _mm256_set1_pd(-2147483648.0));
    const __m128i cells = _mm256_cvttpd_epi32(bounded);
    const __m256d whole = _mm256_cvtepi32_pd(cells);
    const __m256d near = _mm256_sub_pd(value, whole);
    const __m256d far = _mm256_sub_pd(value, _mm256_add_pd(whole, _mm256_set1_pd(1.0)));
    const __m256d slope = _mm256_sub_pd(_mm256_mul_pd(_mm256_set1_pd(6.0), near), _mm256_set1_pd(15.0));
    const __m256d bend = _mm256_add_pd(_mm256_mul_pd(slope, near), _mm256_set1_pd(10.0));
    const __m256d fade = _mm256_mul_pd(_mm256_mul_pd(_mm256_mul_pd(near, near), near), bend);

    // The corners of the cell, in the order (y, z), (y, z + 1), (y + 1, z), (y + 1, z + 1).
    const auto cellX = static_cast<unsigned>(_mm_cvtsi128_si32(cells));
    const auto cellY = static_cast<unsigned>(_mm_extract_epi32(cells, 1));
    const auto cellZ = static_cast<unsigned>(_mm_extract_epi32(cells, 2));
    const auto* permutation = perlinTables.permutation;
    const unsigned front = permutation[cellZ & kWrap];
    const unsigned back = permutation[(cellZ + 1) & kWrap];
    const auto row = [&](unsigned y0, unsigned permuted) {
        return perlinTables.gradients[(cellX + permutation[(y0 + permuted) & kWrap]) & kWrap];
    };
    const double* const rows[4] = {row(cellY, front), row(cellY, back), row(cellY + 1, front),
                                   row(cellY + 1, back)};

    const __m256d yEnds = _mm256_permute4x64_pd(_mm256_unpackhi_pd(near, far), 0x50);
    const __m256d zPair = _mm256_unpacklo_pd(near, far);
    const __m256d zEnds = _mm256_permute4x64_pd(zPair, 0xEE);
    const __m256d nearX = _mm256_broadcastsd_pd(_mm256_castpd256_pd128(near));
    const __m256d farX = _mm256_broadcastsd_pd(_mm256_castpd256_pd128(far));
    const __m256d fadeX = _mm256_broadcastsd_pd(_mm256_castpd256_pd128(fade));
    constexpr int kNextX = 4; // the row of the corner one cell further along x
    const __m256d alongX =
        mix(corners(rows, 0, nearX, yEnds, zEnds), corners(rows, kNextX, farX, yEnds, zEnds), fadeX);
    const __m128d fadeY = _mm_permute_pd(_mm256_castpd256_pd128(fade), 3);
    const __m128d alongY = mix(_mm256_castpd256_pd128(alongX), _mm256_extractf128_pd(alongX, 1), fadeY);
    const __m128d fadeZ = _mm256_extractf128_pd(fade, 1);
    return _mm_cvtsd_f64(mix(alongY, _mm_unpackhi_pd(alongY, alongY), fadeZ));
}

} // namespace OUtils
