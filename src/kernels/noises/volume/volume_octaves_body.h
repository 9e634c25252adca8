// What all Perlin forms share, on lanes.
#pragma once

#include "kernels/noises/volume/volume_lattice_body.h"

namespace nezaiva {
namespace {

// The weighted sum of the octaves.
struct OctaveSum {
    float amplitude;
    float ratio;
    Int4 keptBits; // all but the sign, for octaves folded into their absolute value
    float sum;

    // The scale of the lattice is a power of two: where it is multiplied in makes no difference.
    OctaveSum(const VolumeFractal& fractal, float scale)
        : amplitude(fractal.amplitude * scale), ratio(fractal.ratio),
          keptBits(fractal.inflection ? 0x7fffffff : -1), sum(0.0f)
    {
    }
    void add(Float4 octave)
    {
        sum += lane<0>(keepBits(octave, keptBits)) * amplitude;
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
inline Float4 octaveGrowth(float frequencyRatio)
{
    const float ratio = frequencyRatio <= 0.0f ? 1.0f : frequencyRatio;
    const Float4 all = ratio;
    return shuffled<0, 0, 0, 1>(all, interleaved(all, sqrt(all)));
}

// (x, y, time) of a two-dimensional place (x, y, -, time).
inline Float4 timeAsThird(Float4 place)
{
    return shuffled<0, 1, 3, 3>(place, place);
}

} // namespace
} // namespace nezaiva
