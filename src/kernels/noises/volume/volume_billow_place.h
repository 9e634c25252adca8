// Where a point lies among the cells of the billow, on lanes.
//
// On each axis a point in the lower half of a cell has the cell below beside it, and one in the upper
// half the cell above; the neighbour on the other side is far.
#pragma once

#include "kernels/noises/volume/volume_billow_motion.h"
#include "kernels/noises/volume/volume_constants.h"

namespace nezaiva {
namespace {

// The cells around a half cell, along one axis, wrapped.
struct Around {
    int own, beside, far;
    int lower; // of own and beside the one that the other follows
};

// The fraction of a tiny negative number rounds to 1, so that there is a half cell behind the last.
constexpr int kHalfCells = 2 * kBillowCells + 1;
struct AroundCells {
    Around of[kHalfCells];
};

// The cells times a stride.
constexpr AroundCells cellsAround(int stride)
{
    AroundCells around{};
    for (int half = 0; half < kHalfCells; ++half) {
        const int own = half / 2;
        const int step = half % 2 == 0 ? -1 : 1;
        const auto wrapped = [=](int cell) { return (cell + kBillowCells) % kBillowCells * stride; };
        around.of[half] = {wrapped(own), wrapped(own + step), wrapped(own - step),
                           wrapped(step < 0 ? own - 1 : own)};
    }
    return around;
}

// In floats of the tables.
constexpr int kQuadFloats = sizeof(BillowQuad) / sizeof(float);
constexpr AroundCells kAroundX = cellsAround(kQuadFloats);
constexpr AroundCells kAroundY = cellsAround(kQuadFloats * kBillowCells);
constexpr AroundCells kAroundZ = cellsAround(kQuadFloats * kBillowPlane);

// The places of the point in a few octaves. They are found together and first, so that no octave waits
// for its own.
constexpr int kOctaves = 4;
struct Places {
    // The point as it is seen from the four blobs of a quad: of the near quad, where own and beside of
    // both axes meet, and of the far ones: two blobs far along x, then two far along y.
    alignas(32) float nearX[kOctaves][4];
    float nearY[kOctaves][4];
    float farX[kOctaves][4];
    float farY[kOctaves][4];
    // And from the planes of cells, four times each.
    float ownZ[kOctaves][4];
    float besideZ[kOctaves][4];
    float farZ[kOctaves][4];
    int halves[kOctaves][4]; // the half cells of x, y, z
    Turns turns[kOctaves];
    float sums[kOctaves]; // of the heights of the blobs
};

struct AroundPlace {
    const Around &x, &y, &z;
};

inline AroundPlace around(const Places& places, int octave)
{
    const int* const halves = places.halves[octave];
    return {kAroundX.of[halves[0]], kAroundY.of[halves[1]], kAroundZ.of[halves[2]]};
}

// Two octaves, from the lanes x, y, z of both.
inline void placeTwo(Float8 positions, Places& places, int octave)
{
    const Float8 c = fraction(positions) * static_cast<float>(kBillowCells);
    const Int8 halves = toInt(c + c);
    halves.store(places.halves[octave]);
    const Float8 own = (c - toFloat(shiftedRightUnsigned(halves, 1))) - 0.5f;
    const Float8 step = setBits(keepBits(own, bitsOf(Float8(-0.0f))), bitsOf(Float8(1.0f)));
    const Float8 beside = own - step;
    const Float8 far = own + step;
    // From the lower cell of the two the distance is the greater.
    const Float8 both = interleaved(max(own, beside), min(own, beside)); // x, x, y, y
    shuffled<0, 1, 0, 1>(both, both).store(places.nearX[octave]);
    shuffled<2, 2, 3, 3>(both, both).store(places.nearY[octave]);
    shuffled<0, 0, 0, 1>(far, both).store(places.farX[octave]);
    shuffled<2, 3, 1, 1>(both, far).store(places.farY[octave]);
    spread<2>(own).store(places.ownZ[octave]);
    spread<2>(beside).store(places.besideZ[octave]);
    spread<2>(far).store(places.farZ[octave]);
}

// How an evaluation moves on from octave to octave.
struct Course {
    Float8 point;
    Float4 shift;
    float factor, growth;
    float time, timeGrowth;
};

// Places the next octaves, an even number, and moves on behind them.
inline void placeOctaves(Course& course, int octaves, Places& places)
{
    const Float4 step = Float4::load(kBlobAndWaveShifts);
    for (int octave = 0; octave < octaves; octave += 2) {
        const Float4 shift = course.shift + step;
        course.shift = shift + step;
        const float factor = course.factor * course.growth;
        const Float8 factors = Float8(Float4(course.factor), Float4(factor));
        placeTwo(course.point * factors + Float8(shift, course.shift), places, octave);
        course.factor = factor * course.growth;
    }
}

// Turns the blobs of the next octaves in the way that all of them need, which is returned.
inline Motion turnOctaves(Course& course, int octaves, Float8 reach, Places& places)
{
    Motion kind = Motion::None;
    float times[kOctaves];
    for (int octave = 0; octave < octaves; ++octave) {
        times[octave] = course.time;
        const Motion own = motionOf(course.time);
        kind = own > kind ? own : kind;
        course.time *= course.timeGrowth;
    }
    if (kind != Motion::None)
        for (int octave = 0; octave < octaves; ++octave)
            turnBy(times[octave], reach, kind, places.turns[octave]);
    return kind;
}

} // namespace
} // namespace nezaiva
