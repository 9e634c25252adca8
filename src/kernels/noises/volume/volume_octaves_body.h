// What all Perlin forms share, written on the lanes of volume_lanes_base.h or volume_lanes_avx2.h, one
// of which is included before.
#pragma once

#include "kernels/noises/volume/volume_lattice_body.h"

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

// (x, y, time) of a two-dimensional place (x, y, -, time).
inline Four timeAsThird(Four place)
{
    return _mm_shuffle_ps(place, place, _MM_SHUFFLE(3, 3, 1, 0));
}

} // namespace
} // namespace nezaiva
