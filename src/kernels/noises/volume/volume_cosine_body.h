// The sums of plane waves, written once on the lanes of volume_lanes_base.h or volume_lanes_avx2.h,
// one of which is included before. Up to eight waves in up to eight octaves fill the lanes across the
// octaves; else eight waves of an octave are eight lanes. A wave or three are taken one by one.
#pragma once

#include "kernels/noises/volume/volume_cosine_thin.h"
#include "kernels/noises/volume/volume_kernels.h"
#include "kernels/noises/volume/volume_trig_body.h"

namespace nezaiva {
namespace {

// The cosine of eight angles of any size, within 2e-7. NaN for what is not finite.
inline Eight cosines(Eight angles)
{
    if (!anyLane(beyondShort(angles))) return shortCosine(angles);
    return anyCosine(angles, 0.0);
}

// The directions and phases of eight waves.
struct EightWaves {
    Eight x, y, z, phase;
};

inline EightWaves tabledWaves(const WaveLevel& level, int first)
{
    return {load(level.x + first), load(level.y + first), load(level.z + first), load(level.phase + first)};
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
    return {load(x), load(y), load(z), load(phase)};
}

// All bits of the first `count` lanes, for a count of 0 or more.
inline Eight firstLanes(int count)
{
    static constexpr int kSliding[16] = {-1, -1, -1, -1, -1, -1, -1, -1};
    return loadBits(kSliding + (count < 8 ? 8 - count : 0));
}

// For the step to each level: 1 up to there, and all bits from there on.
struct LevelSteps {
    alignas(32) float ones[kPackedLevels][8];
    int behind[kPackedLevels][8];
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
        Eight total = broadcast(0.0f);
        const bool known = level < kTabledLevels;
        int index = known ? tabled[level].next : firstWaveIndex(level);
        for (int first = 0; first < count; first += 8) {
            const EightWaves waves =
                known && first < kTabledWaves
                    ? tabledWaves(tabled[level], first)
                    : computedWaves(noise, next, index, count - first < 8 ? count - first : 8);
            total = total + bitAnd(cosines(angles(waves)), firstLanes(count - first));
        }
        return sumOfLanes(total);
    }
};

// The usual case: one register of waves from the table, and angles that take no long reduction. It
// makes no call, which keeps everything in registers; `large` tells afterwards whether it holds.
struct FewWaves {
    const WaveLevel* tabled;
    Eight lanes; // of the waves that count
    Eight large = broadcast(0.0f);

    static bool hold(int depthMax, int count)
    {
        return depthMax <= kTabledLevels && count >= 1 && count <= 8;
    }

    template <class Angles>
    float sum(int level, const Angles& angles)
    {
        const Eight each = angles(tabledWaves(tabled[level], 0));
        large = bitOr(large, beyondShort(each));
        const Eight waves = bitAnd(shortCosine(each), lanes);
        return sumOfLanes(broadcast(0.0f) + waves);
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
    return _mm_cvtss_f32(_mm_andnot_ps(_mm_set_ss(-0.0f), _mm_set_ss(value)));
}

inline Eight everywhere(Four onlyLane)
{
    return combine(onlyLane, onlyLane);
}

// The waves of all octaves, packed: first, first * ratio, ... are values of the octaves, of which the
// lanes are made. Without a fold an octave needs no sum of its own.
struct PackedSum {
    const PackedWaves& waves;
    int count, depth;
    Eight largest = broadcast(0.0f); // of the angles; it tells afterwards whether the reduction holds

    static bool hold(const VolumeFractal& fractal, int count)
    {
        return !fractal.inflection && fractal.depthMax >= 1 && fractal.depthMax <= kPackedLevels &&
               count >= 1 && count <= kPackedCount;
    }

    Eight series(float first, float ratio) const
    {
        Eight values = broadcast(first);
        for (int level = 1; level < depth; ++level)
            values = values * bitOr(bitAnd(broadcast(ratio), loadBits(kLevelSteps.behind[level])),
                                    load(kLevelSteps.ones[level]));
        return values;
    }

    // angles(at) gives the angles of the eight waves at the lane `at`; the sum is weighted by octave.
    template <class Angles>
    float sum(Eight weights, const Angles& angles)
    {
        const Picked ofLevels = toPickFrom(weights);
        Eight total = broadcast(0.0f);
        for (int at = 0; at < depth * count; at += 8) {
            const Eight each = angles(at);
            largest = maximum(magnitudes(each), largest);
            const Eight weighted = shortCosine(each) * pick(ofLevels, waves.level + at);
            total = total + bitAnd(weighted, firstLanes(depth * count - at));
        }
        return sumOfLanes(total);
    }
    bool tooLong() const { return anyLane(beyondShort(largest)); }
};

inline float packedCosine3d(PackedSum& packed, const VolumeTables& tables, const VolumeFractal& fractal,
                            float px, float py, float pz, float time)
{
    const float growth = growthOf(fractal);
    const Eight factor = packed.series(1.0f, growth);
    const Eight amplitudes = packed.series(1.0f, fractal.ratio);
    const Eight times = packed.series(time, rootOf(growth));
    const Eight twoPi = broadcast(kTwoPi);
    const auto along = [&](float start, int axis) {
        return broadcast(start) * factor + load(tables.waveShifts[axis]);
    };
    const Picked x = toPickFrom(along(px - 0.021f, 0));
    const Picked y = toPickFrom(along(py - 0.33f, 1));
    const Picked z = toPickFrom(along(pz - 0.011f, 2) * twoPi);
    const Picked turn = toPickFrom(times * broadcast(kPi));
    const PackedWaves& waves = packed.waves;
    const auto angles = [&](int at) {
        const int* level = waves.level + at;
        return load(waves.phase + at) + pick(turn, level) + load(waves.x + at) * pick(x, level) * twoPi +
               load(waves.y + at) * pick(y, level) * twoPi + load(waves.z + at) * pick(z, level);
    };
    // The divisors are known before the sum, so that it waits for no division.
    const float norm = sumOfLanes(bitAnd(amplitudes, firstLanes(packed.depth)));
    const float scale = fractal.amplitude / (norm * static_cast<float>(packed.count));
    const float r = fractal.threshold + 0.5f + packed.sum(amplitudes, angles) * scale;
    return r > 1.0f ? 1.0f : r;
}

inline float packedCosine2d(PackedSum& packed, const VolumeFractal& fractal, float px, float py, float time)
{
    const float growth = growthOf(fractal);
    const Eight twoPi = broadcast(kTwoPi);
    const Picked x = toPickFrom(packed.series(px, growth));
    const Picked y = toPickFrom(packed.series(py, growth));
    const Picked turn = toPickFrom(packed.series(time, rootOf(growth)) * broadcast(kPi));
    const PackedWaves& waves = packed.waves;
    const auto angles = [&](int at) {
        const int* level = waves.level + at;
        return load(waves.phase + at) + pick(turn, level) + load(waves.x + at) * pick(x, level) * twoPi +
               load(waves.y + at) * pick(y, level) * twoPi;
    };
    const Eight amplitudes = packed.series(fractal.amplitude, fractal.ratio);
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
    const Four start = _mm_sub_ps(_mm_setr_ps(px, py, pz, 0.0f), _mm_setr_ps(0.021f, 0.33f, 0.011f, 0.0f));
    Four shift = _mm_setzero_ps();
    float factor = 1.0f;
    float amplitude = 1.0f;
    float sum = 0.0f;
    float norm = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        shift = _mm_add_ps(shift, _mm_setr_ps(0.021f, 0.33f, 0.011f, 0.0f));
        const Four place = _mm_add_ps(_mm_mul_ps(start, _mm_set1_ps(factor)), shift);
        const Eight x = everywhere(spread<0>(place));
        const Eight y = everywhere(spread<1>(place));
        const Eight z = everywhere(_mm_mul_ps(spread<2>(place), _mm_set1_ps(kTwoPi)));
        const Eight turn = broadcast(time * kPi);
        const auto angles = [&](const EightWaves& eight) {
            const Eight twoPi = broadcast(kTwoPi);
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
    const float r = fractal.inflection ? fractal.threshold + sum * 2.3f * fractal.amplitude / norm
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
        const Eight x = broadcast(px);
        const Eight y = broadcast(py);
        const Eight turn = broadcast(time * kPi);
        const auto angles = [&](const EightWaves& eight) {
            const Eight twoPi = broadcast(kTwoPi);
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
