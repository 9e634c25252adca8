// The blobs of leather.h on lanes, for the sources of its instruction sets alone.
//
// A blob reaches less far than its cell and the next unless it is large or strays far. So of the three
// cells of an axis mostly two can matter, and eight cells in all: a lane for each.
#pragma once

#include "kernels/procedurals/leather.h"
#include "kernels/procedurals/leather_tables.h"
#include "numeric/lanes.h"

#include <cstddef>

namespace nezaiva {

struct LeatherBlobKernels {
    void (*leather)(const OUtils::Vector& uvw, const LeatherNumbers& numbers, const LeatherColors& colors,
                    OUtils::AColor& result);
};
extern const LeatherBlobKernels leatherBlobsBase, leatherBlobsAvx2;

// The walked cells of one axis: place i + 1 of a lattice axis for cell i, from the one before the first to
// the second behind the last, in steps of the table.
constexpr int kWrappedCells = kLeatherCells + 3;
struct WrappedCells {
    std::uint32_t x[kWrappedCells], y[kWrappedCells], z[kWrappedCells];
};
extern const WrappedCells wrappedCells;

// The offsets of the walked cells on each axis, in the order of the walk.
constexpr int kWalkedCells = 27;
constexpr int kWalkedLanes = 32;
struct LeatherWalk {
    float x[kWalkedLanes], y[kWalkedLanes], z[kWalkedLanes];
};
extern const LeatherWalk leatherWalk;

namespace {

constexpr float kSmallestLeatherNumber = 0.0001f;
constexpr float kCreaseMark = 20.0f;
constexpr float kLargestJoint = 18.0f; // how far apart the sum and a blob may be that are added

// What the formulas of leather.h make of the numbers.
struct BlobShape {
    Float4 strays, inverse;
    float spots, cut;
    bool creases;
};

// A point of the lattice: on each axis its cell, and how far it lies behind the start of that; and the cell
// whose start is the nearest.
struct LatticePoint {
    Int4 cells, nearest;
    Float4 fraction;
};

struct PlacedBlobs {
    BlobShape shape;
    LatticePoint point;
};

inline PlacedBlobs placedBlobs(const OUtils::Vector& uvw, const LeatherNumbers& numbers)
{
    // The scale, the density, spottyness and randomness.
    static_assert(offsetof(LeatherNumbers, randomness) == 3 * sizeof(float));
    constexpr float kNoLimit = -__builtin_inff();
    const Float4 limits(kSmallestLeatherNumber, kSmallestLeatherNumber, kNoLimit, kNoLimit);
    Float4 four = Float4::load(&numbers.size) * Float4(4.0f, 1.0f, 0.5f, 0.5f);
    if (!allLanes(four >= limits)) [[unlikely]]
        four = max(limits, four);
    const Float4 quotients = Float4(uvw.x, uvw.y, uvw.z, 2.0f) / shuffled<0, 0, 0, 1>(four, four);
    Float4 c = (quotients - floor(quotients)) * static_cast<float>(kLeatherCells);
    if (!allLanes(c >= 0.0f)) [[unlikely]]
        c = max(c, 0.0f); // of what is not a number
    const Int4 cells = toInt(c);
    const float rest = 1.0f - numbers.threshold;
    return {{spread<3>(four), spread<3>(quotients), lane<2>(four),
             rest < kSmallestLeatherNumber ? kSmallestLeatherNumber : rest, numbers.creases},
            {cells, toInt(c + 0.5f), c - toFloat(cells)}};
}

// The sum with the next blob of the walk, whose numbers are given.
inline float withBlob(float sum, const BlobShape& shape, const float* numbers, std::int32_t step)
{
    const float e = numbers[4] * shape.spots + (1.0f - shape.spots);
    if (e <= 0.0f) return sum;
    const float b = e * ((numbers[3] * shape.spots + 0.5f) * leatherFalloff[step]);
    if (!shape.creases || !(sum > 0.0f)) return sum + b;
    const float apart = __builtin_fabsf(sum - b);
    if (apart < shape.cut) return kCreaseMark + apart / shape.cut;
    return apart < kLargestJoint ? sum + b : sum;
}

// How far the point lies behind the starts of eight cells.
struct EightDistances {
    Float8 x, y, z;
};

// The squared distances of eight features, in units of a blob's reach; numbersOf(i) is where those of cell i
// begin.
template <class NumbersOf>
Float8 blobDistances(const EightDistances& point, const BlobShape& shape, NumbersOf numbersOf)
{
    const auto row = [&numbersOf](int i) {
        return Float8(Float4::load(numbersOf(i)), Float4::load(numbersOf(i + 4)));
    };
    const Float8 a = row(0), b = row(1), c = row(2), d = row(3);
    const Float8 xyLow = shuffled<0, 1, 0, 1>(a, b), xyHigh = shuffled<0, 1, 0, 1>(c, d);
    const Float8 zLow = shuffled<2, 3, 2, 3>(a, b), zHigh = shuffled<2, 3, 2, 3>(c, d);
    const Float8 strays(shape.strays, shape.strays);
    const auto squared = [&strays](Float8 distance, Float8 number) {
        const Float8 rest = distance - (number * strays + 0.5f);
        return rest * rest;
    };
    const Float8 dx = squared(point.x, shuffled<0, 2, 0, 2>(xyLow, xyHigh));
    const Float8 dy = squared(point.y, shuffled<1, 3, 1, 3>(xyLow, xyHigh));
    const Float8 dz = squared(point.z, shuffled<0, 2, 0, 2>(zLow, zHigh));
    return (dx + dy + dz) * Float8(shape.inverse, shape.inverse);
}

// Where the features of eight cells of the walk reach the point, a bit for each, and the steps of their
// blobs' falloff.
template <class NumbersOf>
unsigned reachingBlobs(const EightDistances& point, const BlobShape& shape, NumbersOf numbersOf,
                       std::int32_t* steps)
{
    const Float8 distances = blobDistances(point, shape, numbersOf);
    toInt(distances * static_cast<float>(kLeatherFalloffSize - 1)).store(steps);
    return static_cast<unsigned>(laneBits(distances < 1.0f));
}

// The sum of the blobs whose bits are set, in their order.
template <class NumbersOf>
float sumOfBlobs(unsigned bits, const BlobShape& shape, NumbersOf numbersOf, const std::int32_t* steps)
{
    float sum = 0.0f;
    for (; bits != 0; bits &= bits - 1) {
        const int i = __builtin_ctz(bits);
        sum = withBlob(sum, shape, numbersOf(i), steps[i]);
    }
    return sum;
}

// On each axis a blob of the cell on the nearer side is more likely to reach a point than one of the cell on
// the farther side.
struct Sides {
    Mask4 isBefore; // where the nearer side is that before the cell
    bool bothReach; // whether on any axis a blob from the farther side could reach the point
};

// The bound of a distance is made by the operations that make the distance, so that rounding cannot carry it
// past the bound.
inline Sides sidesOf(const LatticePoint& point, const BlobShape& shape)
{
    const Mask4 isBefore = point.nearest == point.cells;
    const Float4 side = select(isBefore, Float4(-1.0f), Float4(1.0f)); // less the offset of the farther cell
    const Float4 stray = abs(shape.strays);
    const Float4 bound = (point.fraction + side) - (0.5f + side * stray);
    const Mask4 isOut = (bound * side > 0.0f) & (bound * bound * shape.inverse >= 1.0f);
    return {isBefore, (laneBits(isOut) & 7) != 7};
}

// The blobs of the cell and, on each axis, of its neighbour on the nearer side.
inline float sumOfEightBlobs(const LatticePoint& point, Mask4 isBefore, const BlobShape& shape)
{
    const std::uint32_t* const x = wrappedCells.x + lane<0>(point.nearest);
    const std::uint32_t* const y = wrappedCells.y + lane<1>(point.nearest);
    const std::uint32_t* const z = wrappedCells.z + lane<2>(point.nearest);
    const float* const planes[2] = {leatherTable + z[0], leatherTable + z[1]};
    const float* const rows[4] = {planes[0] + y[0], planes[0] + y[1], planes[1] + y[0], planes[1] + y[1]};
    const std::uint32_t columns[2] = {x[0], x[1]};
    const auto numbersOf = [&](int i) { return rows[i >> 1] + columns[i & 1]; };

    const Float4 toFirst = point.fraction + (Float4(1.0f) & isBefore);
    const Float4 toSecond = point.fraction - (Float4(1.0f) & !isBefore);
    const Float4 xPair = shuffled<0, 0, 0, 0>(toFirst, toSecond);
    const Float4 xFour = shuffled<0, 2, 0, 2>(xPair, xPair);
    const Float4 yFour = shuffled<1, 1, 1, 1>(toFirst, toSecond);
    const EightDistances distances{Float8(xFour, xFour), Float8(yFour, yFour),
                                   Float8(spread<2>(toFirst), spread<2>(toSecond))};
    std::int32_t steps[8];
    const unsigned bits = reachingBlobs(distances, shape, numbersOf, steps);
    return sumOfBlobs(bits, shape, numbersOf, steps);
}

// The table's numbers for all 27 cells, in the order of the walk.
struct WalkedRows {
    const float* rows[9];
    const std::uint32_t* columns;

    const float* numbersOf(int cell) const { return rows[cell / 3] + columns[cell % 3]; }
};

// Those of the eight cells from First on that there are, whose blobs reach the point.
template <int First>
unsigned reachingWalkedBlobs(const LatticePoint& point, const BlobShape& shape, const WalkedRows& walked,
                             std::int32_t* steps)
{
    const auto away = [](Float4 fraction, const float* offsets) {
        return Float8(fraction, fraction) - Float8::load(offsets + First);
    };
    const EightDistances distances{away(spread<0>(point.fraction), leatherWalk.x),
                                   away(spread<1>(point.fraction), leatherWalk.y),
                                   away(spread<2>(point.fraction), leatherWalk.z)};
    const auto numbersOf = [&](int i) {
        return walked.numbersOf(First + i < kWalkedCells ? First + i : First);
    };
    return reachingBlobs(distances, shape, numbersOf, steps + First) << First;
}

// Apart, so that the numbers of the likelier eight stay in registers.
[[gnu::noinline]] float sumOfAllBlobs(const OUtils::Vector& uvw, const LeatherNumbers& numbers)
{
    const auto [shape, point] = placedBlobs(uvw, numbers);
    WalkedRows walked;
    walked.columns = wrappedCells.x + lane<0>(point.cells);
    const std::uint32_t* const y = wrappedCells.y + lane<1>(point.cells);
    const std::uint32_t* const z = wrappedCells.z + lane<2>(point.cells);
    for (int i = 0; i < 9; ++i)
        walked.rows[i] = leatherTable + (z[i / 3] + y[i % 3]);
    std::int32_t steps[kWalkedLanes];
    const unsigned bits = reachingWalkedBlobs<0>(point, shape, walked, steps) |
                          reachingWalkedBlobs<8>(point, shape, walked, steps) |
                          reachingWalkedBlobs<16>(point, shape, walked, steps) |
                          reachingWalkedBlobs<24>(point, shape, walked, steps);
    constexpr unsigned kEveryCell = (1u << kWalkedCells) - 1;
    return sumOfBlobs(
        bits & kEveryCell, shape, [&walked](int i) { return walked.numbersOf(i); }, steps);
}

inline float valueOfBlobs(float sum, const BlobShape& shape)
{
    if (shape.creases && sum >= kCreaseMark) {
        const float mark = sum - kCreaseMark;
        return mark < 1.0f ? mark : 1.0f;
    }
    return sum < shape.cut ? sum / shape.cut : 1.0f;
}

inline void leatherOnLanes(const OUtils::Vector& uvw, const LeatherNumbers& numbers,
                           const LeatherColors& colors, OUtils::AColor& result)
{
    const PlacedBlobs blobs = placedBlobs(uvw, numbers);
    const Sides sides = sidesOf(blobs.point, blobs.shape);
    const float sum = sides.bothReach ? sumOfAllBlobs(uvw, numbers)
                                      : sumOfEightBlobs(blobs.point, sides.isBefore, blobs.shape);
    const float v = valueOfBlobs(sum, blobs.shape);
    const Mask4 isAlpha = Int4(0, 0, 0, 1) > Int4(0);
    const Float4 crease = Float4::load(&colors.crease.r);
    // Kept as is: alpha is v, but jumps to 1 where v is 0.
    if (v == 0.0f) {
        select(isAlpha, Float4(1.0f), crease).store(&result.r);
        return;
    }
    const Float4 blend = Float4::load(&colors.cell.r) * v + crease * (1.0f - v);
    select(isAlpha, Float4(v), blend).store(&result.r);
}

constexpr LeatherBlobKernels kLeatherBlobsOnLanes{leatherOnLanes};

} // namespace
} // namespace nezaiva
