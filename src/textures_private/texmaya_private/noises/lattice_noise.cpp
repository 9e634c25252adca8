// The lattice noises for every x86-64 processor. The lanes run along the last axis, so that the
// splines along x and y work on whole rows; the order of operations is that of the formula.

#include "lattice_noise.h"

#include "cell_index.h"
#include "lattice_noise_avx2.h"
#include "simd_dispatch.h"

#include <emmintrin.h>

namespace nezaiva {

namespace {

constexpr double kLargestCoordinate = 1e9;
constexpr double kWholeBelow = -4503599627370496.0; // -2^52: every double from here down is whole
constexpr std::int32_t kLargestPeriod = 60000;
constexpr float kTimeScale = 21568.16f;

// A coordinate's place on one axis of the lattice.
struct Place {
    std::int32_t cell;
    float fraction;
};

float fractionOfUnit(double d)
{
    const double bounded = d <= kLargestCoordinate && d >= kWholeBelow ? d : 0.0;
    const auto truncated = static_cast<std::int64_t>(bounded);
    const auto whole = static_cast<double>(truncated);
    const double floor = whole > bounded ? whole - 1.0 : whole;
    return static_cast<float>(bounded - floor);
}

Place placeInSpace(double d)
{
    const float f = fractionOfUnit(d) * static_cast<float>(kLatticeCells);
    const auto cell = static_cast<std::int32_t>(f); // f lies in 0..32
    return {cell & (kLatticeCells - 1), f - static_cast<float>(cell)};
}

Place placeInTime(double w, std::int32_t period)
{
    const float f = fractionOfUnit(w) * static_cast<float>(period < kLargestPeriod ? period : kLargestPeriod);
    const std::int32_t cell = cellIndex(f);
    return {cell, f - static_cast<float>(cell)};
}

// Twice the uniform quadratic B-spline through three neighbours.
__m128 spline(__m128 a, __m128 b, __m128 c, __m128 t)
{
    const __m128 slope = _mm_sub_ps(a, b);
    const __m128 bend = _mm_add_ps(_mm_sub_ps(a, _mm_add_ps(b, b)), c);
    const __m128 inner = _mm_sub_ps(_mm_mul_ps(bend, t), _mm_add_ps(slope, slope));
    return _mm_add_ps(_mm_add_ps(a, b), _mm_mul_ps(inner, t));
}

// The spline through the first three lanes, in the first lane.
__m128 splineAcross(__m128 row, float t)
{
    return spline(row, _mm_shuffle_ps(row, row, 1), _mm_shuffle_ps(row, row, 2), _mm_set_ss(t));
}

// frac through truncation; the argument lies in 0..2^18.
__m128 fraction(__m128 a)
{
    return _mm_sub_ps(a, _mm_cvtepi32_ps(_mm_cvttps_epi32(a)));
}

struct TimeSteps {
    __m128 m0, m1, m2, fraction;
};

TimeSteps timeSteps(const NoiseTables& tables, double w, std::int32_t period)
{
    const Place place = placeInTime(w, period);
    const auto step = [&](std::int32_t offset) {
        return _mm_set1_ps((randomValue(tables, place.cell + offset) + 1.0f) * kTimeScale);
    };
    return {step(0), step(1), step(2), _mm_set1_ps(place.fraction)};
}

__m128 animated(const TimeSteps& time, __m128 row)
{
    const __m128 c = _mm_add_ps(row, _mm_set1_ps(2.0f));
    return spline(fraction(_mm_mul_ps(time.m0, c)), fraction(_mm_mul_ps(time.m1, c)),
                  fraction(_mm_mul_ps(time.m2, c)), time.fraction);
}

} // namespace

float latticeNoise2(const NoiseTables& tables, double x, double y)
{
    if (hasAvx2()) return latticeNoise2Avx2(tables, x, y);
    const Place px = placeInSpace(static_cast<double>(static_cast<float>(x)));
    const Place py = placeInSpace(static_cast<double>(static_cast<float>(y)));
    const float* corner = &tables.plane[px.cell][py.cell];
    const __m128 row = spline(_mm_loadu_ps(corner), _mm_loadu_ps(corner + kLatticeRowStride),
                              _mm_loadu_ps(corner + 2 * kLatticeRowStride), _mm_set1_ps(px.fraction));
    return _mm_cvtss_f32(splineAcross(row, py.fraction)) * 0.25f;
}

float latticeNoise3(const NoiseTables& tables, double x, double y, double z)
{
    if (hasAvx2()) return latticeNoise3Avx2(tables, x, y, z);
    const Place px = placeInSpace(x);
    const Place py = placeInSpace(y);
    const Place pz = placeInSpace(z);
    constexpr int kPlane = kLatticeSide * kLatticeRowStride;
    const float* corner = &tables.space[px.cell][py.cell][pz.cell];
    const __m128 tx = _mm_set1_ps(px.fraction);
    const auto alongX = [&](const float* first) {
        return spline(_mm_loadu_ps(first), _mm_loadu_ps(first + kPlane), _mm_loadu_ps(first + 2 * kPlane),
                      tx);
    };
    const __m128 row = spline(alongX(corner), alongX(corner + kLatticeRowStride),
                              alongX(corner + 2 * kLatticeRowStride), _mm_set1_ps(py.fraction));
    return _mm_cvtss_f32(splineAcross(row, pz.fraction)) * 0.125f;
}

float latticeNoise4(const NoiseTables& tables, double x, double y, double z, double w, std::int32_t period)
{
    if (hasAvx2()) return latticeNoise4Avx2(tables, x, y, z, w, period);
    const Place px = placeInSpace(x);
    const Place py = placeInSpace(y);
    const Place pz = placeInSpace(z);
    constexpr int kPlane = kLatticeSide * kLatticeRowStride;
    const float* corner = &tables.space[px.cell][py.cell][pz.cell];
    const TimeSteps time = timeSteps(tables, w, period);
    const __m128 tx = _mm_set1_ps(px.fraction);
    const auto alongX = [&](const float* first) {
        return spline(animated(time, _mm_loadu_ps(first)), animated(time, _mm_loadu_ps(first + kPlane)),
                      animated(time, _mm_loadu_ps(first + 2 * kPlane)), tx);
    };
    const __m128 row = spline(alongX(corner), alongX(corner + kLatticeRowStride),
                              alongX(corner + 2 * kLatticeRowStride), _mm_set1_ps(py.fraction));
    return _mm_cvtss_f32(splineAcross(row, pz.fraction)) * 0.125f - 1.0f;
}

float latticeNoise2(double x, double y)
{
    return latticeNoise2(activeNoiseTables(), x, y);
}

float latticeNoise3(double x, double y, double z)
{
    return latticeNoise3(activeNoiseTables(), x, y, z);
}

float latticeNoise4(double x, double y, double z, double w, std::int32_t period)
{
    return latticeNoise4(activeNoiseTables(), x, y, z, w, period);
}

} // namespace nezaiva
