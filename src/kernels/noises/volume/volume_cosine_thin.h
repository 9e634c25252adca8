// The sums of up to three plane waves in all, a wave at a time: registers of eight waves would be slower
// than the plain formula.
#pragma once

#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_kernels.h"
#include "kernels/noises/volume/volume_trig_body.h"

namespace nezaiva {
namespace {

inline float growthOf(const VolumeFractal& fractal)
{
    return fractal.frequencyRatio <= 0.0f ? 1.0f : fractal.frequencyRatio;
}

constexpr int kThinWaves = kFewestWaves - 1;

inline bool thinWavesHold(const VolumeFractal& fractal, int count)
{
    return count >= 1 && count <= kThinWaves && fractal.depthMax >= 1 && fractal.depthMax <= kThinWaves &&
           fractal.depthMax * count <= kThinWaves;
}

// The cosine of an angle of any size, within 2e-7.
inline float thinCosine(float angle)
{
    const float magnitude = angle < 0.0f ? -angle : angle;
    if (!(magnitude <= kLargestBriefAngle)) return sineCosine(angle).cosine;
    const float counted = angle * kHalfTurnsPerRadian + kRoundFloatToWhole;
    const float halfTurns = counted - kRoundFloatToWhole;
    const float rest = (angle - halfTurns * kPiHigh) - halfTurns * kPiRest;
    const float x = rest * rest;
    const float* const c = kBriefCosine;
    const float value = (c[0] + x * c[1]) + (x * x) * ((c[2] + x * c[3]) + (x * x) * c[4]);
    unsigned bits;
    __builtin_memcpy(&bits, &counted, sizeof bits);
    return (bits & 1u) != 0 ? -value : value;
}

// The sum of an octave's waves, folded if it has to be; angle(waves, wave) is the angle of one of them.
template <class Angle>
float thinOctave(const VolumeFractal& fractal, const WaveLevel& waves, int count, const Angle& angle)
{
    float sum = 0.0f;
    for (int wave = 0; wave < count; ++wave)
        sum += thinCosine(angle(waves, wave));
    return fractal.inflection && sum < 0.0f ? -sum : sum;
}

inline float thinCosine3d(const VolumeTables& tables, const CosineVolume& noise, int count, float px,
                          float py, float pz, float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const float growth = growthOf(fractal);
    const float timeGrowth = rootOf(growth);
    float factor = 1.0f;
    float amplitude = 1.0f;
    float sum = 0.0f;
    float norm = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        const float x = (px - kBlobAndWaveShifts[0]) * factor + tables.waveShifts[0][level];
        const float y = (py - kBlobAndWaveShifts[1]) * factor + tables.waveShifts[1][level];
        const float z = ((pz - kBlobAndWaveShifts[2]) * factor + tables.waveShifts[2][level]) * kTwoPi;
        const float turn = time * kPi;
        const auto angle = [&](const WaveLevel& waves, int wave) {
            return waves.phase[wave] + turn + waves.x[wave] * x * kTwoPi + waves.y[wave] * y * kTwoPi +
                   waves.z[wave] * z;
        };
        sum += thinOctave(fractal, tables.waves3d[level], count, angle) * amplitude;
        norm += amplitude;
        amplitude *= fractal.ratio;
        factor *= growth;
        time *= timeGrowth;
    }
    const float mean = sum * fractal.amplitude / (norm * static_cast<float>(count));
    const float r =
        fractal.inflection ? fractal.threshold + mean * kFoldedWaves : fractal.threshold + 0.5f + mean;
    return r > 1.0f ? 1.0f : r;
}

// Kept as is: no shifts and no norm, and the bias of the Perlin type.
inline float thinCosine2d(const VolumeTables& tables, const CosineVolume& noise, int count, float px,
                          float py, float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const float growth = growthOf(fractal);
    const float timeGrowth = rootOf(growth);
    float amplitude = fractal.amplitude;
    float sum = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        const float turn = time * kPi;
        const auto angle = [&](const WaveLevel& waves, int wave) {
            return waves.phase[wave] + turn + waves.x[wave] * px * kTwoPi + waves.y[wave] * py * kTwoPi;
        };
        sum += thinOctave(fractal, tables.waves2d[level], count, angle) * amplitude;
        amplitude *= fractal.ratio;
        px *= growth;
        py *= growth;
        time *= timeGrowth;
    }
    const float mean = sum / static_cast<float>(count);
    const float r = fractal.inflection ? mean + fractal.threshold : mean * 0.5f + 0.5f + fractal.threshold;
    return r > 1.0f ? 1.0f : r;
}

} // namespace
} // namespace nezaiva
