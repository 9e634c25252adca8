// The lattice noises on lanes; lattice_noise.h has the formulas. An axis is a lane while a point finds its
// place. Then the lanes run along the last axis, so that the splines along the others take whole rows.
//
// The spline is the uniform one from the start, by its weights: a (1/2 - t + t^2 / 2) + b (1/2 + t - t^2) +
// c t^2 / 2. They do not wait for the table, and serve every row.
#pragma once

#include "kernels/noises/random_tables.h"
#include "numeric/lanes.h"

namespace nezaiva {

struct LatticeKernels {
    float (*noise2)(const NoiseTables& tables, double x, double y);
    float (*noise3)(const NoiseTables& tables, double x, double y, double z);
    float (*noise4)(const NoiseTables& tables, double x, double y, double z, double w, std::int32_t period);
};
extern const LatticeKernels latticeBase, latticeAvx2;

namespace {

constexpr double kLargestCoordinate = 1e9;
constexpr double kWholeBelow = -4503599627370496.0; // -2^52: every double from here down is whole

constexpr int kRow = kLatticeRowStride;
constexpr int kPlane = kLatticeSide * kLatticeRowStride;

// Where coordinates lie on the lattice: the wrapped cell of each and the fraction within it.
struct LatticePlace {
    Int4 cells;
    Float4 fractions;
};

// The bits that count the cells of a unit, at a bit of each integer. Shifts, which wait for no constant.
template <int LowestBit = 0>
Int4 wrapped(Int4 bits)
{
    constexpr int kBitsOfCell = 5;
    static_assert(1 << kBitsOfCell == kLatticeCells);
    return shiftedRightUnsigned(bits << (32 - kBitsOfCell - LowestBit), 32 - kBitsOfCell);
}

// What is too large counts as 0.
inline Double4 bounded(Double4 d)
{
    return d & ((d <= kLargestCoordinate) & (d >= kWholeBelow));
}

inline Float4 fractionsOfUnit(Double4 d)
{
    return toFloat(d - floor(d));
}

inline LatticePlace placeAnywhere(Double4 d)
{
    const Float4 f = fractionsOfUnit(bounded(d)) * static_cast<float>(kLatticeCells);
    const Int4 cells = toInt(f);
    return {wrapped(cells), f - toFloat(cells)};
}

// Adding kRoundToGrid rounds a coordinate to 2^-22 and lays it out in the bits of the sum: whole units, the
// five bits of the cell, 17 bits within the cell. That is much faster than floor, and no table can be read
// before the cell is known. A coordinate just below a border may thus count to the cell behind it, with a
// fraction below 0 by 2^-18 at most. The parabolas of both cells touch at the border, so that the noise
// differs by less than 1e-10; it would not do for the steps of time.
constexpr double kRoundToGrid = 1610612736.0; // 1.5 * 2^30
constexpr double kLargestOnGrid = 67108864.0; // 2^26; what is larger or not a number is placed otherwise
constexpr int kBitsWithinCell = 17;
constexpr std::int64_t kBitsOfUnits = -(std::int64_t{kLatticeCells} << kBitsWithinCell);

template <class Doubles>
bool areOnGrid(Doubles d)
{
    return allLanes(abs(d) < Doubles(kLargestOnGrid));
}

inline std::uint64_t cellOf(double d)
{
    return __builtin_bit_cast(std::uint64_t, d + kRoundToGrid) >> kBitsWithinCell & (kLatticeCells - 1);
}

template <class Doubles>
LatticePlace placeOnGrid(Doubles d)
{
    const Doubles sum = d + kRoundToGrid;
    const Int4 cells = wrapped<kBitsWithinCell>(lowWords(sum));
    const Float4 behindUnits = toFloat(d - (keepBits(sum, kBitsOfUnits) - kRoundToGrid));
    return {cells, behindUnits * static_cast<float>(kLatticeCells) - toFloat(cells)};
}

// The weights of three neighbours.
template <class Lanes>
struct Weights {
    Lanes before, at, after;

    Lanes operator()(Lanes a, Lanes b, Lanes c) const { return (a * before + b * at) + c * after; }
};

// A lane for each axis.
inline Weights<Float4> weightsOf(Float4 t)
{
    const Float4 square = t * t;
    const Float4 after = 0.5f * square;
    return {(0.5f - t) + after, (0.5f + t) - square, after};
}

// Those of one axis in all lanes.
template <int Axis>
Weights<Float4> weightsAlong(const Weights<Float4>& w)
{
    return {spread<Axis>(w.before), spread<Axis>(w.at), spread<Axis>(w.after)};
}
template <int Axis>
Weights<Float8> weightsTwiceAlong(const Weights<Float4>& w)
{
    return {spreadTwice<Axis>(w.before), spreadTwice<Axis>(w.at), spreadTwice<Axis>(w.after)};
}
inline Weights<Float4> half(const Weights<Float8>& w)
{
    return {lowHalf(w.before), lowHalf(w.at), lowHalf(w.after)};
}

// The spline through the first three lanes, by the weights of one axis.
template <int Axis>
float splineAcross(Float4 row, const Weights<Float4>& w)
{
    const Float4 firstTwo = shuffled<Axis, Axis, Axis, Axis>(w.before, w.at);
    const Float4 terms = row * shuffled<0, 2, Axis, Axis>(firstTwo, w.after);
    return (lane<0>(terms) + lane<1>(terms)) + lane<2>(terms);
}

inline float splineInPlane(const float* corner, const Weights<Float4>& w)
{
    const Float4 row = weightsAlong<0>(w)(Float4::load(corner), Float4::load(corner + kRow),
                                          Float4::load(corner + 2 * kRow));
    return splineAcross<1>(row, w);
}

inline float splineInSpace(const float* corner, const Weights<Float4>& w)
{
    const Weights<Float4> alongX = weightsAlong<0>(w);
    const auto columns = [&](const float* first) {
        return alongX(Float4::load(first), Float4::load(first + kPlane), Float4::load(first + 2 * kPlane));
    };
    const Float4 column =
        weightsAlong<1>(w)(columns(corner), columns(corner + kRow), columns(corner + 2 * kRow));
    return splineAcross<2>(column, w);
}

inline const float* cornerOf(const NoiseTables& tables, Int4 cells)
{
    const auto cell = [](std::int32_t c) { return std::uint64_t{static_cast<std::uint32_t>(c)}; };
    return &tables.space[0][0][0] + cell(lane<0>(cells)) * kPlane + cell(lane<1>(cells)) * kRow +
           cell(lane<2>(cells));
}

[[gnu::noinline, gnu::cold]] inline float noise2Anywhere(const NoiseTables& tables, double x, double y)
{
    const LatticePlace place = placeAnywhere(Double4(narrowed(Double2(x, y)), 0.0));
    return splineInPlane(&tables.plane[lane<0>(place.cells)][lane<1>(place.cells)],
                         weightsOf(place.fractions));
}

inline float noise2OnLanes(const NoiseTables& tables, double x, double y)
{
    const Double2 xy = narrowed(Double2(x, y));
    if (!areOnGrid(xy)) [[unlikely]]
        return noise2Anywhere(tables, x, y);
    const LatticePlace place = placeOnGrid(xy);
    return splineInPlane(&tables.plane[lane<0>(place.cells)][lane<1>(place.cells)],
                         weightsOf(place.fractions));
}

[[gnu::noinline, gnu::cold]] inline float noise3Anywhere(const NoiseTables& tables, double x, double y,
                                                         double z)
{
    const LatticePlace place = placeAnywhere(Double4(Double2(x, y), Double2(z, 0.0)));
    return splineInSpace(cornerOf(tables, place.cells), weightsOf(place.fractions));
}

inline float noise3OnLanes(const NoiseTables& tables, double x, double y, double z)
{
    const Double4 d(Double2(x, y), Double2(z, 0.0));
    if (!areOnGrid(d)) [[unlikely]]
        return noise3Anywhere(tables, x, y, z);
    const Weights<Float4> weights = weightsOf(placeOnGrid(d).fractions);
    // Each cell once more from its own coordinate: that is sooner there than a lane of the four.
    return splineInSpace(&tables.space[cellOf(x)][cellOf(y)][cellOf(z)], weights);
}

// The values at grid points run through a pseudo-random sequence: at its step i a point of the value v has
// the fraction of (random(i) + 1) * kAnimationRange * (v + 2).
template <class Lanes>
struct Animation {
    Lanes m0, m1, m2;
    Weights<Lanes> weights; // of the three steps

    Lanes operator()(Lanes row) const
    {
        const Lanes c = row + 2.0f;
        const auto step = [c](Lanes m) {
            const Lanes product = m * c; // in 0..2^18
            return product - truncated(product);
        };
        return weights(step(m0), step(m1), step(m2));
    }
};

inline Animation<Float4> half(const Animation<Float8>& a)
{
    return {lowHalf(a.m0), lowHalf(a.m1), lowHalf(a.m2), half(a.weights)};
}

// The nine rows around a point, two rows of y side by side and the third alone.
inline float animatedSplineInSpace(const float* corner, const Animation<Float8>& animated,
                                   const Weights<Float4>& w)
{
    const auto row = [corner](int x, int y) { return Float4::load(corner + x * kPlane + y * kRow); };
    const Float8 first = animated(Float8(row(0, 0), row(0, 1)));
    const Float8 second = animated(Float8(row(1, 0), row(1, 1)));
    const Float8 third = animated(Float8(row(2, 0), row(2, 1)));
    const Float8 firstTwo = animated(Float8(row(0, 2), row(1, 2)));
    const Float4 last = half(animated)(row(2, 2));
    const Weights<Float8> alongX = weightsTwiceAlong<0>(w);
    const Float8 pair = alongX(first, second, third);
    const Float4 alone = half(alongX)(lowHalf(firstTwo), highHalf(firstTwo), last);
    return splineAcross<2>(weightsAlong<1>(w)(lowHalf(pair), highHalf(pair), alone), w);
}

// Cells of a period that is as long on every axis of space, and of `period` steps in time. It reaches down to
// -2^31, and so does the scaled time.
inline Float4 periodCells(std::int32_t period)
{
    constexpr auto kCells = static_cast<float>(kLatticeCells);
    const std::int32_t steps = period < kLargestTimePeriod ? period : kLargestTimePeriod;
    return {kCells, kCells, kCells, static_cast<float>(steps)};
}

// At a point of wrapped cells in space and the step `first` in time.
[[gnu::always_inline]] inline float noise4At(const NoiseTables& tables, Int4 cells, std::int32_t first,
                                             Float4 fractions)
{
    const Weights<Float4> weights = weightsOf(fractions);
    const auto step = [&](std::int32_t i) {
        return Float8((randomValue(tables, i) + 1.0f) * kAnimationRange);
    };
    const Animation<Float8> animation{step(first), step(first + 1), step(first + 2),
                                      weightsTwiceAlong<3>(weights)};
    return animatedSplineInSpace(cornerOf(tables, cells), animation, weights) * 2.0f - 1.0f;
}

[[gnu::noinline]] inline float noise4Anywhere(const NoiseTables& tables, double x, double y, double z,
                                              double w, std::int32_t period)
{
    const Float4 f = fractionsOfUnit(bounded(Double4(Double2(x, y), Double2(z, w)))) * periodCells(period);
    const Int4 cells = toInt(f);
    return noise4At(tables, wrapped(cells), lane<3>(cells), f - toFloat(cells));
}

inline float noise4OnLanes(const NoiseTables& tables, double x, double y, double z, double w,
                           std::int32_t period)
{
    const Double4 d(Double2(x, y), Double2(z, w));
    // Where floor is one instruction, a cell is found beside its fraction, sooner. The two can only disagree
    // where the fraction is rounded up to the next cell: it is then 1 in the cell before, and the spline has
    // the same bits at either side.
    if (kEightAreTwoRegisters || !areOnGrid(d)) return noise4Anywhere(tables, x, y, z, w, period);
    const Float4 f = fractionsOfUnit(d) * periodCells(period);
    const Int4 cells = wrapped(toInt(floor(d * static_cast<double>(kLatticeCells))));
    const Int4 scaled = toInt(f);
    const Int4 whole = select(Int4(0, 0, 0, 1) == Int4(1), scaled, cells);
    return noise4At(tables, cells, lane<3>(scaled), f - toFloat(whole));
}

constexpr LatticeKernels kLatticeKernels{noise2OnLanes, noise3OnLanes, noise4OnLanes};

} // namespace
} // namespace nezaiva
