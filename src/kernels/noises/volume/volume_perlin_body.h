// The Perlin and space-time fractals, on lanes.
//
// A point and its time are four lanes; two octaves make eight, since their positions are known in
// advance. Those of the wispy form are not: volume_wispy_body.h.
#pragma once

#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_octaves_body.h"
#include "kernels/noises/volume/volume_wispy_body.h"

namespace nezaiva {
namespace {

// Where the directions of the levels come from. The kernels for as many levels as the table has make
// no call, which keeps everything in registers.
struct TabledDirections {
    const float (*table)[4];

    Float4 operator()(int level) const { return Float4::load(table[level]); }
};

struct ComputedDirections {
    const NoiseTables& noise;
    void (*compute)(const NoiseTables&, int, float*);

    Float4 operator()(int level) const
    {
        alignas(16) float direction[4];
        compute(noise, level, direction);
        return Float4::load(direction);
    }
};

// The walk through the octaves: point (x, y, z, time), the shifts that grow before use.
template <class Directions>
struct OctaveWalk {
    Directions directions;
    Float4 point;
    Float4 shiftStep;
    Float4 growth;
    Float4 shift = 0.0f;
    int level = 0;

    // Along the level's direction, with time and from level to level.
    Float4 drift(Float4 direction) const
    {
        return direction * (spread<3>(point) * kDriftRate + static_cast<float>(level) * kDriftOfLevel);
    }
    Float4 shifted()
    {
        shift = shift + shiftStep;
        return point + shift;
    }
    void grow()
    {
        point = point * growth;
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
        const Float4 first = position(walk);
        if (walk.level == fractal.depthMax) {
            sum.add(lattice(first));
            break;
        }
        const Float8 octaves = lattice(Float8(first, position(walk)));
        sum.add(lowHalf(octaves));
        sum.add(highHalf(octaves));
    }
    return biasedEnd(fractal, sum.sum);
}

// The lattices as functions of places in units, of one or of two.
template <class Lattice>
struct StillOctaves {
    Lattice lattice;

    Float4 operator()(Float4 place) const { return latticeNoise(lattice, place * kUnitCells); }
    Float8 operator()(Float8 places) const { return latticeNoise(lattice, places); }
};

struct AnimatedOctaves {
    const NoiseTables& noise;
    int period;

    Float4 operator()(Float4 place) const { return latticeNoise4(noise, place, period); }
    Float8 operator()(Float8 places) const { return latticeNoise4(noise, places, period); }
};

template <class Directions>
float perlin3d(const VolumeTables& tables, const PerlinVolume& noise, const Directions& directions, float x,
               float y, float z, float time)
{
    const OctaveWalk<Directions> walk{directions, Float4(x, y, z, time), Float4::load(kPerlinShifts3d),
                                      octaveGrowth(noise.fractal.frequencyRatio)};
    const VolumeFractal& fractal = noise.fractal;
    if (noise.spaceTime || noise.timeNoise) {
        const Float4 rate = Float4(1.0f, 1.0f, 1.0f, noise.spaceTime ? kSpaceTimeRate : 1.0f);
        const auto position = [&](auto& octave) {
            const Float4 place = octave.shifted() * rate;
            octave.grow();
            return place;
        };
        return sumPairs(fractal, 1.0f, walk, position, AnimatedOctaves{*tables.noise, noise.timePeriod});
    }
    const auto position = [](auto& octave) {
        const Float4 drift = octave.drift(octave.directions(octave.level));
        const Float4 place = octave.shifted() + drift;
        octave.grow();
        return place;
    };
    return sumPairs(fractal, kLattice3Scale, walk, position, StillOctaves<SpaceLattice>{{*tables.splines}});
}

template <class Directions>
float perlin2d(const VolumeTables& tables, const PerlinVolume& noise, const Directions& directions, float x,
               float y, float time)
{
    const OctaveWalk<Directions> walk{directions, Float4(x, y, 0.0f, time), Float4::load(kPerlinShifts2d),
                                      octaveGrowth(noise.fractal.frequencyRatio)};
    const VolumeFractal& fractal = noise.fractal;
    if (noise.spaceTime) {
        const Float4 rate = Float4(1.0f, 1.0f, 1.0f, kSpaceTimeRate);
        const auto position = [&](auto& octave) {
            const Float4 place = timeAsThird(octave.shifted() * rate);
            octave.grow();
            return place;
        };
        return sumPairs(fractal, kLattice3Scale, walk, position,
                        StillOctaves<SpaceLattice>{{*tables.splines}});
    }
    // Kept as is: timeNoise has no branch here; in two dimensions only the wispy form knows it.
    const auto position = [](auto& octave) {
        const Float4 drift = octave.drift(octave.directions(octave.level));
        const Float4 place = octave.shifted() + drift;
        octave.grow();
        return place;
    };
    return sumPairs(fractal, kLattice2Scale, walk, position, StillOctaves<PlaneLattice>{{*tables.splines}});
}

[[gnu::noinline]] inline float deepPerlin3d(const VolumeTables& tables, const PerlinVolume& noise, float x,
                                            float y, float z, float time)
{
    return perlin3d(tables, noise, ComputedDirections{*tables.noise, volumeDirection3d}, x, y, z, time);
}

[[gnu::noinline]] inline float deepPerlin2d(const VolumeTables& tables, const PerlinVolume& noise, float x,
                                            float y, float time)
{
    return perlin2d(tables, noise, ComputedDirections{*tables.noise, volumeDirection2d}, x, y, time);
}

inline float perlin3d(const VolumeTables& tables, const PerlinVolume& noise, const VolumePoint& point,
                      float time)
{
    const auto& [x, y, z] = point;
    if (noise.wispy) return wispy3d(tables, noise, Float4(x, y, z, time));
    if (noise.fractal.depthMax > kTabledLevels) return deepPerlin3d(tables, noise, x, y, z, time);
    return perlin3d(tables, noise, TabledDirections{tables.directions3d}, x, y, z, time);
}

inline float perlin2d(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float time)
{
    if (noise.wispy) return wispy2d(tables, noise, Float4(x, y, 0.0f, time));
    if (noise.fractal.depthMax > kTabledLevels) return deepPerlin2d(tables, noise, x, y, time);
    return perlin2d(tables, noise, TabledDirections{tables.directions2d}, x, y, time);
}

constexpr VolumeKernels<PerlinVolume> kPerlinVolume{perlin3d, perlin2d};

} // namespace
} // namespace nezaiva
