// Everything of the volume noises that depends on the random table but on no point, in the layouts
// that the kernels read.
#pragma once

#include "random_tables.h"
#include "spline_tables.h"
#include "wispy_levels.h"

namespace nezaiva {

constexpr int kTabledLevels = 16; // levels and waves from here on are computed where they are needed
constexpr int kTabledWaves = 32;

constexpr int kBillowCells = 20; // of the periodic lattice of blobs, on each axis

// The numbers of one blob, by name. The angles are those of its three offsets before time turns
// them; at time 0 only the first five fields are needed.
enum BillowField : int {
    kSine0,
    kCosine1,
    kCosine2,
    kSize,
    kSpot,
    kCosine0,
    kSine1,
    kSine2,
    kAngle0,
    kAngle1,
    kAngle2,
    kBillowFields,
};

// A row of blobs along x, field by field: position p + 1 holds the cell p wrapped into 0..19, for p
// from -1 on. A cell index may be 20 (the fraction of a tiny negative number rounds to 1), so that
// reads of four cells end at position 23.
constexpr int kBillowRowStride = 24;
struct BillowRow {
    alignas(32) float fields[kBillowFields][kBillowRowStride];
};

// The waves of one level: unit directions and the phases in radians. `next` is the table index at
// which the search behind the tabled waves goes on.
struct WaveLevel {
    alignas(32) float x[kTabledWaves];
    float y[kTabledWaves];
    float z[kTabledWaves]; // 0 in the 2D form
    float phase[kTabledWaves];
    int next;
};

// The waves of few octaves of few waves each, one octave behind the other without a gap, and the
// octave of each.
constexpr int kPackedLevels = 8;
constexpr int kPackedCount = 8; // waves in an octave
constexpr int kPackedLanes = kPackedLevels * kPackedCount;
struct PackedWaves {
    alignas(32) float x[kPackedLanes];
    float y[kPackedLanes];
    float z[kPackedLanes]; // 0 in the 2D form
    float phase[kPackedLanes];
    int level[kPackedLanes];
};

struct VolumeTables {
    const NoiseTables* noise;
    const SplineTables* splines;
    WispyLevels wispyLevels;
    alignas(16) float directions3d[kTabledLevels][4]; // the fourth component is 0
    alignas(16) float directions2d[kTabledLevels][4]; // and the third
    WaveLevel waves3d[kTabledLevels];
    WaveLevel waves2d[kTabledLevels];
    PackedWaves packed3d[kPackedCount]; // [waves in an octave - 1]
    PackedWaves packed2d[kPackedCount];
    float waveShifts[3][kPackedLevels];              // of each axis, in each octave
    BillowRow billow3d[kBillowCells * kBillowCells]; // [z * 20 + y]
    BillowRow billow2d[kBillowCells];                // [y]; the fields of a third offset are 0
};

// Makes the tables from the active random table; for one caller, who keeps the reference.
const VolumeTables& makeVolumeTables();

// A level's direction, of any level, the number read as 16 bits.
void volumeDirection3d(const NoiseTables& noise, int level, float direction[4]);
void volumeDirection2d(const NoiseTables& noise, int level, float direction[4]);

// The table index of a level's first wave, the level's number read as 16 bits.
int firstWaveIndex(int level);

struct Wave {
    float x, y, z;
    float phase;
};

// The wave at a table index, which moves on to the next wave's.
Wave nextWave3d(const NoiseTables& noise, int& index);
Wave nextWave2d(const NoiseTables& noise, int& index);

} // namespace nezaiva
