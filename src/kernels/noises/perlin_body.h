// The gradient noise on lanes; perlin_noise.h has the formula. An axis is a lane, from the coordinates to the
// products of a gradient, which is one load.
//
// A corner's value is the sum of three products, and the interpolation is linear. So each product is
// weighted as it is made, with weights that do not wait for the gradients, and the three components are
// added at the very end.
#pragma once

#include "kernels/noises/perlin_tables.h"
#include "numeric/lanes.h"

namespace nezaiva {

// A register stands in for Float4, which each source has for itself. The point's coordinates are its first
// three lanes; the fourth is without effect.
struct PerlinKernels {
    double (*noise3)(__m128 point);
};
extern const PerlinKernels perlinBase, perlinAvx2;

namespace {

using OUtils::perlinTables;

constexpr int kPerlinWrap = OUtils::kPerlinTableSize - 1;

// The cells of a point and its distances to their near ends and to their far ends, an axis in each lane.
struct PerlinPlace {
    Int4 cells;
    Double4 near, far;
};

inline PerlinPlace placeIn(Int4 cells, Double4 value, Double4 whole)
{
    return {cells, value - whole, value - (whole + 1.0)};
}

// Kept as is: a negative coordinate within 1e-9 of 0 stays in cell 0.
inline PerlinPlace placeAnywhere(Float4 point)
{
    const Double4 value = toDouble(finiteOrZero(point));
    const Int4 cells = cellIndex(select(value < 0.0, value - 1.0 + 1e-9, value));
    return placeIn(cells, value, toDouble(cells));
}

// Up to here a cell is the floor of the float, but for those nearly 0.
constexpr float kLargestFloored = 4194304.0f; // 2^22

// The bits of the last negative float that is nearer to 0 than 1e-9; as integers these are the smallest.
constexpr auto kLastNearlyZero = static_cast<std::int32_t>(0xb089705eu);

inline PerlinPlace placeFloored(Float4 point)
{
    const Float4 floored = floor(point) & (bitsOf(point) > kLastNearlyZero);
    return placeIn(toInt(floored), toDouble(point), toDouble(floored));
}

// The weights of the four corners of a side, which are those along x and y.
struct CornerWeights {
    Double4 nearNear, farNear, nearFar, farFar; // x, then y
};

// What a corner's gradient is multiplied with: its distances, by component, times its weight. The bits of
// FarAxes name the axes on which the corner is the far one.
template <int FarAxes>
Double4 share(const PerlinPlace& place, Double4 weight)
{
    return blended<FarAxes>(place.near, place.far) * weight;
}

// The sum of the four corners at one z, by component. The rows are those of the near corners in x.
template <int FarZ>
Double4 sideOf(const double* nearY, const double* farY, const PerlinPlace& place, const CornerWeights& w)
{
    constexpr int kNextX = 4; // the row of the corner one cell further along x
    const auto load = [](const double* row) { return Double4::load(row); };
    const Double4 low = load(nearY) * share<FarZ>(place, w.nearNear) +
                        load(nearY + kNextX) * share<FarZ | 1>(place, w.farNear);
    const Double4 high = load(farY) * share<FarZ | 2>(place, w.nearFar) +
                         load(farY + kNextX) * share<FarZ | 3>(place, w.farFar);
    return low + high;
}

inline double noiseAt(const PerlinPlace& place)
{
    const Double4 f = place.near;
    const Double4 fade = f * f * f * ((6.0 * f - 15.0) * f + 10.0);
    const Double4 rest = 1.0 - fade;

    const auto wrapped = [](std::int32_t cell) { return static_cast<std::uint32_t>(cell) & kPerlinWrap; };
    const std::uint32_t cellX = wrapped(lane<0>(place.cells));
    const std::uint8_t* const permutedY = perlinTables.permutation + wrapped(lane<1>(place.cells));
    const std::uint8_t* const permutedZ = perlinTables.permutation + wrapped(lane<2>(place.cells));
    const auto row = [cellX](std::uint32_t permuted) {
        return perlinTables.gradients[(cellX + permuted) & kPerlinWrap];
    };
    const std::uint8_t* const front = permutedY + permutedZ[0];
    const std::uint8_t* const back = permutedY + permutedZ[1];

    const Double4 nearX = spread<0>(rest);
    const Double4 farX = spread<0>(fade);
    const Double4 nearY = spread<1>(rest);
    const Double4 farY = spread<1>(fade);
    const CornerWeights w{nearX * nearY, farX * nearY, nearX * farY, farX * farY};
    const Double4 frontSide = sideOf<0>(row(front[0]), row(front[1]), place, w);
    const Double4 backSide = sideOf<4>(row(back[0]), row(back[1]), place, w);
    const Double4 sides = frontSide * spread<2>(rest) + backSide * spread<2>(fade);
    return sumOfLanes(lowHalf(sides)) + lane<0>(highHalf(sides));
}

[[gnu::noinline, gnu::cold]] inline double noise3Anywhere(__m128 point)
{
    return noiseAt(placeAnywhere(point));
}

inline double noise3OnLanes(__m128 registers)
{
    const Float4 point = registers;
    if (!allLanes(abs(point) < kLargestFloored)) [[unlikely]]
        return noise3Anywhere(registers);
    return noiseAt(placeFloored(point));
}

constexpr PerlinKernels kPerlinKernels{noise3OnLanes};

} // namespace
} // namespace nezaiva
