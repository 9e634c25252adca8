// The accurate weave of cloth.h on lanes, for the sources of its instruction sets alone.
//
// The two axes lie side by side: lanes 0 and 1 are U and V, mostly twice.
#pragma once

#include "kernels/noises/random_tables.h"
#include "kernels/procedurals/cloth.h"
#include "kernels/procedurals/cloth_sines.h"
#include "kernels/procedurals/cloth_table.h"
#include "numeric/lanes.h"

namespace nezaiva {

struct ClothKernels {
    void (*accurate)(float u, float v, const ClothWeave& weave, const ClothColors& colors,
                     OUtils::AColor& result);
};
extern const ClothKernels clothBase, clothAvx2;

// Entries 0 to 31 of the cloth table, and the first ones again behind them.
constexpr int kStrandEntries = 36;
struct ClothStrandTable {
    float entries[kStrandEntries];
};
extern const ClothStrandTable clothStrandTable;

// Which thread shows, by what lies where; see threadShown.
struct ShownThread {
    std::uint32_t isU[4]; // all bits in all lanes, or none
    float across;         // what is taken off the coordinate that crosses the thread
};
constexpr int kThreadCases = 16;
struct ShownThreads {
    ShownThread cases[kThreadCases];
};
extern const ShownThreads shownThreads;

namespace {

constexpr float kTurn = 6.2831855f;

inline Float4 clothSpline(Float4 a, Float4 b, Float4 c, Float4 t)
{
    return a + b + ((a - 2.0f * b + c) * t - 2.0f * (a - b)) * t;
}

struct Drift {
    float u, v;
};

// smooth(u / 22, v / 24) and smooth(u / 23, v / 23).
inline Drift driftAt(float u, float v)
{
    const Float4 c = fraction(Float4(u, v, u, v) / Float4(22.0f, 24.0f, 23.0f, 23.0f)) * float(kLatticeCells);
    const Int4 cells = toInt(c);
    const Float4 t = c - toFloat(cells);
    std::int32_t cell[4];
    (cells & (kLatticeCells - 1)).store(cell);
    // The splines along x of the three neighbours in y, which lie side by side.
    const auto alongX = [](std::int32_t x, std::int32_t y, Float4 tx) {
        const auto& plane = currentNoiseTables.plane;
        return clothSpline(Float4::load(plane[x] + y), Float4::load(plane[x + 1] + y),
                           Float4::load(plane[x + 2] + y), tx);
    };
    const Float4 first = alongX(cell[0], cell[1], spread<0>(t));
    const Float4 second = alongX(cell[2], cell[3], spread<2>(t));
    const Float4 both = clothSpline(shuffled<0, 0, 0, 0>(first, second), shuffled<1, 1, 1, 1>(first, second),
                                    shuffled<2, 2, 2, 2>(first, second), shuffled<1, 1, 3, 3>(t, t)) *
                        0.25f;
    return {lane<0>(both), lane<2>(both)};
}

// The noises along the threads: for the widths of U and V, and for the brightness of U and V.
inline Float4 strandsAt(float u, float v)
{
    const Int4 threads = cellIndex(2.0f * Float4(u, v, u, v)) + Int4(0, 100, 0, 1000);
    const Float4 along = Float4(v, u, v, v) / Float4(123.5f, 123.5f, 100.0f, 100.0f);
    const Float4 starts = gather(currentNoiseTables.random, threads & (kClothTableSize - 1));
    const Float4 c = fraction(starts + along) * float(kLatticeCells);
    const Int4 cells = max(toInt(c), 1);
    const Float4 t = c - toFloat(cells);
    std::int32_t cell[4];
    cells.store(cell);
    const auto neighbours = [&cell](int strand) {
        return Float4::load(clothStrandTable.entries + (cell[strand] - 1));
    };
    const Float4 n0 = neighbours(0), n1 = neighbours(1), n2 = neighbours(2), n3 = neighbours(3);
    const Float4 low = shuffled<0, 1, 0, 1>(n0, n1), high = shuffled<0, 1, 0, 1>(n2, n3);
    const Float4 lowEnd = shuffled<2, 2, 2, 2>(n0, n1), highEnd = shuffled<2, 2, 2, 2>(n2, n3);
    return clothSpline(shuffled<0, 2, 0, 2>(low, high), shuffled<1, 3, 1, 3>(low, high),
                       shuffled<0, 2, 0, 2>(lowEnd, highEnd), t);
}

inline Float4 loadColor(const OUtils::AColor& color)
{
    return Float4::load(&color.r);
}

inline void accurateOnLanes(float u, float v, const ClothWeave& weave, const ClothColors& colors,
                            OUtils::AColor& result)
{
    if (weave.randomness > 0.0f) {
        const Drift drift = driftAt(u, v);
        u += drift.u * weave.randomness;
        v += drift.v * weave.randomness;
    }
    if (weave.uWave != 0.0f || weave.vWave != 0.0f) {
        const TwoSines sines = sinesOf(u * kTurn, v * kTurn);
        if (weave.uWave != 0.0f) u -= weave.uWave * sines.second;
        if (weave.vWave != 0.0f) v += weave.vWave * sines.first;
    }

    Float4 widths(weave.uWidth, weave.vWidth, weave.uWidth, weave.vWidth);
    Float4 gains; // of the widths of U and V, then of their brightness
    const bool hasStrands = weave.widthSpread != 0.0f || weave.brightSpread != 0.0f;
    if (hasStrands) {
        gains = strandsAt(u, v) * 0.25f - 0.5f;
        widths = widths + shuffled<0, 1, 0, 1>(gains, gains) * weave.widthSpread;
    }

    // Coordinates across the threads, in halves of a unit.
    const Float4 unit = fraction(Float4(u, v, u, v));
    const Float4 place = fraction(2.0f * unit);
    const int halves = laneBits(unit >= 0.5f) & 3;
    const int beside = laneBits(widths < place) & 3;
    const ShownThread& shown = shownThreads.cases[halves | beside << 2];
    const Mask4 isU = __m128i(_mm_loadu_si128(reinterpret_cast<const __m128i*>(shown.isU)));

    const Float4 along = 2.0f * place / widths - 1.0f;
    const Float4 across = (place - shown.across) - widths * 0.5f;
    const Float4 distances = (along * along + shuffled<1, 0, 1, 0>(across * across, across * across)) * 0.75f;
    const Float4 r = select(isU, spread<0>(distances), spread<1>(distances));
    Float4 t = 1.0f - r;
    if (hasStrands) {
        const Float4 gain = select(isU, spread<2>(gains), spread<3>(gains));
        t = min(t * (gain * weave.brightSpread + 1.0f), 1.0f);
    }
    const Float4 gap = loadColor(colors.gap);
    const Float4 thread = select(isU, loadColor(colors.u), loadColor(colors.v));
    select(r < 1.0f, gap * (1.0f - t) + thread * t, gap).store(&result.r);
}

constexpr ClothKernels kClothOnLanes{accurateOnLanes};

} // namespace
} // namespace nezaiva
