// The sums of plane waves, on lanes. Up to eight waves in up to eight octaves fill the lanes across the
// octaves; else eight waves of an octave are eight lanes. A wave or three are taken one by one.
#pragma once

#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_cosine_thin.h"
#include "kernels/noises/volume/volume_kernels.h"
#include "kernels/noises/volume/volume_trig_body.h"

namespace nezaiva {
namespace {

// The cosine of eight angles of any size, within 2e-7. NaN for what is not finite.
inline Float8 cosines(Float8 angles)
{
    if (!anyLane(beyondShort(angles))) return shortCosine(angles);
    return anyCosine(angles, 0.0);
}

// The directions and phases of eight waves.
struct EightWaves {
    Float8 x, y, z, phase;
};

inline EightWaves tabledWaves(const WaveLevel& level, int first)
{
    return {Float8::load(level.x + first), Float8::load(level.y + first), Float8::load(level.z + first),
            Float8::load(level.phase + first)};
}

// Waves behind the tabled ones; the index moves on by as many as are wanted.
inline EightWaves computedWaves(const NoiseTables& noise, Wave (*next)(const NoiseTables&, int&), int& index,
                                int wanted)
{
    float x[8] = {};
    float y[8] = {};
    float z[8] = {};
    float phase[8] = {};
    for (int lane = 0; lane < wanted; ++lane) {
        const Wave wave = next(noise, index);
        x[lane] = wave.x;
        y[lane] = wave.y;
        z[lane] = wave.z;
        phase[lane] = wave.phase;
    }
    return {Float8::load(x), Float8::load(y), Float8::load(z), Float8::load(phase)};
}

// All bits of the first `count` lanes, for a count of 0 or more.
inline Mask8 firstLanes(int count)
{
    alignas(64) static constexpr int kSliding[16] = {-1, -1, -1, -1, -1, -1, -1, -1};
    return maskOf(Int8::load(kSliding + (count < 8 ? 8 - count : 0)));
}

// 1 up to a level, and the ratio from there on.
struct LevelSteps {
    alignas(32) float ones[kPackedLevels][8];
    int behind[kPackedLevels][8];

    Float8 operator()(int level, float ratio) const
    {
        const Float8 ratios = keepBits(Float8(ratio), Int8::load(behind[level]));
        return setBits(ratios, bitsOf(Float8::load(ones[level])));
    }
};

constexpr LevelSteps makeLevelSteps()
{
    LevelSteps steps{};
    for (int level = 0; level < kPackedLevels; ++level)
        for (int lane = 0; lane < 8; ++lane) {
            steps.ones[level][lane] = lane < level ? 1.0f : 0.0f;
            steps.behind[level][lane] = lane < level ? 0 : -1;
        }
    return steps;
}

constexpr LevelSteps kLevelSteps = makeLevelSteps();

// The waves of an octave, of any octave and in any number: angles(waves) gives the eight angles at the
// point.
struct AnyWaves {
    const NoiseTables& noise;
    const WaveLevel* tabled;
    Wave (*next)(const NoiseTables&, int&);
    int count;

    template <class Angles>
    float sum(int level, const Angles& angles) const
    {
        Float8 total = 0.0f;
        const bool known = level < kTabledLevels;
        int index = known ? tabled[level].next : firstWaveIndex(level);
        for (int first = 0; first < count; first += 8) {
            const EightWaves waves =
                known && first < kTabledWaves
                    ? tabledWaves(tabled[level], first)
                    : computedWaves(noise, next, index, count - first < 8 ? count - first : 8);
            total = total + (cosines(angles(waves)) & firstLanes(count - first));
        }
        return sumOfLanes(total);
    }
};

// The usual case: one register of waves from the table, and angles that take no long reduction. It
// makes no call, which keeps everything in registers; `large` tells afterwards whether it holds.
struct FewWaves {
    const WaveLevel* tabled;
    Mask8 lanes; // of the waves that count
    Mask8 large = Mask8(false);

    static bool hold(int depthMax, int count)
    {
        return depthMax <= kTabledLevels && count >= 1 && count <= 8;
    }

    template <class Angles>
    float sum(int level, const Angles& angles)
    {
        const Float8 each = angles(tabledWaves(tabled[level], 0));
        large = large | beyondShort(each);
        return sumOfLanes(0.0f + (shortCosine(each) & lanes));
    }
};

// Kept as is: the number of waves is read as 16 bits; none, or a negative number, divides the empty
// sum all the same.
inline int waveCount(const CosineVolume& noise)
{
    return static_cast<short>(noise.numWaves);
}

inline float magnitudeOf(float value)
{
    return __builtin_fabsf(value);
}

inline Float8 everywhere(Float4 onlyLane)
{
    return Float8(onlyLane, onlyLane);
}

// The waves of all octaves, packed: first, first * ratio, ... are values of the octaves, of which the
// lanes are made. Without a fold an octave needs no sum of its own.
struct PackedSum {
    const PackedWaves& waves;
    int count, depth;
    Float8 largest = 0.0f; // of the angles; it tells afterwards whether the reduction holds

    static bool hold(const VolumeFractal& fractal, int count)
    {
        return !fractal.inflection && fractal.depthMax >= 1 && fractal.depthMax <= kPackedLevels &&
               count >= 1 && count <= kPackedCount;
    }

    Float8 series(float first, float ratio) const
    {
        Float8 values = first;
        for (int level = 1; level < depth; ++level)
            values = values * kLevelSteps(level, ratio);
        return values;
    }

    // angles(at) gives the angles of the eight waves at the lane `at`; the sum is weighted by octave.
    template <class Angles>
    float sum(Float8 weights, const Angles& angles)
    {
        const Pickable<Float8> ofLevels = pickable(weights);
        Float8 total = 0.0f;
        for (int at = 0; at < depth * count; at += 8) {
            const Float8 each = angles(at);
            largest = max(abs(each), largest);
            const Float8 weighted = shortCosine(each) * picked(ofLevels, waves.level + at);
            total = total + (weighted & firstLanes(depth * count - at));
        }
        return sumOfLanes(total);
    }
    bool tooLong() const { return anyLane(beyondShort(largest)); }
};

inline float packedCosine3d(PackedSum& packed, const VolumeTables& tables, const VolumeFractal& fractal,
                            float px, float py, float pz, float time)
{
    const float growth = growthOf(fractal);
    const Float8 factor = packed.series(1.0f, growth);
    const Float8 amplitudes = packed.series(1.0f, fractal.ratio);
    const Float8 times = packed.series(time, rootOf(growth));
    const Float8 twoPi = kTwoPi;
    const auto along = [&](float start, int axis) {
        return start * factor + Float8::load(tables.waveShifts[axis]);
    };
    const Pickable<Float8> x = pickable(along(px - kBlobAndWaveShifts[0], 0));
    const Pickable<Float8> y = pickable(along(py - kBlobAndWaveShifts[1], 1));
    const Pickable<Float8> z = pickable(along(pz - kBlobAndWaveShifts[2], 2) * twoPi);
    const Pickable<Float8> turn = pickable(times * kPi);
    const PackedWaves& waves = packed.waves;
    const auto angles = [&](int at) {
        const int* level = waves.level + at;
        return Float8::load(waves.phase + at) + picked(turn, level) +
               Float8::load(waves.x + at) * picked(x, level) * twoPi +
               Float8::load(waves.y + at) * picked(y, level) * twoPi +
               Float8::load(waves.z + at) * picked(z, level);
    };
    // The divisors are known before the sum, so that it waits for no division.
    const float norm = sumOfLanes(amplitudes & firstLanes(packed.depth));
    const float scale = fractal.amplitude / (norm * static_cast<float>(packed.count));
    const float r = fractal.threshold + 0.5f + packed.sum(amplitudes, angles) * scale;
    return r > 1.0f ? 1.0f : r;
}

inline float packedCosine2d(PackedSum& packed, const VolumeFractal& fractal, float px, float py, float time)
{
    const float growth = growthOf(fractal);
    const Float8 twoPi = kTwoPi;
    const Pickable<Float8> x = pickable(packed.series(px, growth));
    const Pickable<Float8> y = pickable(packed.series(py, growth));
    const Pickable<Float8> turn = pickable(packed.series(time, rootOf(growth)) * kPi);
    const PackedWaves& waves = packed.waves;
    const auto angles = [&](int at) {
        const int* level = waves.level + at;
        return Float8::load(waves.phase + at) + picked(turn, level) +
               Float8::load(waves.x + at) * picked(x, level) * twoPi +
               Float8::load(waves.y + at) * picked(y, level) * twoPi;
    };
    const Float8 amplitudes = packed.series(fractal.amplitude, fractal.ratio);
    const float scale = 0.5f / static_cast<float>(packed.count);
    const float r = packed.sum(amplitudes, angles) * scale + 0.5f + fractal.threshold;
    return r > 1.0f ? 1.0f : r;
}

template <class Waves>
float cosine3d(Waves& waves, const CosineVolume& noise, float px, float py, float pz, float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const auto count = static_cast<float>(waveCount(noise));
    const float growth = growthOf(fractal);
    const float timeGrowth = rootOf(growth);
    const Float4 step = Float4::load(kBlobAndWaveShifts);
    const Float4 start = Float4(px, py, pz, 0.0f) - step;
    Float4 shift = 0.0f;
    float factor = 1.0f;
    float amplitude = 1.0f;
    float sum = 0.0f;
    float norm = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        shift = shift + step;
        const Float4 place = start * factor + shift;
        const Float8 x = everywhere(spread<0>(place));
        const Float8 y = everywhere(spread<1>(place));
        const Float8 z = everywhere(spread<2>(place) * kTwoPi);
        const Float8 turn = time * kPi;
        const auto angles = [&](const EightWaves& eight) {
            const Float8 twoPi = kTwoPi;
            return eight.phase + turn + eight.x * x * twoPi + eight.y * y * twoPi + eight.z * z;
        };
        float value = waves.sum(level, angles) / count;
        if (fractal.inflection) value = magnitudeOf(value);
        sum += value * amplitude;
        norm += amplitude;
        amplitude *= fractal.ratio;
        factor *= growth;
        time *= timeGrowth;
    }
    const float r = fractal.inflection ? fractal.threshold + sum * kFoldedWaves * fractal.amplitude / norm
                                       : fractal.threshold + 0.5f + sum * fractal.amplitude / norm;
    return r > 1.0f ? 1.0f : r;
}

// Kept as is: the two-dimensional form has no shifts and no norm, and the bias of the Perlin type.
template <class Waves>
float cosine2d(Waves& waves, const CosineVolume& noise, float px, float py, float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const auto count = static_cast<float>(waveCount(noise));
    const float growth = growthOf(fractal);
    const float timeGrowth = rootOf(growth);
    float amplitude = fractal.amplitude;
    float sum = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        const Float8 x = px;
        const Float8 y = py;
        const Float8 turn = time * kPi;
        const auto angles = [&](const EightWaves& eight) {
            const Float8 twoPi = kTwoPi;
            return eight.phase + turn + eight.x * x * twoPi + eight.y * y * twoPi;
        };
        float value = waves.sum(level, angles) / count;
        if (fractal.inflection) value = magnitudeOf(value);
        sum += value * amplitude;
        amplitude *= fractal.ratio;
        px *= growth;
        py *= growth;
        time *= timeGrowth;
    }
    const float r = fractal.inflection ? sum + fractal.threshold : sum * 0.5f + 0.5f + fractal.threshold;
    return r > 1.0f ? 1.0f : r;
}

[[gnu::noinline]] inline float anyCosine3d(const VolumeTables& tables, const CosineVolume& noise, float x,
                                           float y, float z, float time)
{
    AnyWaves waves{*tables.noise, tables.waves3d, nextWave3d, waveCount(noise)};
    return cosine3d(waves, noise, x, y, z, time);
}

[[gnu::noinline]] inline float anyCosine2d(const VolumeTables& tables, const CosineVolume& noise, float x,
                                           float y, float time)
{
    AnyWaves waves{*tables.noise, tables.waves2d, nextWave2d, waveCount(noise)};
    return cosine2d(waves, noise, x, y, time);
}

// Octaves that are folded have sums of their own.
[[gnu::noinline]] inline float octaveCosine3d(const VolumeTables& tables, const CosineVolume& noise, float x,
                                              float y, float z, float time)
{
    const int count = waveCount(noise);
    if (FewWaves::hold(noise.fractal.depthMax, count)) {
        FewWaves waves{tables.waves3d, firstLanes(count)};
        const float result = cosine3d(waves, noise, x, y, z, time);
        if (!anyLane(waves.large)) return result;
    }
    return anyCosine3d(tables, noise, x, y, z, time);
}

[[gnu::noinline]] inline float manyCosine3d(const VolumeTables& tables, const CosineVolume& noise, float x,
                                            float y, float z, float time)
{
    const int count = waveCount(noise);
    if (thinWavesHold(noise.fractal, count)) return thinCosine3d(tables, noise, count, x, y, z, time);
    if (!PackedSum::hold(noise.fractal, count)) return octaveCosine3d(tables, noise, x, y, z, time);
    PackedSum packed{tables.packed3d[count - 1], count, noise.fractal.depthMax};
    const float result = packedCosine3d(packed, tables, noise.fractal, x, y, z, time);
    return packed.tooLong() ? anyCosine3d(tables, noise, x, y, z, time) : result;
}

// Octaves that are folded have sums of their own.
[[gnu::noinline]] inline float octaveCosine2d(const VolumeTables& tables, const CosineVolume& noise, float x,
                                              float y, float time)
{
    const int count = waveCount(noise);
    if (FewWaves::hold(noise.fractal.depthMax, count)) {
        FewWaves waves{tables.waves2d, firstLanes(count)};
        const float result = cosine2d(waves, noise, x, y, time);
        if (!anyLane(waves.large)) return result;
    }
    return anyCosine2d(tables, noise, x, y, time);
}

[[gnu::noinline]] inline float manyCosine2d(const VolumeTables& tables, const CosineVolume& noise, float x,
                                            float y, float time)
{
    const int count = waveCount(noise);
    if (thinWavesHold(noise.fractal, count)) return thinCosine2d(tables, noise, count, x, y, time);
    if (!PackedSum::hold(noise.fractal, count)) return octaveCosine2d(tables, noise, x, y, time);
    PackedSum packed{tables.packed2d[count - 1], count, noise.fractal.depthMax};
    const float result = packedCosine2d(packed, noise.fractal, x, y, time);
    return packed.tooLong() ? anyCosine2d(tables, noise, x, y, time) : result;
}

} // namespace
} // namespace nezaiva
