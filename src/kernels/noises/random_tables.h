// The fixed random numbers of all Maya noises, and the switch between the two sets of them.
//
// The tables are constants of the library, made at compile time. The vector kernels read copies of
// the same numbers in layouts of their own, which carry their wrapped neighbours along, so that a
// read of four floats never leaves the table.
#pragma once

#include <cstdint>

namespace nezaiva {

constexpr int kRandomTableSize = 65535;
using RandomTable = float[kRandomTableSize]; // each in -1..1

constexpr int kLatticeCells = 32;                   // cells of the periodic lattice on each axis
constexpr int kLatticeSide = kLatticeCells + 2;     // with the wrapped neighbour on either side
constexpr int kLatticeRowStride = kLatticeSide + 2; // reads of four floats end within the row

// Where time is an axis of the lattice, a random number r and the value v of a grid point give the fraction
// of (r + 1) * kAnimationRange * (v + 2); the unit of time has as many steps as its period, up to a limit.
constexpr float kAnimationRange = 21568.16f;
constexpr std::int32_t kLargestTimePeriod = 60000;

// One random table with the layouts that the lattice noises read. Position p + 1 of an axis holds
// grid position p & 31, for p from -1 to 32; the rest of a row is zero.
struct NoiseTables {
    alignas(64) RandomTable random;
    float randomPadding[1]; // brings the size to a multiple of four floats

    alignas(64) float plane[kLatticeSide][kLatticeRowStride];               // [x][y]: entry x | y << 5
    alignas(64) float space[kLatticeSide][kLatticeSide][kLatticeRowStride]; // [x][y][z]: ... | z << 10
};

extern const NoiseTables currentNoiseTables;
extern const NoiseTables oldNoiseTables;

// Fills the layouts of `tables` from its random table, for tables of one's own.
void layOutLattice(NoiseTables& tables);

// Whether the text of MAYA_RENDERER_OLD_RANDOM_TABLE (null when unset) asks for the old table: it
// reads as a non-zero decimal integer.
bool wantsOldRandomTable(const char* text);

namespace detail {
extern const NoiseTables* activeNoiseTables;
}

// The tables that the environment chose when the library was loaded. Any thread.
static inline const NoiseTables& activeNoiseTables()
{
    return *detail::activeNoiseTables;
}

// The active table. Set while the library is loaded, so not for use in static initialisers.
extern const RandomTable& randomTable;

// Entry |i| of the table, taken modulo 65535; every i is in range.
static inline float randomValue(const NoiseTables& tables, std::int32_t i)
{
    std::uint32_t m = i < 0 ? 0u - static_cast<std::uint32_t>(i) : static_cast<std::uint32_t>(i);
    if (m >= static_cast<std::uint32_t>(kRandomTableSize)) m %= static_cast<std::uint32_t>(kRandomTableSize);
    return tables.random[m];
}

static inline float randomValue(std::int32_t i)
{
    return randomValue(activeNoiseTables(), i);
}

} // namespace nezaiva
