#include "kernels/procedurals/cloth.h"

#include "kernels/noises/perlin_noise.h"
#include "kernels/noises/random_table_rule.h"
#include "kernels/procedurals/cloth_body.h"
#include "numeric/simd_dispatch.h"

#include <cmath>

namespace nezaiva {

constinit const ClothKernels clothBase = kClothOnLanes;

namespace {

constexpr ClothStrandTable makeStrandTable()
{
    ClothStrandTable table{};
    for (std::size_t i = 0; i < kStrandEntries; ++i)
        table.entries[i] = kCurrentTableRule.entry(i % kLatticeCells);
    return table;
}

// The case of a point has a bit for u and one for v in the second half of its unit, then one for u and one
// for v beyond the thread.
constexpr ShownThread shownThread(int point)
{
    constexpr float kBeyondAnyThread = 1e30f;
    const bool isSecond[2] = {(point & 1) != 0, (point & 2) != 0};
    const bool isBeside[2] = {(point & 4) != 0, (point & 8) != 0};
    const int lower = isSecond[0] != isSecond[1] ? 1 : 0; // the axis of p in cloth.h
    const int upper = 1 - lower;                          // that of q
    const int shown = isBeside[upper] ? lower : upper;
    const float across = !isBeside[upper] ? 0.0f : isBeside[lower] ? kBeyondAnyThread : 1.0f;
    const std::uint32_t isU = shown == 0 ? 0xFFFFFFFFu : 0u;
    return {{isU, isU, isU, isU}, across};
}

constexpr ShownThreads makeShownThreads()
{
    ShownThreads threads{};
    for (int point = 0; point < kThreadCases; ++point)
        threads.cases[point] = shownThread(point);
    return threads;
}

} // namespace

constinit const ClothStrandTable clothStrandTable = makeStrandTable();
constinit const ShownThreads shownThreads = makeShownThreads();

OUtils::AColor accurateCloth(float u, float v, const ClothWeave& weave, const ClothColors& colors)
{
    OUtils::AColor result;
    chosen(clothBase, clothAvx2).accurate(u, v, weave, colors, result);
    return result;
}

} // namespace nezaiva
