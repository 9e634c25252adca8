#include "kernels/procedurals/leather_tables.h"

#include "kernels/procedurals/leather_blobs_body.h"
#include "kernels/procedurals/leather_features_body.h"
#include "numeric/random_sequence.h"

#include <cstddef>

namespace nezaiva {

namespace {

constexpr std::uint64_t kLeatherStream = 3;

// Newton's iteration, from above, of 0 or a number from 1 on; std::sqrt is not for the compiler.
constexpr double squareRoot(double x)
{
    if (x == 0.0) return 0.0;
    double root = x;
    for (double next = 0.5 * (root + x / root); next < root; next = 0.5 * (root + x / root))
        root = next;
    return root;
}

constexpr std::int32_t boundAlong(std::int32_t d)
{
    const std::int32_t between = (d < 0 ? -d : d) - 1;
    return between > 0 ? between * between : 0;
}

// The neighbours of one bound and one squared distance, in the order of their offsets, from `row` on.
constexpr SearchRow* appendRows(SearchRow* row, std::int32_t bound, std::int32_t squared)
{
    for (std::int32_t dx = -kSearchReach; dx <= kSearchReach; ++dx)
        for (std::int32_t dy = -kSearchReach; dy <= kSearchReach; ++dy)
            for (std::int32_t dz = -kSearchReach; dz <= kSearchReach; ++dz)
                if (dx * dx + dy * dy + dz * dz == squared &&
                    boundAlong(dx) + boundAlong(dy) + boundAlong(dz) == bound)
                    *row++ = {dx, dy, dz, bound};
    return row;
}

constexpr detail::LeatherTables makeTables()
{
    detail::LeatherTables tables{};
    for (std::size_t i = 0; i < kLeatherTableSize; ++i)
        tables.numbers[i] = static_cast<float>(streamValue(kLeatherStream, i));
    for (int i = 0; i < kLeatherFalloffSize; ++i)
        tables.falloff[i] = static_cast<float>(1.0 - squareRoot(i) / 16.0);
    SearchRow* row = tables.searchOrder;
    for (std::int32_t bound = 0; bound <= 3 * boundAlong(kSearchReach); ++bound)
        for (std::int32_t squared = 0; squared <= 3 * kSearchReach * kSearchReach; ++squared)
            row = appendRows(row, bound, squared);
    return tables;
}

constexpr detail::LeatherTables kTables = makeTables();

constexpr WrappedCells makeWrappedCells()
{
    WrappedCells cells{};
    for (int i = 0; i < kWrappedCells; ++i) {
        const auto cell = static_cast<std::uint32_t>((i - 1 + kLeatherCells) % kLeatherCells);
        cells.x[i] = cell;
        cells.y[i] = cell * kLeatherCells;
        cells.z[i] = cell * (kLeatherCells * kLeatherCells);
    }
    return cells;
}

constexpr LeatherWalk makeWalk()
{
    LeatherWalk walk{};
    for (int cell = 0; cell < kWalkedCells; ++cell) {
        walk.x[cell] = static_cast<float>(cell % 3 - 1);
        walk.y[cell] = static_cast<float>(cell / 3 % 3 - 1);
        walk.z[cell] = static_cast<float>(cell / 9 - 1);
    }
    return walk;
}

constexpr NearRows makeNearRows()
{
    NearRows rows{};
    for (int row = 0; row < kNearRows; ++row) {
        rows.dx[row] = kTables.searchOrder[row].dx;
        rows.dy[row] = kTables.searchOrder[row].dy;
        rows.dz[row] = kTables.searchOrder[row].dz;
    }
    return rows;
}
static_assert(kTables.searchOrder[kNearRows - 1].bound == 0 && kTables.searchOrder[kNearRows].bound == 1);

} // namespace

constinit const detail::LeatherTables detail::leatherTables = kTables;
constinit const WrappedCells wrappedCells = makeWrappedCells();
constinit const LeatherWalk leatherWalk = makeWalk();
constinit const NearRows nearRows = makeNearRows();

} // namespace nezaiva
