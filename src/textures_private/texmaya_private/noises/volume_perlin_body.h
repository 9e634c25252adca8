// The Perlin and space-time fractals, written once on the lanes of volume_lanes_base.h or
// volume_lanes_avx2.h, one of which is included before.
//
// A point and its time are four lanes; two octaves make eight. Octaves whose positions are known in
// advance go in pairs. The positions of the wispy form depend on the octave before, so there the
// noise of one octave pairs with the warp of the next. The order of operations on each value is that
// of the formulas, so the results are those of a plain evaluation, bit for bit.
#pragma once

#include "volume_kernels.h"

namespace nezaiva {
namespace {

constexpr int kPlaneStride = kLatticeSide * kLatticeRowStride;

inline Four fourOf(float x, float y, float z, float w)
{
    return _mm_setr_ps(x, y, z, w);
}

inline float firstLane(Four a)
{
    return _mm_cvtss_f32(a);
}

// A place between two knots, as the spline wants it.
struct Place {
    Eight half, twice;
};

inline Place placeOf(Eight t)
{
    return {t * broadcast(0.5f), t + t};
}

// Twice the uniform quadratic B-spline: a + b + ((a - 2b + c) t - 2 (a - b)) t, its factors of two
// moved to where they cost nothing; multiplication by two rounds nothing.
inline Eight spline(Eight a, Eight b, Eight c, Place t)
{
    const Eight bend = (a - (b + b)) + c;
    return (a + b) + (bend * t.half - (a - b)) * t.twice;
}

// The spline through the first three lanes of each half, in the first lane of each.
inline Eight splineAcross(Eight row, Place t)
{
    return spline(row, spread<1>(row), spread<2>(row), t);
}

template <int Axis>
Place axisPlace(Eight fractions)
{
    return placeOf(spread<Axis>(fractions));
}

struct StillRow {
    Eight operator()(Eight row) const { return row; }
};

// The animated value of each grid point: it runs through a pseudo-random sequence in time.
struct AnimatedRow {
    Eight m0, m1, m2;
    Place time;

    static Eight fraction(Eight a) { return a - truncated(a); }
    Eight operator()(Eight row) const
    {
        const Eight c = row + broadcast(2.0f);
        return spline(fraction(m0 * c), fraction(m1 * c), fraction(m2 * c), time);
    }
};

// The splines over the 27 grid points at the two corners.
template <class Row>
Eight splineInSpace(const NoiseTables& noise, CornerOffsets corners, Eight t, const Row& row)
{
    const float* low = &noise.space[0][0][0] + corners.low;
    const float* high = &noise.space[0][0][0] + corners.high;
    const Place tx = axisPlace<0>(t);
    const auto at = [&](int offset) { return row(load(low + offset, high + offset)); };
    const auto alongX = [&](int y) {
        const int offset = y * kLatticeRowStride;
        return spline(at(offset), at(offset + kPlaneStride), at(offset + 2 * kPlaneStride), tx);
    };
    const Eight r0 = alongX(0);
    const Eight r1 = alongX(1);
    const Eight r2 = alongX(2);
    return splineAcross(spline(r0, r1, r2, axisPlace<1>(t)), axisPlace<2>(t));
}

// The three-dimensional noise at two points, in the first lane of each half.
inline Eight lattice3(const NoiseTables& noise, Eight points)
{
    const Eight f = unitFraction(points) * broadcast(32.0f);
    const CornerOffsets corners = cornerOffsets(f, kPlaneStride, kLatticeRowStride, 1);
    return splineInSpace(noise, corners, f - truncated(f), StillRow{}) * broadcast(0.125f);
}

inline Eight lattice2(const NoiseTables& noise, Eight points)
{
    const Eight f = unitFraction(points) * broadcast(32.0f);
    const Eight t = f - truncated(f);
    const CornerOffsets corners = cornerOffsets(f, kLatticeRowStride, 1, 0);
    const float* low = &noise.plane[0][0] + corners.low;
    const float* high = &noise.plane[0][0] + corners.high;
    const auto at = [&](int offset) { return load(low + offset, high + offset); };
    const Eight row = spline(at(0), at(kLatticeRowStride), at(2 * kLatticeRowStride), axisPlace<0>(t));
    return splineAcross(row, axisPlace<1>(t)) * broadcast(0.25f);
}

// The four-dimensional noise: the fourth lane is time, on `period` steps.
inline Eight lattice4(const NoiseTables& noise, Eight points, int period)
{
    const auto steps = static_cast<float>(period < 60000 ? period : 60000);
    const Four cells = fourOf(32.0f, 32.0f, 32.0f, steps);
    const Eight f = unitFraction(points) * combine(cells, cells);
    const Eight t = f - truncated(f); // the steps lie in -2^31..60000
    const auto firstStep = [](Four half) { return _mm_cvttss_si32(spread<3>(half)); };
    const int low = firstStep(lowHalf(f));
    const int high = firstStep(highHalf(f));
    const auto sequence = [&](int offset) {
        const float atLow = (randomValue(noise, low + offset) + 1.0f) * 21568.16f;
        const float atHigh = (randomValue(noise, high + offset) + 1.0f) * 21568.16f;
        return combine(_mm_set1_ps(atLow), _mm_set1_ps(atHigh));
    };
    const AnimatedRow row{sequence(0), sequence(1), sequence(2), axisPlace<3>(t)};
    const CornerOffsets corners = cornerOffsets(f, kPlaneStride, kLatticeRowStride, 1);
    return splineInSpace(noise, corners, t, row) * broadcast(0.125f) - broadcast(1.0f);
}

// The weighted sum of the octaves.
struct OctaveSum {
    float amplitude;
    float ratio;
    Four keptBits; // all but the sign, for octaves folded into their absolute value
    float sum;

    explicit OctaveSum(const VolumeFractal& fractal)
        : amplitude(fractal.amplitude), ratio(fractal.ratio),
          keptBits(_mm_castsi128_ps(_mm_set1_epi32(fractal.inflection ? 0x7fffffff : -1))), sum(0.0f)
    {
    }
    void add(Four octave)
    {
        sum += firstLane(_mm_and_ps(octave, keptBits)) * amplitude;
        amplitude *= ratio;
    }
};

// The end of every Perlin form; its min(r, 1) lets a NaN pass.
inline float biasedEnd(const VolumeFractal& fractal, float sum)
{
    const float r = fractal.inflection ? sum + fractal.threshold : sum * 0.5f + 0.5f + fractal.threshold;
    return r > 1.0f ? 1.0f : r;
}

// The growth from octave to octave: that of the point, and its square root for the time.
inline Four octaveGrowth(float frequencyRatio)
{
    const float ratio = frequencyRatio <= 0.0f ? 1.0f : frequencyRatio;
    return fourOf(ratio, ratio, ratio, firstLane(_mm_sqrt_ss(_mm_set_ss(ratio))));
}

// Where the directions of the levels come from. The kernels for as many levels as the table has make
// no call, which keeps everything in registers.
struct TabledDirections {
    const float (*table)[4];

    Four operator()(int level) const { return _mm_load_ps(table[level]); }
};

struct ComputedDirections {
    const NoiseTables& noise;
    void (*compute)(const NoiseTables&, int, float*);

    Four operator()(int level) const
    {
        alignas(16) float direction[4];
        compute(noise, level, direction);
        return _mm_load_ps(direction);
    }
};

// The walk through the octaves: point (x, y, z, time), the shifts that grow before use.
template <class Directions>
struct OctaveWalk {
    Directions directions;
    Four point;
    Four shiftStep;
    Four growth;
    Four shift = _mm_setzero_ps();
    int level = 0;

    // time * rate + level * 0.5 along the level's direction.
    Four drift(Four direction, float rate) const
    {
        const Four s = _mm_add_ps(_mm_mul_ps(spread<3>(point), _mm_set1_ps(rate)),
                                  _mm_set1_ps(static_cast<float>(level) * 0.5f));
        return _mm_mul_ps(direction, s);
    }
    Four shifted()
    {
        shift = _mm_add_ps(shift, shiftStep);
        return _mm_add_ps(point, shift);
    }
    void grow()
    {
        point = _mm_mul_ps(point, growth);
        ++level;
    }
};

// The octaves in pairs. position(walk) gives an octave's place in the lattice and moves the walk on.
template <class Walk, class Position, class Lattice>
float sumPairs(const VolumeFractal& fractal, Walk walk, const Position& position, const Lattice& lattice)
{
    OctaveSum sum(fractal);
    while (walk.level < fractal.depthMax) {
        const Four first = position(walk);
        if (walk.level == fractal.depthMax) {
            sum.add(lowHalf(lattice(combine(first, first))));
            break;
        }
        const Four second = position(walk);
        const Eight octaves = lattice(combine(first, second));
        sum.add(lowHalf(octaves));
        sum.add(highHalf(octaves));
    }
    return biasedEnd(fractal, sum.sum);
}

// The wispy octaves. A point's warp carries over into the octaves behind it, so octaves wait for one
// another; warp(points) is the warping lattice, noise(points) the one that is summed up, and
// both(place, warped) evaluates the one at the first point and the other at the second.
struct WispyOctave {
    Four direction, place, warped;
};

template <class Walk>
WispyOctave wispyOctave(Walk& walk)
{
    const Four direction = walk.directions(walk.level);
    const Four place = walk.shifted();
    const Four warped = _mm_add_ps(_mm_mul_ps(place, _mm_set1_ps(0.1f)), walk.drift(direction, 0.01875f));
    return {direction, place, warped};
}

// The octave's place moved by its warp; the walk goes on from the point moved by half of it.
template <class Walk>
Four wispyPlace(Walk& walk, const WispyOctave& octave, Four warp)
{
    const Four w = _mm_mul_ps(spread<0>(warp), _mm_set1_ps(0.3125f));
    const Four move = _mm_mul_ps(octave.direction, w);
    walk.point = _mm_add_ps(walk.point, _mm_mul_ps(move, _mm_set1_ps(0.5f)));
    const Four place = _mm_add_ps(octave.place, move);
    return place;
}

template <class Walk, class Warp, class Pair>
float sumWispy(const VolumeFractal& fractal, Walk walk, const Warp& warp, const Pair& pair)
{
    OctaveSum sum(fractal);
    if (fractal.depthMax <= 0) return biasedEnd(fractal, sum.sum);
    WispyOctave octave = wispyOctave(walk);
    Four warped = lowHalf(warp(combine(octave.warped, octave.warped)));
    for (;;) {
        const Four place = wispyPlace(walk, octave, warped);
        walk.grow();
        if (walk.level == fractal.depthMax) {
            sum.add(lowHalf(pair(place, place)));
            return biasedEnd(fractal, sum.sum);
        }
        octave = wispyOctave(walk);
        const Eight both = pair(place, octave.warped);
        sum.add(lowHalf(both));
        warped = highHalf(both);
    }
}

template <class Directions>
float perlin3d(const NoiseTables& table, const PerlinVolume& noise, const Directions& directions, float x,
               float y, float z, float time)
{
    const OctaveWalk<Directions> walk{directions, fourOf(x, y, z, time), fourOf(0.02f, 0.3f, 0.01f, 0.0f),
                                      octaveGrowth(noise.fractal.frequencyRatio)};
    const auto still = [&](Eight points) { return lattice3(table, points); };
    const auto animated = [&](Eight points) { return lattice4(table, points, noise.timePeriod); };
    if (noise.wispy && noise.timeNoise) {
        return sumWispy(noise.fractal, walk, still, [&](Four place, Four warped) {
            return combine(lowHalf(animated(combine(place, place))), lowHalf(still(combine(warped, warped))));
        });
    }
    if (noise.wispy) {
        return sumWispy(noise.fractal, walk, still,
                        [&](Four place, Four warped) { return still(combine(place, warped)); });
    }
    if (noise.spaceTime || noise.timeNoise) {
        const Four rate = fourOf(1.0f, 1.0f, 1.0f, noise.spaceTime ? 0.1f : 1.0f);
        const auto position = [&](auto& octave) {
            const Four place = _mm_mul_ps(octave.shifted(), rate);
            octave.grow();
            return place;
        };
        return sumPairs(noise.fractal, walk, position, animated);
    }
    const auto position = [](auto& octave) {
        const Four drift = octave.drift(octave.directions(octave.level), 0.0625f);
        const Four place = _mm_add_ps(octave.shifted(), drift);
        octave.grow();
        return place;
    };
    return sumPairs(noise.fractal, walk, position, still);
}

// (x, y, time) of a two-dimensional place (x, y, -, time).
inline Four timeAsThird(Four place)
{
    return _mm_shuffle_ps(place, place, _MM_SHUFFLE(3, 3, 1, 0));
}

template <class Directions>
float perlin2d(const NoiseTables& table, const PerlinVolume& noise, const Directions& directions, float x,
               float y, float time)
{
    const OctaveWalk<Directions> walk{directions, fourOf(x, y, 0.0f, time), fourOf(0.02f, 0.3f, 0.0f, 0.0f),
                                      octaveGrowth(noise.fractal.frequencyRatio)};
    const auto still = [&](Eight points) { return lattice2(table, points); };
    const auto timed = [&](Eight points) { return lattice3(table, points); };
    if (noise.wispy && noise.timeNoise) {
        return sumWispy(noise.fractal, walk, still, [&](Four place, Four warped) {
            const Four third = timeAsThird(place);
            return combine(lowHalf(timed(combine(third, third))), lowHalf(still(combine(warped, warped))));
        });
    }
    if (noise.wispy) {
        return sumWispy(noise.fractal, walk, still,
                        [&](Four place, Four warped) { return still(combine(place, warped)); });
    }
    if (noise.spaceTime) {
        const Four rate = fourOf(1.0f, 1.0f, 1.0f, 0.1f);
        const auto position = [&](auto& octave) {
            const Four place = timeAsThird(_mm_mul_ps(octave.shifted(), rate));
            octave.grow();
            return place;
        };
        return sumPairs(noise.fractal, walk, position, timed);
    }
    // Kept as is: timeNoise has no branch here; in two dimensions only the wispy form knows it.
    const auto position = [](auto& octave) {
        const Four drift = octave.drift(octave.directions(octave.level), 0.0625f);
        const Four place = _mm_add_ps(octave.shifted(), drift);
        octave.grow();
        return place;
    };
    return sumPairs(noise.fractal, walk, position, still);
}

[[gnu::noinline]] inline float deepPerlin3d(const VolumeTables& tables, const PerlinVolume& noise, float x,
                                            float y, float z, float time)
{
    const NoiseTables& table = *tables.noise;
    return perlin3d(table, noise, ComputedDirections{table, volumeDirection3d}, x, y, z, time);
}

[[gnu::noinline]] inline float deepPerlin2d(const VolumeTables& tables, const PerlinVolume& noise, float x,
                                            float y, float time)
{
    const NoiseTables& table = *tables.noise;
    return perlin2d(table, noise, ComputedDirections{table, volumeDirection2d}, x, y, time);
}

inline float perlin3d(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float z,
                      float time)
{
    if (noise.fractal.depthMax > kTabledLevels) return deepPerlin3d(tables, noise, x, y, z, time);
    return perlin3d(*tables.noise, noise, TabledDirections{tables.directions3d}, x, y, z, time);
}

inline float perlin2d(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float time)
{
    if (noise.fractal.depthMax > kTabledLevels) return deepPerlin2d(tables, noise, x, y, time);
    return perlin2d(*tables.noise, noise, TabledDirections{tables.directions2d}, x, y, time);
}

} // namespace
} // namespace nezaiva
