// The fixed tables of the gradient noise.
#pragma once

#include <cstdint>

namespace OUtils {

constexpr int kPerlinTableSize = 256;

struct PerlinTables {
    // Unit vectors of three floats, held as (x, y, z, 0) in doubles. A row more than there are
    // gradients: the last repeats the first, so that two neighbouring rows never need a wrap.
    alignas(64) double gradients[kPerlinTableSize + 1][4];
    // A permutation of 0..255, twice over: the sum of two wrapped numbers, and the next one, need no wrap.
    std::uint8_t permutation[2 * kPerlinTableSize];
};

extern const PerlinTables perlinTables;

} // namespace OUtils
