// The lattice noises of the Perlin fractals, on lanes. A point's coordinates are four of them; eight are two
// points at once. Results are in the first lane of each point.
//
// The sums over the knots are to be multiplied by kLattice2Scale or kLattice3Scale, once for each
// octave.
#pragma once

#include "kernels/noises/volume/volume_kernels.h"
#include "numeric/lanes.h"

namespace nezaiva {
namespace {

constexpr float kLattice2Scale = 0.25f;
constexpr float kLattice3Scale = 0.125f;

constexpr auto kUnitCells = static_cast<float>(kLatticeCells);

// One point or two at once, by the corners at which their neighbours begin in a table.
struct OnePoint {
    using Lanes = Float4;
    const float* corner;

    Lanes load(int offset) const { return Float4::load(corner + offset); }
};

struct TwoPoints {
    using Lanes = Float8;
    const float* low;
    const float* high;

    Lanes load(int offset) const { return {Float4::load(low + offset), Float4::load(high + offset)}; }
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
        const Lanes one = 1.0f;
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
    // The weights of an axis in the first three lanes of each point.
    template <int Axis>
    Lanes acrossLanes() const
    {
        return shuffled<0, 2, Axis, Axis>(shuffled<Axis, Axis, Axis, Axis>(first, second), third);
    }
    // Through the first three lanes of each point.
    template <int Axis>
    Lanes across(Lanes row) const
    {
        const Lanes products = row * acrossLanes<Axis>();
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
std::uint64_t offsetOfTwo(Int4 cells)
{
    constexpr std::uint64_t kStrides = std::uint64_t{Stride0} << 32 | std::uint64_t{Stride1};
    return lowTwoLanes(cells) * kStrides >> 32;
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
    OnePoint corner(Int4 cells) const
    {
        return {begin() + offsetOfTwo<kStride0, kStride1>(cells) + smallLane<2>(cells)};
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
    OnePoint corner(Int4 cells) const { return {begin() + offsetOfTwo<kStride0, kStride1>(cells)}; }
    template <class Spline, class Points>
    static typename Points::Lanes interpolate(const Points& points, typename Points::Lanes t)
    {
        return Spline(t).template across<1>(splineAlongX(points, 0, spread<0>(t)));
    }
};

struct Place {
    OnePoint neighbours;
    Float4 fractions; // within the cell
};

// The place of any point, in cells, where each coordinate's cell is not wrapped. They are two functions,
// because what one returned would be in memory. A coordinate that is not finite has cell 0 and the fraction
// 0.
[[gnu::noinline, gnu::cold]] inline Int4 cellsAnywhere(Float4 point)
{
    return toInt(fraction(point * (1.0f / kUnitCells)) * kUnitCells);
}
[[gnu::noinline, gnu::cold]] inline Float4 fractionsAnywhere(Float4 point)
{
    const Float4 f = fraction(point * (1.0f / kUnitCells)) * kUnitCells;
    return f - toFloat(toInt(f));
}

// The place of a point, in cells, that lies near `guess` + 1/2. Adding the constant rounds the guess to
// the number of a cell: within the unit it is in the lowest bits, and above them are whole units. So
// the cell can be known before the point is, and there are but two operations from the point to its
// fraction. A fraction outside of 0..1 tells that the guess has missed the cell, as it may next to a
// border, or that the point is not finite or too large.
template <class Lattice>
Place placeNear(const Lattice& lattice, Float4 point, Float4 guess)
{
    constexpr float kRoundToCells = 12582912.0f; // 1.5 * 2^23
    constexpr float kLeastRounded = 8388608.0f;  // 2^23, below which the bits are not those of cells
    constexpr int kLastExponentBelowOne = 126;
    const Int4 bits = bitsOf(guess + kRoundToCells);
    Int4 cells = bits & (kLatticeCells - 1);
    const Float4 units = floatOfBits(bits & -kLatticeCells);
    const Float4 unit = max(units, kLeastRounded) - kRoundToCells;
    Float4 fractions = (point - unit) - toFloat(cells);
    const Int4 exponents = shiftedRightUnsigned(bitsOf(fractions), 23); // with the sign above
    if ((laneBits(exponents > kLastExponentBelowOne) & Lattice::kLanes) != 0) [[unlikely]] {
        cells = cellsAnywhere(point) & (kLatticeCells - 1);
        fractions = fractionsAnywhere(point);
    }
    return {lattice.corner(cells), fractions};
}

// The noise at a point, in cells.
template <class Lattice>
[[gnu::always_inline]] inline Float4 latticeNoise(const Lattice& lattice, Float4 point)
{
    const Place place = placeNear(lattice, point, point - 0.5f);
    return Lattice::template interpolate<WeightedSpline<OnePoint>>(place.neighbours, place.fractions);
}

// The noise at two points, in units.
template <class Lattice>
[[gnu::always_inline]] inline Float8 latticeNoise(const Lattice& lattice, Float8 points)
{
    if constexpr (kEightAreTwoRegisters) {
        return {latticeNoise(lattice, lowHalf(points) * kUnitCells),
                latticeNoise(lattice, highHalf(points) * kUnitCells)};
    } else {
        const Float8 f = (points - floor(points)) * kUnitCells; // NaN for what is not finite
        const Int8 cells = toInt(f);
        const Int4 strides(Lattice::kStride0, Lattice::kStride1, Lattice::kStride2, 0);
        const Int8 parts = smallProduct(cells & (kLatticeCells - 1), Int8(strides, strides));
        const Int8 pairs = parts + shuffled<1, 0, 3, 2>(parts);
        const Int8 offsets = pairs + shuffled<2, 3, 0, 1>(pairs);
        const TwoPoints corners{lattice.begin() + lane<0>(lowHalf(offsets)),
                                lattice.begin() + lane<0>(highHalf(offsets))};
        // The maximum of a NaN and 0 is its second operand.
        const Float8 fractions = max(f - toFloat(cells), 0.0f);
        return Lattice::template interpolate<WeightedSpline<TwoPoints>>(corners, fractions);
    }
}

// The animated value of each grid point: it runs through a pseudo-random sequence in time.
template <class Points>
struct AnimatedRow {
    using Lanes = typename Points::Lanes;
    Lanes m0, m1, m2;
    WeightedAxis<Points> time;

    static Lanes rest(Lanes a) { return a - truncated(a); } // of products in 0..2^18
    Lanes operator()(Lanes row) const
    {
        const Lanes c = row + 2.0f;
        return time(rest(m0 * c), rest(m1 * c), rest(m2 * c));
    }
};

// Where a point's neighbours begin, and its part of the sequence.
struct AnimatedCorner {
    const float* corner;
    float m0, m1, m2;
};

inline AnimatedCorner animatedCorner(const NoiseTables& noise, Float4 cells)
{
    constexpr int kPlaneStride = kLatticeSide * kLatticeRowStride;
    const Int4 whole = toInt(cells);
    const Int4 wrapped = whole & (kLatticeCells - 1);
    const float* corner =
        &noise.space[0][0][0] + offsetOfTwo<kPlaneStride, kLatticeRowStride>(wrapped) + smallLane<2>(wrapped);
    const int first = lane<3>(whole);
    const auto step = [&](int i) { return (randomValue(noise, i) + 1.0f) * kAnimationRange; };
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
    return noise * 0.125f - 1.0f;
}

// Cells of a period that is as long on every axis of space, and of `period` steps in time.
inline Float4 periodCells(int period)
{
    const int steps = period < kLargestTimePeriod ? period : kLargestTimePeriod;
    return {kUnitCells, kUnitCells, kUnitCells, static_cast<float>(steps)};
}

// The four-dimensional noise at a point or at two, in units and to no scale: the fourth lane is time, on
// `period` steps, which may be as many as -2^31.
inline Float4 latticeNoise4(const NoiseTables& noise, Float4 point, int period)
{
    const Float4 f = fraction(point) * periodCells(period);
    const AnimatedCorner c = animatedCorner(noise, f);
    const WeightedSpline<OnePoint> spline(f - toFloat(toInt(f)));
    return splineOfAnimated<OnePoint>({c.corner}, {c.m0, c.m1, c.m2, spline.axis<3>()}, spline);
}

inline Float8 latticeNoise4(const NoiseTables& noise, Float8 points, int period)
{
    const Float4 cells = periodCells(period);
    const Float8 f = fraction(points) * Float8(cells, cells);
    const AnimatedCorner a = animatedCorner(noise, lowHalf(f));
    const AnimatedCorner b = animatedCorner(noise, highHalf(f));
    const auto both = [](float low, float high) { return Float8(low, high); };
    const WeightedSpline<TwoPoints> spline(f - toFloat(toInt(f)));
    return splineOfAnimated<TwoPoints>(
        {a.corner, b.corner}, {both(a.m0, b.m0), both(a.m1, b.m1), both(a.m2, b.m2), spline.axis<3>()},
        spline);
}

} // namespace
} // namespace nezaiva
