// The lattice noises of the Perlin fractals, written once on the lanes of volume_lanes_base.h or
// volume_lanes_avx2.h, one of which is included before. A point's coordinates are four lanes; eight
// lanes are two points at once. Results are in the first lane of each point.
//
// The sums over the knots are to be multiplied by kLattice2Scale or kLattice3Scale, once for each
// octave.
#pragma once

#include "kernels/noises/volume/volume_kernels.h"

namespace nezaiva {
namespace {

constexpr float kLattice2Scale = 0.25f;
constexpr float kLattice3Scale = 0.125f;

constexpr auto kUnitCells = static_cast<float>(kLatticeCells);

inline Four fourOf(float x, float y, float z, float w)
{
    return _mm_setr_ps(x, y, z, w);
}

// One point or two at once, by the corners at which their neighbours begin in a table.
struct OnePoint {
    using Lanes = Four;
    const float* corner;

    Lanes load(int offset) const { return _mm_loadu_ps(corner + offset); }
    static Lanes all(float value) { return _mm_set1_ps(value); }
};

struct TwoPoints {
    using Lanes = Eight;
    const float* low;
    const float* high;

    Lanes load(int offset) const { return loadHalves(low + offset, high + offset); }
    static Lanes all(float value) { return broadcast(value); }
};

// Twice the uniform quadratic B-spline as a weighted sum of its knots: (1 - t)^2, 1 + 2 t (1 - t), t^2.
// The formula's own order of operations takes more of them.
template <class Points>
struct WeightedAxis {
    using Lanes = typename Points::Lanes;
    Lanes first, second, third;

    Lanes operator()(Lanes a, Lanes b, Lanes c) const { return (a * first + b * second) + c * third; }
};

template <class Points>
struct WeightedSpline {
    using Lanes = typename Points::Lanes;
    Lanes first, second, third;

    explicit WeightedSpline(Lanes t)
    {
        const Lanes one = Points::all(1.0f);
        const Lanes rest = one - t;
        const Lanes product = t * rest;
        first = rest * rest;
        second = (product + product) + one;
        third = t * t;
    }

    template <int Axis>
    WeightedAxis<Points> axis() const
    {
        return {spread<Axis>(first), spread<Axis>(second), spread<Axis>(third)};
    }
    // Through the first three lanes of each point.
    template <int Axis>
    Lanes across(Lanes row) const
    {
        const Lanes products = row * gather<Axis>(first, second, third);
        return (products + spread<1>(products)) + spread<2>(products);
    }
};

// The spline along x on the row at the offset.
template <class Points>
typename Points::Lanes splineAlongX(const Points& points, int offset, typename Points::Lanes t)
{
    const auto coefficient = [&](SplineCoefficient c) { return points.load(offset + c * kLatticeRowStride); };
    return (coefficient(kSplineBend) * t - coefficient(kSplineSlope)) * t + coefficient(kSplineValue);
}

// The offset of the first two of four cells. Both multiplications are one: their sum is in the upper half.
template <int Stride0, int Stride1>
std::uint64_t offsetOfTwo(__m128i cells)
{
    constexpr std::uint64_t kStrides = std::uint64_t{Stride0} << 32 | std::uint64_t{Stride1};
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(cells)) * kStrides >> 32;
}

// The lattices: which lanes carry coordinates, where a point's cell lies, and the splines along x by the
// table and along the other axes by a Spline.
struct SpaceLattice {
    const SplineTables& tables;

    static constexpr int kLanes = 0b111;
    static constexpr int kStride1 = kSplineCoefficients * kLatticeRowStride;
    static constexpr int kStride0 = kLatticeSide * kStride1;
    static constexpr int kStride2 = 1;

    const float* begin() const { return &tables.space[0][0][0][0]; }
    OnePoint corner(__m128i cells) const
    {
        return {begin() + offsetOfTwo<kStride0, kStride1>(cells) + _mm_extract_epi16(cells, 4)};
    }
    template <class Spline, class Points>
    static typename Points::Lanes interpolate(const Points& points, typename Points::Lanes t)
    {
        const auto x = spread<0>(t);
        const auto r0 = splineAlongX(points, 0, x);
        const auto r1 = splineAlongX(points, kStride1, x);
        const auto r2 = splineAlongX(points, 2 * kStride1, x);
        const Spline spline(t);
        return spline.template across<2>(spline.template axis<1>()(r0, r1, r2));
    }
};

struct PlaneLattice {
    const SplineTables& tables;

    static constexpr int kLanes = 0b11;
    static constexpr int kStride0 = kSplineCoefficients * kLatticeRowStride;
    static constexpr int kStride1 = 1;
    static constexpr int kStride2 = 0;

    const float* begin() const { return &tables.plane[0][0][0]; }
    OnePoint corner(__m128i cells) const { return {begin() + offsetOfTwo<kStride0, kStride1>(cells)}; }
    template <class Spline, class Points>
    static typename Points::Lanes interpolate(const Points& points, typename Points::Lanes t)
    {
        return Spline(t).template across<1>(splineAlongX(points, 0, spread<0>(t)));
    }
};

struct Place {
    OnePoint neighbours;
    Four fraction; // within the cell
};

// The place of any point, in cells; a coordinate that is not finite has cell 0 and the fraction 0.
template <class Lattice>
[[gnu::noinline, gnu::cold]] Place placeAny(const Lattice& lattice, Four point)
{
    const Four f = unitFraction(point * _mm_set1_ps(1.0f / kUnitCells)) * _mm_set1_ps(kUnitCells);
    const __m128i cells = _mm_cvttps_epi32(f);
    const __m128i wrapped = _mm_and_si128(cells, _mm_set1_epi32(kLatticeCells - 1));
    return {lattice.corner(wrapped), f - _mm_cvtepi32_ps(cells)};
}

// The place of a point, in cells, that lies near `guess` + 1/2. Adding the constant rounds the guess to
// the number of a cell: within the unit it is in the lowest bits, and above them are whole units. So
// the cell can be known before the point is, and there are but two operations from the point to its
// fraction. A fraction outside of 0..1 tells that the guess has missed the cell, as it may next to a
// border, or that the point is not finite or too large.
template <class Lattice>
Place placeNear(const Lattice& lattice, Four point, Four guess)
{
    constexpr float kRoundToCells = 12582912.0f; // 1.5 * 2^23
    constexpr float kLeastRounded = 8388608.0f;  // 2^23, below which the bits are not those of cells
    constexpr int kLastExponentBelowOne = 126;
    const __m128i bits = _mm_castps_si128(guess + _mm_set1_ps(kRoundToCells));
    const __m128i cells = _mm_and_si128(bits, _mm_set1_epi32(kLatticeCells - 1));
    const Four units = _mm_castsi128_ps(_mm_and_si128(bits, _mm_set1_epi32(-kLatticeCells)));
    const Four unit = _mm_max_ps(units, _mm_set1_ps(kLeastRounded)) - _mm_set1_ps(kRoundToCells);
    const Four fraction = (point - unit) - _mm_cvtepi32_ps(cells);
    const __m128i exponents = _mm_srli_epi32(_mm_castps_si128(fraction), 23); // with the sign above
    const __m128i missed = _mm_cmpgt_epi32(exponents, _mm_set1_epi32(kLastExponentBelowOne));
    if ((_mm_movemask_ps(_mm_castsi128_ps(missed)) & Lattice::kLanes) != 0) [[unlikely]]
        return placeAny(lattice, point);
    return {lattice.corner(cells), fraction};
}

// The noise at a point, in cells.
template <class Lattice>
[[gnu::always_inline]] inline Four latticeNoise(const Lattice& lattice, Four point)
{
    const Place place = placeNear(lattice, point, point - _mm_set1_ps(0.5f));
    return Lattice::template interpolate<WeightedSpline<OnePoint>>(place.neighbours, place.fraction);
}

// The fraction within the cell; the maximum turns the NaN of a coordinate that is not finite into 0.
inline Eight withinCell(Eight scaled)
{
    return maximum(scaled - truncated(scaled), broadcast(0.0f));
}

// The noise at two points, in units.
template <class Lattice>
[[gnu::always_inline]] inline Eight latticeNoise(const Lattice& lattice, Eight points)
{
    if constexpr (kEightAreTwoRegisters) {
        const Four cells = _mm_set1_ps(kUnitCells);
        return combine(latticeNoise(lattice, lowHalf(points) * cells),
                       latticeNoise(lattice, highHalf(points) * cells));
    } else {
        const Eight f = fractionOrNan(points) * broadcast(kUnitCells);
        const CornerOffsets offsets =
            cornerOffsets(f, Lattice::kStride0, Lattice::kStride1, Lattice::kStride2);
        const TwoPoints corners{lattice.begin() + offsets.low, lattice.begin() + offsets.high};
        return Lattice::template interpolate<WeightedSpline<TwoPoints>>(corners, withinCell(f));
    }
}

// The animated value of each grid point: it runs through a pseudo-random sequence in time.
template <class Points>
struct AnimatedRow {
    using Lanes = typename Points::Lanes;
    Lanes m0, m1, m2;
    WeightedAxis<Points> time;

    static Lanes fraction(Lanes a) { return a - truncated(a); }
    Lanes operator()(Lanes row) const
    {
        const Lanes c = row + Points::all(2.0f);
        return time(fraction(m0 * c), fraction(m1 * c), fraction(m2 * c));
    }
};

// Where a point's neighbours begin, and its part of the sequence.
struct AnimatedCorner {
    const float* corner;
    float m0, m1, m2;
};

inline AnimatedCorner animatedCorner(const NoiseTables& noise, Four cells)
{
    constexpr int kPlaneStride = kLatticeSide * kLatticeRowStride;
    const __m128i wrapped = _mm_and_si128(_mm_cvttps_epi32(cells), _mm_set1_epi32(kLatticeCells - 1));
    const float* corner = &noise.space[0][0][0] + offsetOfTwo<kPlaneStride, kLatticeRowStride>(wrapped) +
                          _mm_extract_epi16(wrapped, 4);
    const int first = _mm_cvttss_si32(spread<3>(cells));
    const auto step = [&](int i) { return (randomValue(noise, i) + 1.0f) * 21568.16f; };
    return {corner, step(first), step(first + 1), step(first + 2)};
}

template <class Points>
typename Points::Lanes splineOfAnimated(const Points& corners, const AnimatedRow<Points>& animated,
                                        const WeightedSpline<Points>& spline)
{
    constexpr int kPlaneStride = kLatticeSide * kLatticeRowStride;
    const auto at = [&](int offset) { return animated(corners.load(offset)); };
    const auto acrossX = spline.template axis<0>();
    const auto alongX = [&](int offset) {
        return acrossX(at(offset), at(offset + kPlaneStride), at(offset + 2 * kPlaneStride));
    };
    const auto r0 = alongX(0);
    const auto r1 = alongX(kLatticeRowStride);
    const auto r2 = alongX(2 * kLatticeRowStride);
    const auto noise = spline.template across<2>(spline.template axis<1>()(r0, r1, r2));
    return noise * Points::all(0.125f) - Points::all(1.0f);
}

// Cells of a period that is as long on every axis of space, and of `period` steps in time.
inline Four periodCells(int period)
{
    return fourOf(kUnitCells, kUnitCells, kUnitCells, static_cast<float>(period < 60000 ? period : 60000));
}

// The four-dimensional noise at a point or at two, in units and to no scale: the fourth lane is time, on
// `period` steps, which makes cells in -2^31..60000.
inline Four latticeNoise4(const NoiseTables& noise, Four point, int period)
{
    const Four f = unitFraction(point) * periodCells(period);
    const AnimatedCorner c = animatedCorner(noise, f);
    const WeightedSpline<OnePoint> spline(f - truncated(f));
    return splineOfAnimated<OnePoint>(
        {c.corner}, {_mm_set1_ps(c.m0), _mm_set1_ps(c.m1), _mm_set1_ps(c.m2), spline.axis<3>()}, spline);
}

inline Eight latticeNoise4(const NoiseTables& noise, Eight points, int period)
{
    const Four cells = periodCells(period);
    const Eight f = unitFraction(points) * combine(cells, cells);
    const AnimatedCorner a = animatedCorner(noise, lowHalf(f));
    const AnimatedCorner b = animatedCorner(noise, highHalf(f));
    const auto both = [](float low, float high) { return combine(_mm_set1_ps(low), _mm_set1_ps(high)); };
    const WeightedSpline<TwoPoints> spline(f - truncated(f));
    return splineOfAnimated<TwoPoints>(
        {a.corner, b.corner}, {both(a.m0, b.m0), both(a.m1, b.m1), both(a.m2, b.m2), spline.axis<3>()},
        spline);
}

} // namespace
} // namespace nezaiva
