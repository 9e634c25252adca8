// The sums of plane waves, written once on the lanes of volume_lanes_base.h or volume_lanes_avx2.h,
// one of which is included before. Eight waves of an octave are eight lanes.
#pragma once

#include "volume_kernels.h"

namespace nezaiva {
namespace {

constexpr float kPi = 3.1415927f;
constexpr float kTwoPi = 6.2831855f;

// The cosine of eight angles, within 2e-7: the quarter turns of each angle by a product in double
// precision, then the minimax polynomial of sin(2 pi u) on -0.25..0.25, relative error 6e-9. NaN for
// what is not finite.
inline Eight cosines(Eight angles)
{
    Eight u = quarterLessTurns(angles);
    const Eight magnitudes = bitAnd(angles, combine(_mm_castsi128_ps(_mm_set1_epi32(0x7fffffff)),
                                                    _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff))));
    if (anyLane(less(broadcast(kLargestPlainAngle), magnitudes))) {
        float each[8];
        float quarters[8];
        store(each, angles);
        store(quarters, u);
        for (int lane = 0; lane < 8; ++lane) {
            const double turns = exactTurns(each[lane]);
            quarters[lane] = static_cast<float>(0.25 - (turns < 0.0 ? -turns : turns));
        }
        u = load(quarters);
    }
    const Eight x = u * u;
    Eight sum = broadcast(39.7109195f);
    sum = sum * x + broadcast(-76.5749924f);
    sum = sum * x + broadcast(81.6022313f);
    sum = sum * x + broadcast(-41.3416775f);
    sum = sum * x + broadcast(6.28318527f);
    return sum * u;
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

// All bits of the first `count` lanes, for a count of 1 or more.
inline Eight firstLanes(int count)
{
    const __m128i wanted = _mm_set1_epi32(count);
    return combine(_mm_castsi128_ps(_mm_cmpgt_epi32(wanted, _mm_setr_epi32(0, 1, 2, 3))),
                   _mm_castsi128_ps(_mm_cmpgt_epi32(wanted, _mm_setr_epi32(4, 5, 6, 7))));
}

inline float sumOfLanes(Eight a)
{
    const Four four = _mm_add_ps(lowHalf(a), highHalf(a));
    const Four two = _mm_add_ps(four, _mm_movehl_ps(four, four));
    return _mm_cvtss_f32(_mm_add_ss(two, spread<1>(two)));
}

// Where an octave's waves come from.
struct WaveSource {
    const NoiseTables& noise;
    const WaveLevel* tabled;
    Wave (*next)(const NoiseTables&, int&);
};

// The sum of an octave's waves; angles(waves) gives the eight angles at the point.
template <class Angles>
float sumOfWaves(const WaveSource& source, int level, int count, const Angles& angles)
{
    Eight sum = broadcast(0.0f);
    const bool tabled = level < kTabledLevels;
    int index = tabled ? source.tabled[level].next : firstWaveIndex(level);
    for (int first = 0; first < count; first += 8) {
        const EightWaves waves =
            tabled && first < kTabledWaves
                ? tabledWaves(source.tabled[level], first)
                : computedWaves(source.noise, source.next, index, count - first < 8 ? count - first : 8);
        sum = sum + bitAnd(cosines(angles(waves)), firstLanes(count - first));
    }
    return sumOfLanes(sum);
}

// Kept as is: the number of waves is read as 16 bits; none, or a negative number, divides the empty
// sum all the same.
inline int waveCount(const CosineVolume& noise)
{
    return static_cast<short>(noise.numWaves);
}

inline float growthOf(const VolumeFractal& fractal)
{
    return fractal.frequencyRatio <= 0.0f ? 1.0f : fractal.frequencyRatio;
}

inline float rootOf(float value)
{
    return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(value)));
}

inline float magnitudeOf(float value)
{
    return _mm_cvtss_f32(_mm_andnot_ps(_mm_set_ss(-0.0f), _mm_set_ss(value)));
}

inline float cosine3d(const VolumeTables& tables, const CosineVolume& noise, float px, float py, float pz,
                      float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const WaveSource source{*tables.noise, tables.waves3d, nextWave3d};
    const int count = waveCount(noise);
    const float growth = growthOf(fractal);
    const float timeGrowth = rootOf(growth);
    const VolumePoint start{px - 0.021f, py - 0.33f, pz - 0.011f};
    VolumePoint shift{0.0f, 0.0f, 0.0f};
    float factor = 1.0f;
    float amplitude = 1.0f;
    float sum = 0.0f;
    float norm = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        shift = {shift.x + 0.021f, shift.y + 0.33f, shift.z + 0.011f};
        const Eight x = broadcast(start.x * factor + shift.x);
        const Eight y = broadcast(start.y * factor + shift.y);
        const Eight z = broadcast((start.z * factor + shift.z) * kTwoPi);
        const Eight turn = broadcast(time * kPi);
        const auto angles = [&](const EightWaves& waves) {
            const Eight twoPi = broadcast(kTwoPi);
            return waves.phase + turn + waves.x * x * twoPi + waves.y * y * twoPi + waves.z * z;
        };
        float value = sumOfWaves(source, level, count, angles) / static_cast<float>(count);
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
inline float cosine2d(const VolumeTables& tables, const CosineVolume& noise, float px, float py, float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const WaveSource source{*tables.noise, tables.waves2d, nextWave2d};
    const int count = waveCount(noise);
    const float growth = growthOf(fractal);
    const float timeGrowth = rootOf(growth);
    float amplitude = fractal.amplitude;
    float sum = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        const Eight x = broadcast(px);
        const Eight y = broadcast(py);
        const Eight turn = broadcast(time * kPi);
        const auto angles = [&](const EightWaves& waves) {
            const Eight twoPi = broadcast(kTwoPi);
            return waves.phase + turn + waves.x * x * twoPi + waves.y * y * twoPi;
        };
        float value = sumOfWaves(source, level, count, angles) / static_cast<float>(count);
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

} // namespace
} // namespace nezaiva
