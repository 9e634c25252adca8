// The search of leather.h for the two nearest features, on lanes, for the sources of its instruction sets
// alone.
//
// The cells whose bound is 0 are always walked. They are looked at eight at a time, and the two smallest
// distances taken out of all of them; equal ones in the order of the rows, as if they had come one by
// one. What is behind is walked one by one: the search hardly ever gets there.
#pragma once

#include "kernels/procedurals/leather_tables.h"
#include "numeric/cell_index.h"
#include "numeric/lanes.h"

namespace nezaiva {

// Squared distances and seeds of the nearest feature and the next. Without a feature, kFarthestFeature
// and 0.
struct NearestFeatures {
    float first, second;
    std::uint32_t firstSeed, secondSeed;
};

struct LeatherFeatureKernels {
    // A finite point, in units of a cell.
    NearestFeatures (*nearest)(float x, float y, float z, float randomness);
};
extern const LeatherFeatureKernels leatherFeaturesBase, leatherFeaturesAvx2;

// The rows of cellSearchOrder whose bound is 0, an array for each axis.
constexpr int kNearRows = 27;
constexpr int kNearLanes = 32;
struct NearRows {
    std::int32_t dx[kNearLanes], dy[kNearLanes], dz[kNearLanes]; // 0 behind the last row
};
extern const NearRows nearRows;

namespace {

constexpr float kFarthestFeature = 1e10f;
// Cells of points nearer than this are whole numbers of 32 bits, and so are their neighbours.
constexpr float kFarthestPointOnLanes = 2147483000.0f;

template <class Integers>
Integers nextSeed(Integers h)
{
    return h * Integers(0x4C1) + Integers(0xAB1CD9F);
}

// The first seed of a cell. Integers wrap.
template <class Integers>
Integers cellSeed(Integers x, Integers y, Integers z, Integers yShifted)
{
    const Integers crossed = x ^ y ^ (x << 3) ^ yShifted;
    const Integers mixed = (crossed * Integers(0x202C3) - y) + ((z << 1) + z);
    const Integers h = mixed * Integers(0x127EFB9) + Integers(static_cast<std::int32_t>(0xEA996361u));
    return nextSeed(h ^ ((h ^ z) << 1));
}

// h / 2^32 of unsigned integers, rounded once.
inline Float8 unitNumber(Int8 h)
{
    const Float8 upper = toFloat(shiftedRightUnsigned(h, 16)) * 0x1p-16f;
    return upper + toFloat(h & 0xFFFF) * 0x1p-32f;
}

inline float unitNumber(std::uint32_t h)
{
    return static_cast<float>(h) * 0x1p-32f;
}

inline float lowestLane(Float8 a)
{
    const Float4 four = min(lowHalf(a), highHalf(a));
    const Float4 two = min(four, shuffled<2, 3, 0, 1>(four, four));
    return lane<0>(min(two, shuffled<1, 0, 3, 2>(two, two)));
}

// The features of eight near rows.
struct EightFeatures {
    Float8 distances;
    Int8 seeds;
};

struct SearchedPoint {
    float toMiddle[3]; // 0.5 less the coordinate
    std::int32_t cell[3];
    float randomness;
};

inline EightFeatures featuresOf(const SearchedPoint& point, int row)
{
    const Int8 x = Int8(point.cell[0]) + Int8::load(nearRows.dx + row);
    const Int8 y = Int8(point.cell[1]) + Int8::load(nearRows.dy + row);
    const Int8 z = Int8(point.cell[2]) + Int8::load(nearRows.dz + row);
    const auto squared = [&point](Int8 seed, int axis, Int8 cell) {
        const Float8 strayed = (unitNumber(seed) - 0.5f) * point.randomness + point.toMiddle[axis];
        const Float8 distance = strayed + toFloat(cell);
        return distance * distance;
    };
    const Int8 seedX = cellSeed(x, y, z, shiftedRightUnsigned(y, 2));
    const Int8 seedY = nextSeed(seedX);
    const Int8 seedZ = nextSeed(seedY);
    // In this order the minimum passes over a NaN.
    return {min(squared(seedX, 0, x) + squared(seedY, 1, y) + squared(seedZ, 2, z), kFarthestFeature), seedZ};
}

// The rows from `row` on one by one, up to the one that cannot matter.
inline void walkRows(NearestFeatures& found, const SearchedPoint& point, int row)
{
    for (; row < kSearchRows && static_cast<float>(cellSearchOrder[row].bound) < found.second; ++row) {
        const SearchRow& offset = cellSearchOrder[row];
        const std::int64_t cell[3] = {point.cell[0] + std::int64_t{offset.dx},
                                      point.cell[1] + std::int64_t{offset.dy},
                                      point.cell[2] + std::int64_t{offset.dz}};
        const auto y = static_cast<std::uint32_t>(cell[1]);
        std::uint32_t seed =
            cellSeed(static_cast<std::uint32_t>(cell[0]), y, static_cast<std::uint32_t>(cell[2]), y >> 2);
        float distance = 0.0f;
        for (int axis = 0; axis < 3; ++axis) {
            if (axis > 0) seed = nextSeed(seed);
            const float d = (unitNumber(seed) - 0.5f) * point.randomness + point.toMiddle[axis] +
                            static_cast<float>(cell[axis]);
            distance += d * d;
        }
        if (distance < found.first)
            found = {distance, found.first, seed, found.firstSeed};
        else if (distance < found.second)
            found = {found.first, distance, found.firstSeed, seed};
    }
}

inline NearestFeatures nearestOfNearRows(const SearchedPoint& point)
{
    EightFeatures features[kNearLanes / 8];
    for (int i = 0; i < kNearLanes / 8; ++i)
        features[i] = featuresOf(point, 8 * i);
    constexpr int kLastGroup = kNearLanes / 8 - 1;
    const Int8 lanes(Int4(0, 1, 2, 3), Int4(4, 5, 6, 7));
    const Mask8 isNear = lanes < kNearRows - 8 * kLastGroup;
    features[kLastGroup].distances = select(isNear, features[kLastGroup].distances, kFarthestFeature);

    // The two smallest of each lane, then of all.
    const Float8 d0 = features[0].distances, d1 = features[1].distances;
    const Float8 d2 = features[2].distances, d3 = features[3].distances;
    const Float8 lower01 = min(d0, d1), lower23 = min(d2, d3);
    const Float8 lowest = min(lower01, lower23);
    const Float8 next = min(max(lower01, lower23), min(max(d0, d1), max(d2, d3)));
    const float first = lowestLane(lowest);
    const Mask8 isFirst = lowest == Float8(first);
    const int firstLanes = laneBits(isFirst);
    const bool twoLanes = (firstLanes & (firstLanes - 1)) != 0;
    const float second = twoLanes ? first : lowestLane(select(isFirst, next, lowest));

    const auto rowsAt = [&](float distance) {
        unsigned rows = 0;
        for (int i = 0; i < kNearLanes / 8; ++i)
            rows |= static_cast<unsigned>(laneBits(features[i].distances == Float8(distance))) << (8 * i);
        return rows;
    };
    std::int32_t seeds[kNearLanes];
    for (int i = 0; i < kNearLanes / 8; ++i)
        features[i].seeds.store(seeds + 8 * i);
    const auto seedOf = [&seeds](unsigned rows, float distance) {
        return distance < kFarthestFeature ? static_cast<std::uint32_t>(seeds[__builtin_ctz(rows)]) : 0u;
    };
    const unsigned firstRows = rowsAt(first);
    const unsigned secondRows = second == first ? firstRows & (firstRows - 1) : rowsAt(second);
    return {first, second, seedOf(firstRows, first), seedOf(secondRows, second)};
}

inline NearestFeatures nearestOnLanes(float x, float y, float z, float randomness)
{
    SearchedPoint point;
    point.randomness = randomness;
    const float coordinates[3] = {x, y, z};
    for (int axis = 0; axis < 3; ++axis)
        point.toMiddle[axis] = 0.5f - coordinates[axis];
    const Float4 p(x, y, z, 0.0f);
    std::int32_t cells[4];
    cellIndex(floor(p)).store(cells);
    for (int axis = 0; axis < 3; ++axis)
        point.cell[axis] = cells[axis];

    NearestFeatures found{kFarthestFeature, kFarthestFeature, 0, 0};
    int row = 0;
    if (allLanes(abs(p) < kFarthestPointOnLanes)) [[likely]] {
        found = nearestOfNearRows(point);
        row = kNearRows;
    }
    walkRows(found, point, row);
    return found;
}

constexpr LeatherFeatureKernels kLeatherFeaturesOnLanes{nearestOnLanes};

} // namespace
} // namespace nezaiva
