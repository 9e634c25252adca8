#include "volume_tables.h"

#include "volume_trig.h"

#include <cmath>
#include <cstdint>

namespace nezaiva {

namespace {

constexpr float kPi = 3.1415927f;
constexpr float kTwoPi = 6.2831855f;

// The first usable direction at index or behind it, index being left there. The tables have no
// vector without length; the count only makes sure that the search ends.
template <int Step>
void searchDirection(const NoiseTables& noise, int& index, float direction[4])
{
    for (int tries = 0; tries < kRandomTableSize; ++tries, index += Step) {
        const float a = randomValue(noise, index);
        const float b = randomValue(noise, index + 1);
        const float c = Step == 3 ? randomValue(noise, index + 2) : 0.0f;
        const float length = std::sqrt(a * a + b * b + c * c);
        if (length > 0.0f) {
            direction[0] = a / length;
            direction[1] = b / length;
            direction[2] = c / length;
            direction[3] = 0.0f;
            return;
        }
    }
    direction[0] = direction[1] = direction[2] = direction[3] = 0.0f;
}

template <int Step>
Wave nextWave(const NoiseTables& noise, int& index)
{
    float direction[4];
    searchDirection<Step>(noise, index, direction);
    const float phase = randomValue(noise, index + Step) * kPi;
    index += Step + 1;
    return {direction[0], direction[1], direction[2], phase};
}

template <int Step>
void fillWaves(const NoiseTables& noise, int level, WaveLevel& waves)
{
    int index = firstWaveIndex(level);
    for (int i = 0; i < kTabledWaves; ++i) {
        const Wave wave = nextWave<Step>(noise, index);
        waves.x[i] = wave.x;
        waves.y[i] = wave.y;
        waves.z[i] = wave.z;
        waves.phase[i] = wave.phase;
    }
    waves.next = index;
}

// The first `count` waves of each octave.
void packWaves(const WaveLevel* levels, int count, PackedWaves& packed)
{
    for (int lane = 0; lane < kPackedLevels * count; ++lane) {
        const int level = lane / count;
        const int wave = lane % count;
        packed.x[lane] = levels[level].x[wave];
        packed.y[lane] = levels[level].y[wave];
        packed.z[lane] = levels[level].z[wave];
        packed.phase[lane] = levels[level].phase[wave];
        packed.level[lane] = level;
    }
}

// The shifts grow from octave to octave before they are used, and are rounded each time.
void fillWaveShifts(float (*shifts)[kPackedLevels])
{
    constexpr float kSteps[] = {0.021f, 0.33f, 0.011f};
    for (int axis = 0; axis < 3; ++axis) {
        float shift = 0.0f;
        for (int level = 0; level < kPackedLevels; ++level)
            shifts[axis][level] = shift += kSteps[axis];
    }
}

// One row of blobs; the base indices of its 20 cells begin at base.
template <bool ThreeD>
void fillBillowRow(const NoiseTables& noise, int base, BillowRow& row)
{
    constexpr int kSizeOffset = ThreeD ? 3 : 2;
    for (int position = 0; position < kBillowRowStride; ++position) {
        const int b = base + (position + kBillowCells - 1) % kBillowCells;
        const auto set = [&](BillowField field, float value) { row.fields[field][position] = value; };
        const auto angle = [&](int offset) { return randomValue(noise, b + offset) * kTwoPi; };
        const auto turned = [&](int offset) { return sineCosine(angle(offset)); };
        set(kAngle0, angle(0));
        set(kAngle1, angle(1));
        set(kAngle2, ThreeD ? angle(2) : 0.0f);
        set(kSine0, turned(0).sine);
        set(kCosine0, turned(0).cosine);
        set(kSine1, turned(1).sine);
        set(kCosine1, turned(1).cosine);
        set(kSine2, ThreeD ? turned(2).sine : 0.0f);
        set(kCosine2, ThreeD ? turned(2).cosine : 0.0f);
        set(kSize, randomValue(noise, b + kSizeOffset));
        set(kSpot, randomValue(noise, b + kSizeOffset + 1));
    }
}

VolumeTables made;
SplineTables madeSplines;

} // namespace

const VolumeTables& makeVolumeTables()
{
    const NoiseTables& noise = activeNoiseTables();
    made.noise = &noise;
    fillSplineTables(noise, madeSplines);
    made.splines = &madeSplines;
    fillWispyLevels(noise, made.wispyLevels);
    for (int level = 0; level < kTabledLevels; ++level) {
        volumeDirection3d(noise, level, made.directions3d[level]);
        volumeDirection2d(noise, level, made.directions2d[level]);
        fillWaves<3>(noise, level, made.waves3d[level]);
        fillWaves<2>(noise, level, made.waves2d[level]);
    }
    for (int count = 1; count <= kPackedCount; ++count) {
        packWaves(made.waves3d, count, made.packed3d[count - 1]);
        packWaves(made.waves2d, count, made.packed2d[count - 1]);
    }
    fillWaveShifts(made.waveShifts);
    for (int row = 0; row < kBillowCells * kBillowCells; ++row)
        fillBillowRow<true>(noise, row * kBillowCells, made.billow3d[row]);
    for (int row = 0; row < kBillowCells; ++row)
        fillBillowRow<false>(noise, row * kBillowCells, made.billow2d[row]);
    return made;
}

void volumeDirection3d(const NoiseTables& noise, int level, float direction[4])
{
    int index = static_cast<std::int16_t>(level) * 10;
    searchDirection<3>(noise, index, direction);
}

void volumeDirection2d(const NoiseTables& noise, int level, float direction[4])
{
    int index = static_cast<std::int16_t>(level) * 10;
    searchDirection<2>(noise, index, direction);
}

int firstWaveIndex(int level)
{
    return static_cast<std::int16_t>(level) * 50;
}

Wave nextWave3d(const NoiseTables& noise, int& index)
{
    return nextWave<3>(noise, index);
}

Wave nextWave2d(const NoiseTables& noise, int& index)
{
    return nextWave<2>(noise, index);
}

} // namespace nezaiva
