// The sums of plane waves of the usual counts, which two registers hold: up to three octaves, and up to
// sixteen waves in all of them. On lanes.
//
// There are no loops, no calls but to the other form at the end, and no masks: what an octave shares is
// picked for its waves from lanes of octaves, and lanes without a wave pick zeros.
#pragma once

#include "kernels/noises/volume/volume_cosine_body.h"

#include <type_traits>

namespace nezaiva {
namespace {

// A lane for each of four octaves; twice, where eight lanes are one register, from which waves pick theirs.
using Levels = std::conditional_t<kEightAreTwoRegisters, Float4, Float8>;

inline Float4 fourOf(Float4 levels)
{
    return levels;
}
inline Float4 fourOf(Float8 levels)
{
    return lowHalf(levels);
}

// The octaves of the second operand where the bits of Mask are set.
template <int Mask>
Levels mixed(Levels a, Levels b)
{
    constexpr int kTwice = Mask * 0x11;
    constexpr int kBits = kEightAreTwoRegisters ? Mask : kTwice;
    return blended<kBits>(a, b);
}

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
    const Levels once = mixed<0b0110>(Levels::load(k.oneOfFour), ratio);
    const Levels again = mixed<0b0100>(Levels::load(k.ones), ratio);
    return first * once * again;
}

// The same from 1.
inline Levels powersOf(const WaveConstants& k, Levels ratio)
{
    const Levels once = mixed<0b0010>(Levels::load(k.oneOfFour), ratio);
    return mixed<0b0100>(once, ratio * ratio);
}

// The turns of time in the octaves.
inline Levels turnsOf(const WaveConstants& k, const VolumeFractal& fractal, float time)
{
    const Levels growth = sqrt(Levels::loadInAll(&fractal.frequencyRatio));
    return seriesFrom(k, time, growth) * Levels::load(k.pi);
}

// The cosine of angles up to kLargestBriefAngle, within 2e-7. NaN for a NaN.
[[gnu::always_inline]] inline Float8 briefCosine(const WaveConstants& k, Float8 angles)
{
    const Float8 magic = Float8::load(k.roundToWhole);
    const Float8 counted = angles * Float8::load(k.halfTurnsPerRadian) + magic;
    const Float8 halfTurns = counted - magic;
    const Float8 rest = (angles - halfTurns * Float8::load(k.piHigh)) - halfTurns * Float8::load(k.piRest);
    const Float8 x = rest * rest;
    const Float8 xx = x * x;
    const Float8 first = Float8::load(k.cosine[0]) + x * Float8::load(k.cosine[1]);
    const Float8 second = Float8::load(k.cosine[2]) + x * Float8::load(k.cosine[3]);
    return signedBy(counted, first + xx * (second + xx * Float8::load(k.cosine[4])));
}

// The weighted sum of the waves whose angles are given, and whether the angles are small enough for it.
struct FewSum {
    float sum;
    bool holds;
};

[[gnu::always_inline]] inline FewSum weightedSum(const WaveConstants& k, const FewOctaves& few,
                                                 Levels weights, Float8 low, Float8 high)
{
    const Pickable<Levels> ofOctaves = pickable(weights);
    const Float8 sum = briefCosine(k, low) * pickedOfFour(ofOctaves, few.level) +
                       briefCosine(k, high) * pickedOfFour(ofOctaves, few.level + 8);
    const Float8 largest = max(abs(low), abs(high));
    return {sumOfLanes(sum), !anyLane(largest > Float8::load(k.largestAngle))};
}

inline float cosine3d(const VolumeTables& tables, const CosineVolume& noise, const VolumePoint& p, float time)
{
    const FewOctaves* const few = fewOf(tables, noise);
    if (few == nullptr) return manyCosine3d(tables, noise, p.x, p.y, p.z, time);
    const VolumeFractal& fractal = noise.fractal;
    const WaveConstants& k = tables.waveConstants;
    const Levels factors = powersOf(k, Levels::loadInAll(&fractal.frequencyRatio));
    const auto along = [&](const float& coordinate, int axis) {
        return (Levels::loadInAll(&coordinate) - Levels::load(k.start[axis])) * factors +
               Levels::load(k.shifts[axis]);
    };
    const Pickable<Levels> turn = pickable(turnsOf(k, fractal, time));
    const Pickable<Levels> x = pickable(along(p.x, 0));
    const Pickable<Levels> y = pickable(along(p.y, 1));
    const Pickable<Levels> z = pickable(along(p.z, 2) * Levels::load(k.twoPi));
    const PackedWaves& waves = tables.packed3d[waveCount(noise) - 1];
    const auto angles = [&](int at) {
        const int* const level = few->level + at;
        const Float8 twoPi = Float8::load(k.twoPi);
        return Float8::load(waves.phase + at) + pickedOfFour(turn, level) +
               Float8::load(waves.x + at) * pickedOfFour(x, level) * twoPi +
               Float8::load(waves.y + at) * pickedOfFour(y, level) * twoPi +
               Float8::load(waves.z + at) * pickedOfFour(z, level);
    };
    const Levels amplitudes = powersOf(k, Levels::loadInAll(&fractal.ratio));
    const FewSum waveSum = weightedSum(k, *few, amplitudes, angles(0), angles(8));
    if (!waveSum.holds) [[unlikely]]
        return manyCosine3d(tables, noise, p.x, p.y, p.z, time);
    const float norm = sumOfLanes(fourOf(amplitudes) & maskOf(Int4::load(few->levels)));
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
    const Levels growth = Levels::loadInAll(&fractal.frequencyRatio);
    const Pickable<Levels> turn = pickable(turnsOf(k, fractal, time));
    const Pickable<Levels> x = pickable(seriesFrom(k, px, growth));
    const Pickable<Levels> y = pickable(seriesFrom(k, py, growth));
    const PackedWaves& waves = tables.packed2d[waveCount(noise) - 1];
    const auto angles = [&](int at) {
        const int* const level = few->level + at;
        const Float8 twoPi = Float8::load(k.twoPi);
        return Float8::load(waves.phase + at) + pickedOfFour(turn, level) +
               Float8::load(waves.x + at) * pickedOfFour(x, level) * twoPi +
               Float8::load(waves.y + at) * pickedOfFour(y, level) * twoPi;
    };
    const Levels amplitudes = powersOf(k, Levels::loadInAll(&fractal.ratio));
    const FewSum waveSum = weightedSum(k, *few, amplitudes, angles(0), angles(8));
    if (!waveSum.holds) [[unlikely]]
        return manyCosine2d(tables, noise, px, py, time);
    const float scale = fractal.amplitude * 0.5f / few->count;
    const float r = waveSum.sum * scale + 0.5f + fractal.threshold;
    return r > 1.0f ? 1.0f : r;
}

constexpr VolumeKernels<CosineVolume> kCosineVolume{cosine3d, cosine2d};

} // namespace
} // namespace nezaiva
