#include "kernels/noises/volume/volume_tables.h"

#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_trig.h"

#include <cmath>
#include <cstdint>

namespace nezaiva {

namespace {

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
    for (int axis = 0; axis < 3; ++axis) {
        float shift = 0.0f;
        for (int level = 0; level < kPackedLevels; ++level)
            shifts[axis][level] = shift += kBlobAndWaveShifts[axis];
    }
}

void fillFewOctaves(int levels, int count, FewOctaves& few)
{
    const int waves = levels * count;
    few.fits = waves >= kFewestWaves && waves <= kFewLanes;
    few.count = static_cast<float>(count);
    for (int lane = 0; lane < kFewLanes; ++lane)
        few.level[lane] = lane < waves ? lane / count : kFewLevels;
    for (int lane = 0; lane < 8; ++lane)
        few.levels[lane] = lane % 4 < levels ? -1 : 0;
}

void fillWaveConstants(const VolumeTables& tables, WaveConstants& constants)
{
    for (int lane = 0; lane < 8; ++lane) {
        constants.halfTurnsPerRadian[lane] = kHalfTurnsPerRadian;
        constants.roundToWhole[lane] = kRoundFloatToWhole;
        constants.piHigh[lane] = kPiHigh;
        constants.piRest[lane] = kPiRest;
        for (int power = 0; power < 5; ++power)
            constants.cosine[power][lane] = kBriefCosine[power];
        constants.pi[lane] = kPi;
        constants.twoPi[lane] = kTwoPi;
        constants.largestAngle[lane] = kLargestBriefAngle;
        constants.ones[lane] = 1.0f;
        constants.oneOfFour[lane] = lane % 4 == 0 ? 1.0f : 0.0f;
        for (int axis = 0; axis < 3; ++axis) {
            constants.start[axis][lane] = kBlobAndWaveShifts[axis];
            constants.shifts[axis][lane] = tables.waveShifts[axis][lane % 4];
        }
    }
}

// The numbers of one blob, whose random numbers begin at an index.
template <bool ThreeD>
void fillBlob(const NoiseTables& noise, int index, float (&fields)[kBillowFields])
{
    constexpr BillowField kSines[] = {kSine0, kSine1, kSine2};
    constexpr BillowField kCosines[] = {kCosine0, kCosine1, kCosine2};
    constexpr BillowField kAngles[] = {kAngle0, kAngle1, kAngle2};
    constexpr int kAxes = ThreeD ? 3 : 2;
    for (int axis = 0; axis < 3; ++axis) {
        const float angle = axis < kAxes ? randomValue(noise, index + axis) * kTwoPi : 0.0f;
        const SineCosine turned = sineCosine(angle);
        fields[kSines[axis]] = turned.sine;
        fields[kCosines[axis]] = turned.cosine;
        fields[kAngles[axis]] = angle;
    }
    fields[kSize] = randomValue(noise, index + kAxes) + 1.0f;
    fields[kSpot] = randomValue(noise, index + kAxes + 1) + 1.0f;
}

// Each blob goes into the four quads that its cell is one of.
template <bool ThreeD, int Quads>
void fillQuads(const NoiseTables& noise, BillowQuad (&quads)[kBillowLines][Quads])
{
    for (int cell = 0; cell < Quads - kBillowPadding; ++cell) {
        float fields[kBillowFields];
        fillBlob<ThreeD>(noise, cell, fields);
        const int x = cell % kBillowCells;
        const int y = cell / kBillowCells % kBillowCells;
        for (int lane = 0; lane < 4; ++lane) {
            const int quadX = (x - lane % 2 + kBillowCells) % kBillowCells;
            const int quadY = (y - lane / 2 + kBillowCells) % kBillowCells;
            const int quad = cell + (quadY - y) * kBillowCells + (quadX - x);
            for (int field = 0; field < kBillowFields; ++field)
                quads[field / kFieldsOfLine][quad].fields[field % kFieldsOfLine][lane] = fields[field];
        }
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
        for (int levels = 1; levels <= kFewLevels; ++levels)
            fillFewOctaves(levels, count, made.fewOctaves[levels - 1][count - 1]);
    }
    fillWaveShifts(made.waveShifts);
    fillWaveConstants(made, made.waveConstants);
    fillQuads<true>(noise, made.billow3d);
    fillQuads<false>(noise, made.billow2d);
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
