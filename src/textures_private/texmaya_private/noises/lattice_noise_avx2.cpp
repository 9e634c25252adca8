// The lattice noises with AVX2: the four coordinates are placed together, and two rows of the spline
// share a register. Operation for operation the arithmetic of lattice_noise.cpp.
//
// Compiled for another instruction set, so it includes nothing that emits a shared inline function.

#include "lattice_noise_avx2.h"

#include <immintrin.h>

namespace nezaiva {

namespace {

constexpr int kRow = kLatticeRowStride;
constexpr int kPlane = kLatticeSide * kLatticeRowStride;

// The fractions, in -1..1 of the given number of cells, of four coordinates. The bounds keep what is
// not finite at 0; below -2^52 every double is whole, so that bound changes nothing else.
__m128 scaledFractions(__m256d d, __m128 cells)
{
    const __m256d inRange = _mm256_and_pd(_mm256_cmp_pd(d, _mm256_set1_pd(1e9), _CMP_LE_OQ),
                                          _mm256_cmp_pd(d, _mm256_set1_pd(-4503599627370496.0), _CMP_GE_OQ));
    const __m256d bounded = _mm256_and_pd(d, inRange);
    return _mm_mul_ps(_mm256_cvtpd_ps(_mm256_sub_pd(bounded, _mm256_floor_pd(bounded))), cells);
}

template <int Lane>
__m128 lane(__m128 v)
{
    return _mm_shuffle_ps(v, v, Lane * 0x55);
}

template <int Lane>
__m256 lane256(__m128 v)
{
    return _mm256_set_m128(lane<Lane>(v), lane<Lane>(v));
}

// Twice the uniform quadratic B-spline through three neighbours.
__m128 spline(__m128 a, __m128 b, __m128 c, __m128 t)
{
    const __m128 slope = _mm_sub_ps(a, b);
    const __m128 bend = _mm_add_ps(_mm_sub_ps(a, _mm_add_ps(b, b)), c);
    const __m128 inner = _mm_sub_ps(_mm_mul_ps(bend, t), _mm_add_ps(slope, slope));
    return _mm_add_ps(_mm_add_ps(a, b), _mm_mul_ps(inner, t));
}

__m256 spline(__m256 a, __m256 b, __m256 c, __m256 t)
{
    const __m256 slope = _mm256_sub_ps(a, b);
    const __m256 bend = _mm256_add_ps(_mm256_sub_ps(a, _mm256_add_ps(b, b)), c);
    const __m256 inner = _mm256_sub_ps(_mm256_mul_ps(bend, t), _mm256_add_ps(slope, slope));
    return _mm256_add_ps(_mm256_add_ps(a, b), _mm256_mul_ps(inner, t));
}

// The spline through the first three lanes, in the first lane.
__m128 splineAcross(__m128 row, __m128 t)
{
    return spline(row, _mm_movehdup_ps(row), _mm_movehl_ps(row, row), t);
}

// The nine rows around a point: two rows of y side by side, the third alone, for three x.
struct Rows {
    __m256 pair[3];
    __m128 third[3];
};

Rows loadRows(const float* corner)
{
    Rows rows;
    for (int x = 0; x < 3; ++x) {
        const float* first = corner + x * kPlane;
        rows.pair[x] = _mm256_loadu2_m128(first + kRow, first);
        rows.third[x] = _mm_loadu_ps(first + 2 * kRow);
    }
    return rows;
}

float splineInSpace(const Rows& rows, __m128 t)
{
    const __m256 pair = spline(rows.pair[0], rows.pair[1], rows.pair[2], lane256<0>(t));
    const __m128 third = spline(rows.third[0], rows.third[1], rows.third[2], lane<0>(t));
    const __m128 row =
        spline(_mm256_castps256_ps128(pair), _mm256_extractf128_ps(pair, 1), third, lane<1>(t));
    return _mm_cvtss_f32(splineAcross(row, lane<2>(t)));
}

// Splits scaled fractions into the corner of their cell and what is left within it.
const float* cornerOf(const NoiseTables& tables, __m128 f, __m128& t)
{
    const __m128i cells = _mm_cvttps_epi32(f);
    t = _mm_sub_ps(f, _mm_cvtepi32_ps(cells));
    const __m128i wrapped = _mm_and_si128(cells, _mm_set1_epi32(kLatticeCells - 1));
    const __m128i parts = _mm_madd_epi16(wrapped, _mm_setr_epi32(kPlane, kRow, 1, 0));
    const __m128i pairs = _mm_add_epi32(parts, _mm_shuffle_epi32(parts, 0xB1));
    const __m128i sum = _mm_add_epi32(pairs, _mm_shuffle_epi32(pairs, 0x4E));
    return &tables.space[0][0][0] + _mm_cvtsi128_si32(sum);
}

// frac through truncation, for 0..2^18.
__m256 fraction(__m256 a)
{
    return _mm256_sub_ps(a, _mm256_round_ps(a, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
}

struct TimeSteps {
    __m256 m0, m1, m2, fraction;
};

__m256 animated(const TimeSteps& time, __m256 row)
{
    const __m256 c = _mm256_add_ps(row, _mm256_set1_ps(2.0f));
    return spline(fraction(_mm256_mul_ps(time.m0, c)), fraction(_mm256_mul_ps(time.m1, c)),
                  fraction(_mm256_mul_ps(time.m2, c)), time.fraction);
}

TimeSteps timeSteps(const NoiseTables& tables, float f)
{
    const __m128 scaled = _mm_set_ss(f);
    // Periods reach down to -2^31, and so does f: the conversion is always in range.
    const std::int32_t cell = _mm_cvttss_si32(scaled);
    const auto step = [&](std::int32_t offset) {
        return _mm256_set1_ps((randomValue(tables, cell + offset) + 1.0f) * 21568.16f);
    };
    return {step(0), step(1), step(2), _mm256_set1_ps(f - static_cast<float>(cell))};
}

} // namespace

float latticeNoise2Avx2(const NoiseTables& tables, double x, double y)
{
    const __m128 narrowed = _mm_cvtpd_ps(_mm_setr_pd(x, y));
    const __m128 f = scaledFractions(_mm256_cvtps_pd(narrowed), _mm_set1_ps(kLatticeCells));
    const __m128i cells = _mm_cvttps_epi32(f);
    const __m128 t = _mm_sub_ps(f, _mm_cvtepi32_ps(cells));
    const int cx = _mm_cvtsi128_si32(cells) & (kLatticeCells - 1);
    const int cy = _mm_extract_epi32(cells, 1) & (kLatticeCells - 1);
    const float* corner = &tables.plane[cx][cy];
    const __m128 row = spline(_mm_loadu_ps(corner), _mm_loadu_ps(corner + kRow),
                              _mm_loadu_ps(corner + 2 * kRow), lane<0>(t));
    return _mm_cvtss_f32(splineAcross(row, lane<1>(t))) * 0.25f;
}

float latticeNoise3Avx2(const NoiseTables& tables, double x, double y, double z)
{
    const __m128 f = scaledFractions(_mm256_setr_pd(x, y, z, 0.0), _mm_set1_ps(kLatticeCells));
    __m128 t;
    const float* corner = cornerOf(tables, f, t);
    return splineInSpace(loadRows(corner), t) * 0.125f;
}

float latticeNoise4Avx2(const NoiseTables& tables, double x, double y, double z, double w,
                        std::int32_t period)
{
    const auto steps = static_cast<float>(period < 60000 ? period : 60000);
    const __m128 f = scaledFractions(_mm256_setr_pd(x, y, z, w),
                                     _mm_setr_ps(kLatticeCells, kLatticeCells, kLatticeCells, steps));
    __m128 t;
    // The fourth lane has no part in the corner: its factor is 0.
    const float* corner = cornerOf(tables, f, t);
    const TimeSteps time = timeSteps(tables, _mm_cvtss_f32(lane<3>(f)));
    const Rows still = loadRows(corner);
    Rows rows;
    for (int i = 0; i < 3; ++i)
        rows.pair[i] = animated(time, still.pair[i]);
    const __m256 firstTwo = animated(time, _mm256_set_m128(still.third[1], still.third[0]));
    rows.third[0] = _mm256_castps256_ps128(firstTwo);
    rows.third[1] = _mm256_extractf128_ps(firstTwo, 1);
    rows.third[2] = _mm256_castps256_ps128(animated(time, _mm256_castps128_ps256(still.third[2])));
    return splineInSpace(rows, t) * 0.125f - 1.0f;
}

} // namespace nezaiva
