// The sums of plane waves of the usual counts, which two registers hold: up to three octaves, and up to
// sixteen waves in all of them. Written once on the lanes of volume_lanes_base.h or volume_lanes_avx2.h,
// one of which is included before.
//
// There are no loops, no calls but to the other form at the end, and no masks: what an octave shares is
// picked for its waves from lanes of octaves, and lanes without a wave pick zeros.
#pragma once

#include "kernels/noises/volume/volume_cosine_body.h"

namespace nezaiva {
namespace {

// The counts of the waves, or null where they are not few, where octaves are folded, and where the
// frequency ratio is none.
inline const FewOctaves* fewOf(const VolumeTables& tables, const CosineVolume& noise)
{
    const VolumeFractal& fractal = noise.fractal;
    const auto level = static_cast<unsigned>(fractal.depthMax - 1);
    const auto wave = static_cast<unsigned>(waveCount(noise) - 1);
    // A positive number has positive bits, which takes no register of lanes to find out.
    int ratioBits;
    __builtin_memcpy(&ratioBits, &fractal.frequencyRatio, sizeof ratioBits);
    if (fractal.inflection || level >= kFewLevels || wave >= kPackedCount || ratioBits <= 0) return nullptr;
    const FewOctaves& few = tables.fewOctaves[level][wave];
    return few.fits ? &few : nullptr;
}

// first, first * ratio, first * ratio * ratio and 0, rounded as one product after the other is.
inline Levels seriesFrom(const WaveConstants& k, Levels first, Levels ratio)
{
    const Levels once = mixedLevels<0b0110>(loadLevels(k.oneOfFour), ratio);
    const Levels again = mixedLevels<0b0100>(loadLevels(k.ones), ratio);
    return first * once * again;
}

// The same from 1.
inline Levels powersOf(const WaveConstants& k, Levels ratio)
{
    const Levels once = mixedLevels<0b0010>(loadLevels(k.oneOfFour), ratio);
    return mixedLevels<0b0100>(once, ratio * ratio);
}

// The turns of time in the octaves.
inline Levels turnsOf(const WaveConstants& k, const VolumeFractal& fractal, float time)
{
    const Levels growth = squareRoot(allLevels(fractal.frequencyRatio));
    return seriesFrom(k, levelsOf(time), growth) * loadLevels(k.pi);
}

// The cosine of angles up to kLargestBriefAngle, within 2e-7. NaN for a NaN.
[[gnu::always_inline]] inline Eight briefCosine(const WaveConstants& k, Eight angles)
{
    const Eight magic = load(k.roundToWhole);
    const Eight counted = angles * load(k.halfTurnsPerRadian) + magic;
    const Eight halfTurns = counted - magic;
    const Eight rest = (angles - halfTurns * load(k.piHigh)) - halfTurns * load(k.piRest);
    const Eight x = rest * rest;
    const Eight xx = x * x;
    const Eight first = load(k.cosine[0]) + x * load(k.cosine[1]);
    const Eight second = load(k.cosine[2]) + x * load(k.cosine[3]);
    return bitXor(first + xx * (second + xx * load(k.cosine[4])), lowestBitAsSign(counted));
}

// The weighted sum of the waves whose angles are given, and whether the angles are small enough for it.
struct FewSum {
    float sum;
    bool holds;
};

[[gnu::always_inline]] inline FewSum weightedSum(const WaveConstants& k, const FewOctaves& few,
                                                 Levels weights, Eight low, Eight high)
{
    const PickedLevels ofOctaves = toPickFrom(weights);
    const Eight sum = briefCosine(k, low) * pickLevels(ofOctaves, few.level) +
                      briefCosine(k, high) * pickLevels(ofOctaves, few.level + 8);
    const Eight largest = maximum(magnitudes(low), magnitudes(high));
    return {sumOfLanes(sum), !anyLane(less(load(k.largestAngle), largest))};
}

inline float cosine3d(const VolumeTables& tables, const CosineVolume& noise, const VolumePoint& p, float time)
{
    const FewOctaves* const few = fewOf(tables, noise);
    if (few == nullptr) return manyCosine3d(tables, noise, p.x, p.y, p.z, time);
    const VolumeFractal& fractal = noise.fractal;
    const WaveConstants& k = tables.waveConstants;
    const Levels factors = powersOf(k, allLevels(fractal.frequencyRatio));
    const auto along = [&](const float& coordinate, int axis) {
        return (allLevels(coordinate) - loadLevels(k.start[axis])) * factors + loadLevels(k.shifts[axis]);
    };
    const PickedLevels turn = toPickFrom(turnsOf(k, fractal, time));
    const PickedLevels x = toPickFrom(along(p.x, 0));
    const PickedLevels y = toPickFrom(along(p.y, 1));
    const PickedLevels z = toPickFrom(along(p.z, 2) * loadLevels(k.twoPi));
    const PackedWaves& waves = tables.packed3d[waveCount(noise) - 1];
    const auto angles = [&](int at) {
        const int* const level = few->level + at;
        const Eight twoPi = load(k.twoPi);
        return load(waves.phase + at) + pickLevels(turn, level) +
               load(waves.x + at) * pickLevels(x, level) * twoPi +
               load(waves.y + at) * pickLevels(y, level) * twoPi + load(waves.z + at) * pickLevels(z, level);
    };
    const Levels amplitudes = powersOf(k, allLevels(fractal.ratio));
    const FewSum waveSum = weightedSum(k, *few, amplitudes, angles(0), angles(8));
    if (!waveSum.holds) [[unlikely]]
        return manyCosine3d(tables, noise, p.x, p.y, p.z, time);
    const float norm =
        sumOfFour(bitAnd(oneHalf(amplitudes),
                         _mm_castsi128_ps(_mm_load_si128(reinterpret_cast<const __m128i*>(few->levels)))));
    // The divisor is known before the sum, so that this waits for no division.
    const float scale = fractal.amplitude / (norm * few->count);
    const float r = fractal.threshold + 0.5f + waveSum.sum * scale;
    return r > 1.0f ? 1.0f : r;
}

// Kept as is: no shifts and no norm, and the bias of the Perlin type.
inline float cosine2d(const VolumeTables& tables, const CosineVolume& noise, float px, float py, float time)
{
    const FewOctaves* const few = fewOf(tables, noise);
    if (few == nullptr) return manyCosine2d(tables, noise, px, py, time);
    const VolumeFractal& fractal = noise.fractal;
    const WaveConstants& k = tables.waveConstants;
    const Levels growth = allLevels(fractal.frequencyRatio);
    const PickedLevels turn = toPickFrom(turnsOf(k, fractal, time));
    const PickedLevels x = toPickFrom(seriesFrom(k, levelsOf(px), growth));
    const PickedLevels y = toPickFrom(seriesFrom(k, levelsOf(py), growth));
    const PackedWaves& waves = tables.packed2d[waveCount(noise) - 1];
    const auto angles = [&](int at) {
        const int* const level = few->level + at;
        const Eight twoPi = load(k.twoPi);
        return load(waves.phase + at) + pickLevels(turn, level) +
               load(waves.x + at) * pickLevels(x, level) * twoPi +
               load(waves.y + at) * pickLevels(y, level) * twoPi;
    };
    const Levels amplitudes = powersOf(k, allLevels(fractal.ratio));
    const FewSum waveSum = weightedSum(k, *few, amplitudes, angles(0), angles(8));
    if (!waveSum.holds) [[unlikely]]
        return manyCosine2d(tables, noise, px, py, time);
    const float scale = fractal.amplitude * 0.5f / few->count;
    const float r = waveSum.sum * scale + 0.5f + fractal.threshold;
    return r > 1.0f ? 1.0f : r;
}

} // namespace
} // namespace nezaiva
