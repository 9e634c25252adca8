// The Perlin and space-time fractals, written once on the lanes of volume_lanes_base.h or
// volume_lanes_avx2.h, one of which is included before.
//
// A point and its time are four lanes; two octaves make eight. Octaves whose positions are known in
// advance go in pairs. The positions of the wispy form depend on the octave before, so there the
// noise of one octave pairs with the warp of the next. The order of operations on each value is that
// of the formulas, so the results are those of a plain evaluation, bit for bit.
#pragma once

#include "volume_kernels.h"
#include "volume_lattice_body.h"

namespace nezaiva {
namespace {

inline float firstLane(Four a)
{
    return _mm_cvtss_f32(a);
}

// The weighted sum of the octaves.
struct OctaveSum {
    float amplitude;
    float ratio;
    Four keptBits; // all but the sign, for octaves folded into their absolute value
    float sum;

    // The scale of the lattice is a power of two: where it is multiplied in makes no difference.
    OctaveSum(const VolumeFractal& fractal, float scale)
        : amplitude(fractal.amplitude * scale), ratio(fractal.ratio),
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
float sumPairs(const VolumeFractal& fractal, float scale, Walk walk, const Position& position,
               const Lattice& lattice)
{
    OctaveSum sum(fractal, scale);
    while (walk.level < fractal.depthMax) {
        const Four first = position(walk);
        if (walk.level == fractal.depthMax) {
            sum.add(lowHalf(lattice(combine(first, first), OnePoint{})));
            break;
        }
        const Four second = position(walk);
        const Eight octaves = lattice(combine(first, second), TwoPoints{});
        sum.add(lowHalf(octaves));
        sum.add(highHalf(octaves));
    }
    return biasedEnd(fractal, sum.sum);
}

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

// The scales of the two lattices of a wispy octave: that of the warp, 0.3125 times the lattice's own,
// and that of the noise which is summed up.
struct WispyScales {
    float warp, noise;
};

constexpr float kWispyWarp = 0.3125f;

// The octave's place moved by its warp; the walk goes on from the point moved by half of it.
template <class Walk>
Four wispyPlace(Walk& walk, const WispyOctave& octave, Four warp, float scale)
{
    const Four w = _mm_mul_ps(spread<0>(warp), _mm_set1_ps(scale));
    const Four halfDirection = _mm_mul_ps(octave.direction, _mm_set1_ps(0.5f));
    walk.point = _mm_add_ps(walk.point, _mm_mul_ps(halfDirection, w));
    return _mm_add_ps(octave.place, _mm_mul_ps(octave.direction, w));
}

// The wispy octaves. A point's warp carries over into the octaves behind it, so octaves wait for one
// another; warp(points) is the warping lattice, and pair(warped, place) evaluates the warping
// lattice of the next octave at the first point and the summed lattice at the second.
template <class Walk, class Warp, class Pair>
float sumWispy(const VolumeFractal& fractal, WispyScales scales, Walk walk, const Warp& warp,
               const Pair& pair)
{
    OctaveSum sum(fractal, scales.noise);
    if (fractal.depthMax <= 0) return biasedEnd(fractal, sum.sum);
    WispyOctave octave = wispyOctave(walk);
    Four warped = lowHalf(warp(combine(octave.warped, octave.warped)));
    for (;;) {
        const Four place = wispyPlace(walk, octave, warped, scales.warp);
        walk.grow();
        if (walk.level == fractal.depthMax) {
            sum.add(highHalf(pair(place, place)));
            return biasedEnd(fractal, sum.sum);
        }
        octave = wispyOctave(walk);
        // The warp is what the next octave waits for, so it takes the half that is ready first.
        const Eight both = pair(octave.warped, place);
        sum.add(highHalf(both));
        warped = lowHalf(both);
    }
}

template <class Directions>
float perlin3d(const NoiseTables& table, const PerlinVolume& noise, const Directions& directions, float x,
               float y, float z, float time)
{
    const OctaveWalk<Directions> walk{directions, fourOf(x, y, z, time), fourOf(0.02f, 0.3f, 0.01f, 0.0f),
                                      octaveGrowth(noise.fractal.frequencyRatio)};
    const auto exact = [&](Eight points) { return lattice3<ExactSpline>(table, points); };
    const auto still = [&]<class Points>(Eight points, Points) {
        return lattice3<WeightedSpline, Points>(table, points);
    };
    const auto animated = [&](Eight points, auto) { return lattice4(table, points, noise.timePeriod); };
    const VolumeFractal& fractal = noise.fractal;
    if (noise.wispy && noise.timeNoise) {
        return sumWispy(fractal, {kWispyWarp * kLattice3Scale, 1.0f}, walk, exact,
                        [&](Four warped, Four place) {
                            return combine(lowHalf(exact(combine(warped, warped))),
                                           lowHalf(animated(combine(place, place), OnePoint{})));
                        });
    }
    if (noise.wispy) {
        return sumWispy(fractal, {kWispyWarp * kLattice3Scale, kLattice3Scale}, walk, exact,
                        [&](Four warped, Four place) { return exact(combine(warped, place)); });
    }
    if (noise.spaceTime || noise.timeNoise) {
        const Four rate = fourOf(1.0f, 1.0f, 1.0f, noise.spaceTime ? 0.1f : 1.0f);
        const auto position = [&](auto& octave) {
            const Four place = _mm_mul_ps(octave.shifted(), rate);
            octave.grow();
            return place;
        };
        return sumPairs(fractal, 1.0f, walk, position, animated);
    }
    const auto position = [](auto& octave) {
        const Four drift = octave.drift(octave.directions(octave.level), 0.0625f);
        const Four place = _mm_add_ps(octave.shifted(), drift);
        octave.grow();
        return place;
    };
    return sumPairs(fractal, kLattice3Scale, walk, position, still);
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
    const auto exact = [&](Eight points) { return lattice2<ExactSpline>(table, points); };
    const auto still = [&]<class Points>(Eight points, Points) {
        return lattice2<WeightedSpline, Points>(table, points);
    };
    const auto timed = [&]<class Points>(Eight points, Points) {
        return lattice3<WeightedSpline, Points>(table, points);
    };
    const VolumeFractal& fractal = noise.fractal;
    if (noise.wispy && noise.timeNoise) {
        return sumWispy(fractal, {kWispyWarp * kLattice2Scale, kLattice3Scale}, walk, exact,
                        [&](Four warped, Four place) {
                            const Four third = timeAsThird(place);
                            return combine(lowHalf(exact(combine(warped, warped))),
                                           lowHalf(timed(combine(third, third), OnePoint{})));
                        });
    }
    if (noise.wispy) {
        return sumWispy(fractal, {kWispyWarp * kLattice2Scale, kLattice2Scale}, walk, exact,
                        [&](Four warped, Four place) { return exact(combine(warped, place)); });
    }
    if (noise.spaceTime) {
        const Four rate = fourOf(1.0f, 1.0f, 1.0f, 0.1f);
        const auto position = [&](auto& octave) {
            const Four place = timeAsThird(_mm_mul_ps(octave.shifted(), rate));
            octave.grow();
            return place;
        };
        return sumPairs(fractal, kLattice3Scale, walk, position, timed);
    }
    // Kept as is: timeNoise has no branch here; in two dimensions only the wispy form knows it.
    const auto position = [](auto& octave) {
        const Four drift = octave.drift(octave.directions(octave.level), 0.0625f);
        const Four place = _mm_add_ps(octave.shifted(), drift);
        octave.grow();
        return place;
    };
    return sumPairs(fractal, kLattice2Scale, walk, position, still);
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
