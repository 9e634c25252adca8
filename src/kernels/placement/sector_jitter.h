// The random placement of a tile's sector: a pure function of the tile.
#pragma once

#include <cstdint>

namespace nezaiva {

// Two numbers in 0..1 for a tile. They come from sines whose bits are hashed, so they are defined by
// double precision arithmetic and wrapping 64-bit integers with arithmetic shifts.
struct SectorJitter {
    float first, second;
};
SectorJitter sectorJitter(std::int32_t tileU, std::int32_t tileV);

} // namespace nezaiva
