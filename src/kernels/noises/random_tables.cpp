#include "kernels/noises/random_tables.h"

#include "kernels/noises/random_table_rule.h"

#include <cstddef>
#include <cstdlib>

namespace nezaiva {

namespace {

constexpr char kOldTableVariable[] = "MAYA_RENDERER_OLD_RANDOM_TABLE";

constexpr void fillLattice(NoiseTables& tables)
{
    constexpr int kMask = kLatticeCells - 1;
    for (int x = 0; x < kLatticeSide; ++x) {
        for (int y = 0; y < kLatticeSide; ++y) {
            const int column = ((x - 1) & kMask) | ((y - 1) & kMask) << 5;
            tables.plane[x][y] = tables.random[column];
            for (int z = 0; z < kLatticeSide; ++z)
                tables.space[x][y][z] = tables.random[column | ((z - 1) & kMask) << 10];
        }
    }
}

template <std::size_t Count>
constexpr NoiseTables makeTables(const RandomTableRule<Count>& rule)
{
    NoiseTables tables{};
    for (std::size_t i = 0; i < kRandomTableSize; ++i)
        tables.random[i] = rule.entry(i);
    fillLattice(tables);
    return tables;
}

} // namespace

static_assert(sizeof(RandomTable) == 65535 * sizeof(float));

constinit const NoiseTables currentNoiseTables = makeTables(kCurrentTableRule);
constinit const NoiseTables oldNoiseTables = makeTables(kOldTableRule);

void layOutLattice(NoiseTables& tables)
{
    fillLattice(tables);
}

bool wantsOldRandomTable(const char* text)
{
    return text != nullptr && std::atoi(text) != 0;
}

namespace detail {
constinit const NoiseTables* activeNoiseTables = &currentNoiseTables;
} // namespace detail

namespace {
const RandomTable& chooseTable()
{
    if (wantsOldRandomTable(std::getenv(kOldTableVariable))) detail::activeNoiseTables = &oldNoiseTables;
    return detail::activeNoiseTables->random;
}
} // namespace

const RandomTable& randomTable = chooseTable();

} // namespace nezaiva
