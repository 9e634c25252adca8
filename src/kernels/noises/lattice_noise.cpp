// The lattice noises for every x86-64 processor. The lanes run along the last axis, so that the
// splines along x and y work on whole rows.
//
// The formula's spline, a + b + ((a - 2b + c) t - 2(a - b)) t, is twice the uniform one, and the
// noises divide by two again for every dimension. Here it is the uniform one from the start, by its
// weights: a (1/2 - t + t^2 / 2) + b (1/2 + t - t^2) + c t^2 / 2. They do not wait for the table, and serve
// every row.

#include "kernels/noises/lattice_noise.h"

#include "kernels/noises/lattice_noise_kernels.h"
#include "kernels/noises/lattice_place.h"
#include "numeric/cell_index.h"
#include "numeric/simd_dispatch.h"

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

// The weights of three neighbours in the uniform quadratic B-spline; a lane for each axis.
struct Weights {
    __m128 before, at, after;
};

Weights weightsOf(__m128 t)
{
    const __m128 half = _mm_set1_ps(0.5f);
    const __m128 square = _mm_mul_ps(t, t);
    const __m128 after = _mm_mul_ps(half, square);
    return {_mm_add_ps(_mm_sub_ps(half, t), after), _mm_sub_ps(_mm_add_ps(half, t), square), after};
}

template <int Lane>
Weights weightsOfLane(const Weights& w)
{
    constexpr int kAll = Lane * 0x55;
    return {_mm_shuffle_ps(w.before, w.before, kAll), _mm_shuffle_ps(w.at, w.at, kAll),
            _mm_shuffle_ps(w.after, w.after, kAll)};
}

__m128 spline(__m128 a, __m128 b, __m128 c, const Weights& w)
{
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(a, w.before), _mm_mul_ps(b, w.at)), _mm_mul_ps(c, w.after));
}

// The spline through the first three lanes, by the weights of one axis.
template <int Axis>
float splineAcross(__m128 row, const Weights& w)
{
    const __m128 firstTwo = _mm_shuffle_ps(w.before, w.at, Axis * 0x55); // each of them twice
    const __m128 terms = _mm_mul_ps(row, _mm_shuffle_ps(firstTwo, w.after, _MM_SHUFFLE(Axis, Axis, 2, 0)));
    const __m128 sum = _mm_add_ss(terms, _mm_shuffle_ps(terms, terms, 1));
    return _mm_cvtss_f32(_mm_add_ss(sum, _mm_movehl_ps(terms, terms)));
}

// frac through truncation; the argument lies in 0..2^18.
__m128 fraction(__m128 a)
{
    return _mm_sub_ps(a, _mm_cvtepi32_ps(_mm_cvttps_epi32(a)));
}

struct TimeSteps {
    __m128 m0, m1, m2;
    Weights weights;
};

TimeSteps timeSteps(const NoiseTables& tables, double w, std::int32_t period)
{
    const Place place = placeInTime(w, period);
    const auto step = [&](std::int32_t offset) {
        return _mm_set1_ps((randomValue(tables, place.cell + offset) + 1.0f) * kTimeScale);
    };
    return {step(0), step(1), step(2), weightsOf(_mm_set1_ps(place.fraction))};
}

__m128 animated(const TimeSteps& time, __m128 row)
{
    const __m128 c = _mm_add_ps(row, _mm_set1_ps(2.0f));
    return spline(fraction(_mm_mul_ps(time.m0, c)), fraction(_mm_mul_ps(time.m1, c)),
                  fraction(_mm_mul_ps(time.m2, c)), time.weights);
}

constexpr int kPlane = kLatticeSide * kLatticeRowStride;

// The spline along x and y through the rows at the corner, and across the rows; `row` turns the row
// that begins at an address into the values to interpolate.
template <typename Row>
float splineInSpace(const float* corner, const Weights& w, Row row)
{
    const Weights alongX = weightsOfLane<0>(w);
    const auto columns = [&](const float* first) {
        return spline(row(first), row(first + kPlane), row(first + 2 * kPlane), alongX);
    };
    const __m128 column = spline(columns(corner), columns(corner + kLatticeRowStride),
                                 columns(corner + 2 * kLatticeRowStride), weightsOfLane<1>(w));
    return splineAcross<2>(column, w);
}

float splineInPlane(const float* corner, const Weights& w)
{
    const __m128 row = spline(_mm_loadu_ps(corner), _mm_loadu_ps(corner + kLatticeRowStride),
                              _mm_loadu_ps(corner + 2 * kLatticeRowStride), weightsOfLane<0>(w));
    return splineAcross<1>(row, w);
}

float splineInSpace(const float* corner, const Weights& w)
{
    return splineInSpace(corner, w, [](const float* row) { return _mm_loadu_ps(row); });
}

// The weights from the distances behind whole units and the cells.
Weights weightsAt(__m128 distances, __m128i cells)
{
    const __m128 f = _mm_mul_ps(distances, _mm_set1_ps(kLatticeCells));
    return weightsOf(_mm_sub_ps(f, _mm_cvtepi32_ps(cells)));
}

} // namespace

float latticeNoise2Baseline(const NoiseTables& tables, double x, double y)
{
    const __m128d xy = _mm_cvtps_pd(_mm_cvtpd_ps(_mm_setr_pd(x, y)));
    if (!areOnGrid(xy)) [[unlikely]]
        return latticeNoise2Anywhere(tables, x, y);
    const __m128d sum = onGrid(xy);
    const __m128i cells = cellsOf(sum, sum);
    const float* corner = &tables.plane[_mm_cvtsi128_si32(cells)][_mm_extract_epi16(cells, 2)];
    return splineInPlane(corner, weightsAt(behindUnits(xy, sum), cells));
}

float latticeNoise2Anywhere(const NoiseTables& tables, double x, double y)
{
    const Place px = placeInSpace(static_cast<double>(static_cast<float>(x)));
    const Place py = placeInSpace(static_cast<double>(static_cast<float>(y)));
    return splineInPlane(&tables.plane[px.cell][py.cell],
                         weightsOf(_mm_setr_ps(px.fraction, py.fraction, 0.0f, 0.0f)));
}

float latticeNoise3Baseline(const NoiseTables& tables, double x, double y, double z)
{
    const __m128d xy = _mm_setr_pd(x, y);
    const __m128d zz = _mm_set_sd(z);
    if (!areOnGrid(xy) || !areOnGrid(zz)) [[unlikely]]
        return latticeNoise3Anywhere(tables, x, y, z);
    const __m128d sumXy = onGrid(xy);
    const __m128d sumZ = onGrid(zz);
    const __m128 distances = _mm_movelh_ps(behindUnits(xy, sumXy), behindUnits(zz, sumZ));
    const float* corner = &tables.space[cellOf(x)][cellOf(y)][cellOf(z)];
    return splineInSpace(corner, weightsAt(distances, cellsOf(sumXy, sumZ)));
}

float latticeNoise3Anywhere(const NoiseTables& tables, double x, double y, double z)
{
    const Place px = placeInSpace(x);
    const Place py = placeInSpace(y);
    const Place pz = placeInSpace(z);
    return splineInSpace(&tables.space[px.cell][py.cell][pz.cell],
                         weightsOf(_mm_setr_ps(px.fraction, py.fraction, pz.fraction, 0.0f)));
}

float latticeNoise4Baseline(const NoiseTables& tables, double x, double y, double z, double w,
                            std::int32_t period)
{
    const Place px = placeInSpace(x);
    const Place py = placeInSpace(y);
    const Place pz = placeInSpace(z);
    const Weights weights = weightsOf(_mm_setr_ps(px.fraction, py.fraction, pz.fraction, 0.0f));
    const float* corner = &tables.space[px.cell][py.cell][pz.cell];
    const TimeSteps time = timeSteps(tables, w, period);
    const auto moving = [&](const float* row) { return animated(time, _mm_loadu_ps(row)); };
    return splineInSpace(corner, weights, moving) * 2.0f - 1.0f;
}

float latticeNoise2(const NoiseTables& tables, double x, double y)
{
    return hasAvx2() ? latticeNoise2Avx2(tables, x, y) : latticeNoise2Baseline(tables, x, y);
}

float latticeNoise3(const NoiseTables& tables, double x, double y, double z)
{
    return hasAvx2() ? latticeNoise3Avx2(tables, x, y, z) : latticeNoise3Baseline(tables, x, y, z);
}

float latticeNoise4(const NoiseTables& tables, double x, double y, double z, double w, std::int32_t period)
{
    return hasAvx2() ? latticeNoise4Avx2(tables, x, y, z, w, period)
                     : latticeNoise4Baseline(tables, x, y, z, w, period);
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
