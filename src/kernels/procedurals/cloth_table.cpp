#include "kernels/procedurals/cloth_table.h"

#include "kernels/noises/random_table_rule.h"

#include <cstddef>

namespace nezaiva {

namespace {

constexpr detail::ClothTable makeTable()
{
    detail::ClothTable table{};
    for (std::size_t i = 0; i < kClothTableSize; ++i)
        table.values[i] = static_cast<double>(kCurrentTableRule.entry(i));
    return table;
}

} // namespace

constinit const detail::ClothTable detail::clothTable = makeTable();

} // namespace nezaiva
