// Everything of the volume noises that depends on the random table but on no point, in the layouts
// that the kernels read.
#pragma once

#include "kernels/noises/random_tables.h"
#include "kernels/noises/volume/spline_tables.h"
#include "kernels/noises/volume/wispy_levels.h"

namespace nezaiva {

constexpr int kTabledLevels = 16; // levels and waves from here on are computed where they are needed
constexpr int kTabledWaves = 32;

constexpr int kBillowCells = 20; // of the periodic lattice of blobs, on each axis

// The numbers of one blob, by name, four to a line of the cache: at time 0 only the first four are
// needed, unless sizes differ; the angles are those of its three offsets before time turns them.
enum BillowField : int {
    kSine0,
    kCosine1,
    kCosine2,
    kSpot, // 1 is added to the random numbers of this and of the size
    kCosine0,
    kSine1,
    kSine2,
    kSize,
    kAngle0,
    kAngle1,
    kAngle2,
    kBillowFields,
};
constexpr int kFieldsOfLine = 4;
constexpr int kBillowLines = (kBillowFields + kFieldsOfLine - 1) / kFieldsOfLine;

// Four fields of four blobs that are neighbours in a plane: those of the cells (x, y), (x + 1, y),
// (x, y + 1) and (x + 1, y + 1), where 20 is 0.
struct BillowQuad {
    alignas(64) float fields[kFieldsOfLine][4];
};

// The quads of a plane, and the first lines of all quads with what keeps the second and the third line
// of a quad out of the part of the cache that the first one lies in.
constexpr int kBillowPlane = kBillowCells * kBillowCells;
constexpr int kBillowPadding = 21;
constexpr int kBillowLine3d = kBillowCells * kBillowPlane + kBillowPadding;
constexpr int kBillowLine2d = kBillowPlane + kBillowPadding;

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

// Few waves: those of up to three octaves that fill no more than two registers, and are worth it.
constexpr int kFewLevels = 3;
constexpr int kFewestWaves = 4;
constexpr int kFewLanes = 16;
struct FewOctaves {
    alignas(32) int level[kFewLanes]; // the octave of each wave; octave 3, which has none, behind the last
    alignas(32) int levels[8];        // all bits of the octaves there are, of four, twice
    float count;                      // of the waves in an octave
    bool fits;
};

// The constants of a sum of few waves, in all lanes: operations read them where they lie, which spares
// the registers that they would take.
struct WaveConstants {
    alignas(32) float halfTurnsPerRadian[8];
    float roundToWhole[8];
    float piHigh[8];
    float piRest[8];
    float cosine[5][8]; // the polynomial, from the constant term on
    float pi[8];
    float twoPi[8];
    float largestAngle[8];
    float ones[8];
    float oneOfFour[8]; // 1, 0, 0, 0, and again
    float start[3][8];  // what is taken off the point, on each axis
    float shifts[3][8]; // and added in each of four octaves, on each axis, twice
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
    FewOctaves fewOctaves[kFewLevels][kPackedCount]; // [octaves - 1][waves in an octave - 1]
    WaveConstants waveConstants;
    BillowQuad billow3d[kBillowLines][kBillowLine3d]; // [field / 4][z * 400 + y * 20 + x]
    BillowQuad billow2d[kBillowLines][kBillowLine2d]; // [field / 4][y * 20 + x]; no third offset
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
