// The fixed tables of the leather texture, made at compile time.
#pragma once

#include <cstdint>

namespace nezaiva {

constexpr int kLeatherCells = 20;       // of the lattice, on each axis
constexpr int kLeatherTableSize = 8192; // more than the cells and the five numbers of the last
constexpr int kLeatherFalloffSize = 256;
constexpr int kSearchReach = 3; // cells of the search, to either side
constexpr int kSearchRows = 343;

// A neighbour of the cell that is searched from.
struct SearchRow {
    std::int32_t dx, dy, dz;
    std::int32_t bound; // the smallest squared distance from a point of the centre cell to this one
};

namespace detail {
struct LeatherTables {
    float numbers[kLeatherTableSize];
    float falloff[kLeatherFalloffSize];
    SearchRow searchOrder[kSearchRows];
};
extern const LeatherTables leatherTables;
} // namespace detail

// Random numbers in -1..1.
static constexpr const float (&leatherTable)[kLeatherTableSize] = detail::leatherTables.numbers;

// 1 - sqrt(i / 256).
static constexpr const float (&leatherFalloff)[kLeatherFalloffSize] = detail::leatherTables.falloff;

// All neighbours, sorted by bound, then by the squared distance of the cells, then by dx, dy and dz.
static constexpr const SearchRow (&cellSearchOrder)[kSearchRows] = detail::leatherTables.searchOrder;

} // namespace nezaiva
