// The fixed random numbers of the cloth, mountain, solid fractal and stucco textures.
#pragma once

#include <cstdint>

namespace nezaiva {

constexpr int kClothTableSize = 32768;

namespace detail {
struct ClothTable {
    double values[kClothTableSize];
};
extern const ClothTable clothTable;
} // namespace detail

// The first entries of the current random table, whatever table the environment chose for the noises.
// Each in -1..1; made at compile time.
static constexpr const double (&clothTable)[kClothTableSize] = detail::clothTable.values;

// Entry i of the table, taken modulo its size; every i is in range. The table's numbers are floats, so
// nothing is rounded: it is also currentNoiseTables.random[i & 32767], which has layouts of its own.
static inline float clothValue(std::int32_t i)
{
    return static_cast<float>(clothTable[i & (kClothTableSize - 1)]);
}

} // namespace nezaiva
