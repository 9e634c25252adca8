// The fixed tables of the gradient noise.
#pragma once

#include <cstdint>

namespace OUtils {

constexpr int kPerlinTableSize = 256;

struct PerlinTables {
    // A permutation of 0..255.
    std::uint8_t permutation[kPerlinTableSize];
    // Unit vectors of three floats, held as (x, y, z, 0) in doubles. A row more than there are
    // gradients: the last repeats the first, so that two neighbouring rows never need a wrap.
    alignas(64) double gradients[kPerlinTableSize + 1][4];
};

extern const PerlinTables perlinTables;

} // namespace OUtils
