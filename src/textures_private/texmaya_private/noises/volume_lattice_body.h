// The lattice noises at two points at once, written once on the lanes of volume_lanes_base.h or
// volume_lanes_avx2.h, one of which is included before. A point's coordinates are four lanes; the
// result is in the first lane of each half.
//
// There are two forms of the spline. ExactSpline is the formula, operation for operation: for points
// that an octave passes on to the next, where a difference in the last place would grow from octave
// to octave. WeightedSpline has fewer operations and differs by a few units in the last place.
#pragma once

#include "volume_kernels.h"

namespace nezaiva {
namespace {

constexpr int kPlaneStride = kLatticeSide * kLatticeRowStride;

// What the sums over the knots are to be multiplied by, once for each octave.
constexpr float kLattice2Scale = 0.25f;
constexpr float kLattice3Scale = 0.125f;

inline Four fourOf(float x, float y, float z, float w)
{
    return _mm_setr_ps(x, y, z, w);
}

// Twice the uniform quadratic B-spline: a + b + ((a - 2b + c) t - 2 (a - b)) t, its factors of two
// moved to where they cost nothing; multiplication by two rounds nothing.
struct ExactAxis {
    Eight half, twice; // of t

    Eight operator()(Eight a, Eight b, Eight c) const
    {
        const Eight bend = (a - (b + b)) + c;
        return (a + b) + (bend * half - (a - b)) * twice;
    }
};

struct ExactSpline {
    Eight half, twice;

    explicit ExactSpline(Eight t) : half(t * broadcast(0.5f)), twice(t + t) {}

    template <int Axis>
    ExactAxis axis() const
    {
        return {spread<Axis>(half), spread<Axis>(twice)};
    }
    // Through the first three lanes of each half, in the first lane of each.
    template <int Axis>
    Eight across(Eight row) const
    {
        return axis<Axis>()(row, spread<1>(row), spread<2>(row));
    }
};

// The same spline as a weighted sum of its knots: (1 - t)^2, 1 + 2 t (1 - t), t^2.
struct WeightedAxis {
    Eight first, second, third;

    Eight operator()(Eight a, Eight b, Eight c) const { return (a * first + b * second) + c * third; }
};

struct WeightedSpline {
    Eight first, second, third;

    explicit WeightedSpline(Eight t)
    {
        const Eight rest = broadcast(1.0f) - t;
        const Eight product = t * rest;
        first = rest * rest;
        second = (product + product) + broadcast(1.0f);
        third = t * t;
    }

    template <int Axis>
    WeightedAxis axis() const
    {
        return {spread<Axis>(first), spread<Axis>(second), spread<Axis>(third)};
    }
    template <int Axis>
    Eight across(Eight row) const
    {
        const Eight products = row * gather<Axis>(first, second, third);
        return (products + spread<1>(products)) + spread<2>(products);
    }
};

// Whether the two points are one and the same, so that each row is loaded once.
struct TwoPoints {
    static Eight load(const float* low, const float* high) { return loadHalves(low, high); }
};

struct OnePoint {
    static Eight load(const float* both, const float*) { return loadTwice(both); }
};

struct StillRow {
    Eight operator()(Eight row) const { return row; }
};

// The animated value of each grid point: it runs through a pseudo-random sequence in time.
template <class Axis>
struct AnimatedRow {
    Eight m0, m1, m2;
    Axis time;

    static Eight fraction(Eight a) { return a - truncated(a); }
    Eight operator()(Eight row) const
    {
        const Eight c = row + broadcast(2.0f);
        return time(fraction(m0 * c), fraction(m1 * c), fraction(m2 * c));
    }
};

// The splines over the 27 grid points at the two corners.
template <class Points, class Spline, class Row>
Eight splineInSpace(const NoiseTables& noise, CornerOffsets corners, const Spline& spline, const Row& row)
{
    const float* low = &noise.space[0][0][0] + corners.low;
    const float* high = &noise.space[0][0][0] + corners.high;
    const auto acrossX = spline.template axis<0>();
    const auto at = [&](int offset) { return row(Points::load(low + offset, high + offset)); };
    const auto alongX = [&](int y) {
        const int offset = y * kLatticeRowStride;
        return acrossX(at(offset), at(offset + kPlaneStride), at(offset + 2 * kPlaneStride));
    };
    const Eight r0 = alongX(0);
    const Eight r1 = alongX(1);
    const Eight r2 = alongX(2);
    return spline.template across<2>(spline.template axis<1>()(r0, r1, r2));
}

// The fraction within the cell; the maximum turns the NaN of a coordinate that is not finite into 0.
inline Eight withinCell(Eight scaled)
{
    return maximum(scaled - truncated(scaled), broadcast(0.0f));
}

// The three-dimensional noise, to be multiplied by kLattice3Scale.
template <class Spline, class Points = TwoPoints>
Eight lattice3(const NoiseTables& noise, Eight points)
{
    const Eight f = fractionOrNan(points) * broadcast(32.0f);
    const CornerOffsets corners = cornerOffsets(f, kPlaneStride, kLatticeRowStride, 1);
    return splineInSpace<Points>(noise, corners, Spline(withinCell(f)), StillRow{});
}

// The two-dimensional noise, to be multiplied by kLattice2Scale.
template <class Spline, class Points = TwoPoints>
Eight lattice2(const NoiseTables& noise, Eight points)
{
    const Eight f = fractionOrNan(points) * broadcast(32.0f);
    const CornerOffsets corners = cornerOffsets(f, kLatticeRowStride, 1, 0);
    const Spline spline(withinCell(f));
    const float* low = &noise.plane[0][0] + corners.low;
    const float* high = &noise.plane[0][0] + corners.high;
    const auto at = [&](int offset) { return Points::load(low + offset, high + offset); };
    const Eight row = spline.template axis<0>()(at(0), at(kLatticeRowStride), at(2 * kLatticeRowStride));
    return spline.template across<1>(row);
}

// The four-dimensional noise: the fourth lane is time, on `period` steps.
inline Eight lattice4(const NoiseTables& noise, Eight points, int period)
{
    const auto steps = static_cast<float>(period < 60000 ? period : 60000);
    const Four cells = fourOf(32.0f, 32.0f, 32.0f, steps);
    const Eight f = unitFraction(points) * combine(cells, cells);
    const WeightedSpline spline(f - truncated(f)); // the steps lie in -2^31..60000
    const auto firstStep = [](Four half) { return _mm_cvttss_si32(spread<3>(half)); };
    const int low = firstStep(lowHalf(f));
    const int high = firstStep(highHalf(f));
    const auto sequence = [&](int offset) {
        const float atLow = (randomValue(noise, low + offset) + 1.0f) * 21568.16f;
        const float atHigh = (randomValue(noise, high + offset) + 1.0f) * 21568.16f;
        return combine(_mm_set1_ps(atLow), _mm_set1_ps(atHigh));
    };
    const AnimatedRow<WeightedAxis> row{sequence(0), sequence(1), sequence(2), spline.axis<3>()};
    const CornerOffsets corners = cornerOffsets(f, kPlaneStride, kLatticeRowStride, 1);
    return splineInSpace<TwoPoints>(noise, corners, spline, row) * broadcast(0.125f) - broadcast(1.0f);
}

} // namespace
} // namespace nezaiva
