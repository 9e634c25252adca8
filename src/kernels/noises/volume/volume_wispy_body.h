// The wispy Perlin fractals, on lanes.
//
// Each octave moves the points of all octaves behind it, so octaves wait for one another, and the
// time of a sample is that of this chain: place the point, the splines along x, y and z, move the
// point. A move that differs in the last place would grow from octave to octave; whatever is on the
// chain is therefore the formula, operation for operation, while the noise that is summed up leaves
// the chain and takes a cheaper form. All lengths are in cells, 32 to a unit: such factors round
// nothing. A coordinate that becomes infinite by it was whole before, and has the same place.
//
// The chain is short because a point's cell is guessed before the point is known, see placeNear.
#pragma once

#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_octaves_body.h"

namespace nezaiva {
namespace {

// The spline as the formula has it, operation for operation.
struct FormulaAxis {
    Float4 t;

    Float4 operator()(Float4 a, Float4 b, Float4 c) const
    {
        const Float4 difference = a - b;
        const Float4 bend = (a - (b + b)) + c;
        return (bend * t - (difference + difference)) * t + (a + b);
    }
};

struct FormulaSpline {
    Float4 t;

    explicit FormulaSpline(Float4 fractions) : t(fractions) {}

    template <int Axis>
    FormulaAxis axis() const
    {
        return {spread<Axis>(t)};
    }
    // Through the first three lanes, in all lanes.
    template <int Axis>
    Float4 across(Float4 row) const
    {
        return axis<Axis>()(spread<0>(row), spread<1>(row), spread<2>(row));
    }
};

// Where the levels come from. The kernels for as many as the table has make no call, which keeps
// everything in registers.
struct TabledWispyLevels {
    const WispyLevel* following;

    const WispyLevel& next() { return *following++; }
};

struct ComputedWispyLevels {
    const NoiseTables& noise;
    void (*moveOn)(const NoiseTables&, WispyLevel&);
    WispyLevel level = kBeforeFirstWispyLevel;

    const WispyLevel& next()
    {
        moveOn(noise, level);
        return level;
    }
};

// (time * rate + level / 2) along the direction; the halves of the level and of the direction cancel.
inline Float4 wispyDrift(const WispyLevel& level, Float4 point)
{
    constexpr float kTwiceTheRate = kWispyDriftRate * (2.0f / kUnitCells); // the time is 32-fold too
    const Float4 steps = spread<3>(point) * kTwiceTheRate + Float4::load(level.number);
    return Float4::load(level.halfDirection) * steps;
}

// The sum of the octaves of `noise`, a function of a point in the scale `noiseScale`. The lattice, in the
// scale `latticeScale`, warps.
template <class Lattice, class Noise, class Levels>
float sumWispy(const VolumeFractal& fractal, float noiseScale, const Lattice& lattice, float latticeScale,
               Levels levels, Float4 start, const Noise& noise)
{
    OctaveSum sum(fractal, noiseScale);
    if (fractal.depthMax <= 0) return biasedEnd(fractal, sum.sum);
    const Float4 narrowing = kWispyNarrowing;
    const Float4 half = 0.5f;
    const Float4 scale = kWispyWarp * latticeScale;
    const Float4 growth = octaveGrowth(fractal.frequencyRatio);
    const WispyLevel& first = levels.next();
    Float4 halfDirection = Float4::load(first.halfDirection);
    Float4 point = start * kUnitCells;
    Float4 place = point + Float4::load(first.shift);
    Float4 warped = place * narrowing + wispyDrift(first, point);
    Float4 guess = warped - half;
    Float4 summed = point;
    for (int level = 1;; ++level) {
        const Place at = placeNear(lattice, warped, guess);
        const Float4 warp = Lattice::template interpolate<FormulaSpline>(at.neighbours, at.fractions);
        const Float4 move = halfDirection * (warp * scale);
        // The noise of an octave comes when the next one's warp is on its way.
        if (level > 1) sum.add(noise(summed));
        summed = place + (move + move);
        if (level == fractal.depthMax) break;
        const WispyLevel& next = levels.next();
        const Float4 shift = Float4::load(next.shift);
        const Float4 still = point * growth; // where the point would be without the warp
        const Float4 drift = wispyDrift(next, still);
        // The lines below from the warp to the next point, in one multiplication and one addition.
        guess = warp * (halfDirection * (growth * (scale * narrowing))) +
                ((still + shift) * narrowing + (drift - half));
        halfDirection = Float4::load(next.halfDirection);
        point = (point + move) * growth;
        place = point + shift;
        warped = place * narrowing + drift;
    }
    sum.add(noise(summed));
    return biasedEnd(fractal, sum.sum);
}

template <class Levels>
float wispy3d(const VolumeTables& tables, const PerlinVolume& noise, const Levels& levels, Float4 start)
{
    const SpaceLattice space{*tables.splines};
    if (noise.timeNoise) {
        const auto animated = [&](Float4 point) {
            const Float4 inUnits = point * (1.0f / kUnitCells);
            return latticeNoise4(*tables.noise, inUnits, noise.timePeriod);
        };
        return sumWispy(noise.fractal, 1.0f, space, kLattice3Scale, levels, start, animated);
    }
    return sumWispy(noise.fractal, kLattice3Scale, space, kLattice3Scale, levels, start,
                    [&](Float4 point) { return latticeNoise(space, point); });
}

template <class Levels>
float wispy2d(const VolumeTables& tables, const PerlinVolume& noise, const Levels& levels, Float4 start)
{
    const PlaneLattice plane{*tables.splines};
    if (noise.timeNoise) {
        const SpaceLattice space{*tables.splines};
        return sumWispy(noise.fractal, kLattice3Scale, plane, kLattice2Scale, levels, start,
                        [&](Float4 point) { return latticeNoise(space, timeAsThird(point)); });
    }
    return sumWispy(noise.fractal, kLattice2Scale, plane, kLattice2Scale, levels, start,
                    [&](Float4 point) { return latticeNoise(plane, point); });
}

[[gnu::noinline]] inline float deepWispy3d(const VolumeTables& tables, const PerlinVolume& noise,
                                           Float4 start)
{
    return wispy3d(tables, noise, ComputedWispyLevels{*tables.noise, nextWispyLevel3d}, start);
}

[[gnu::noinline]] inline float deepWispy2d(const VolumeTables& tables, const PerlinVolume& noise,
                                           Float4 start)
{
    return wispy2d(tables, noise, ComputedWispyLevels{*tables.noise, nextWispyLevel2d}, start);
}

inline float wispy3d(const VolumeTables& tables, const PerlinVolume& noise, Float4 start)
{
    if (noise.fractal.depthMax > kTabledWispyLevels) return deepWispy3d(tables, noise, start);
    return wispy3d(tables, noise, TabledWispyLevels{tables.wispyLevels.space}, start);
}

inline float wispy2d(const VolumeTables& tables, const PerlinVolume& noise, Float4 start)
{
    if (noise.fractal.depthMax > kTabledWispyLevels) return deepWispy2d(tables, noise, start);
    return wispy2d(tables, noise, TabledWispyLevels{tables.wispyLevels.plane}, start);
}

} // namespace
} // namespace nezaiva
