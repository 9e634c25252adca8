// The leather texture once more, in both looks, written straight from its description: the oracle of the
// tests and the measure of the benchmarks. Slow on purpose, and sharing nothing with the kernel, tables
// included.
#pragma once

#include "support/plain_noise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace plain {

struct LeatherNumbers {
    float size = 0.5f, density = 1.0f, spottyness = 0.5f, randomness = 0.5f, threshold = 0.83f;
    bool creases = true;
};

using Rgb = std::array<float, 3>;
using Rgba = std::array<float, 4>;

// --- tables

inline const std::vector<float>& leatherNumbers()
{
    static const auto table = [] {
        std::vector<float> made(8192);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = static_cast<float>(streamNumber(3, i));
        return made;
    }();
    return table;
}

inline const std::vector<float>& leatherFalloff()
{
    static const auto table = [] {
        std::vector<float> made(256);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = static_cast<float>(1.0 - std::sqrt(static_cast<double>(i) / 256.0));
        return made;
    }();
    return table;
}

struct SearchRow {
    int dx, dy, dz, bound;
};

inline const std::vector<SearchRow>& cellSearchOrder()
{
    static const auto table = [] {
        std::vector<SearchRow> rows;
        const auto beyond = [](int d) { return std::max(std::abs(d) - 1, 0) * std::max(std::abs(d) - 1, 0); };
        for (int dx = -3; dx <= 3; ++dx)
            for (int dy = -3; dy <= 3; ++dy)
                for (int dz = -3; dz <= 3; ++dz)
                    rows.push_back({dx, dy, dz, beyond(dx) + beyond(dy) + beyond(dz)});
        const auto key = [](const SearchRow& r) {
            return std::array<int, 5>{r.bound, r.dx * r.dx + r.dy * r.dy + r.dz * r.dz, r.dx, r.dy, r.dz};
        };
        std::sort(rows.begin(), rows.end(),
                  [&](const SearchRow& a, const SearchRow& b) { return key(a) < key(b); });
        return rows;
    }();
    return table;
}

// --- legacy

inline std::uint32_t leatherNext(std::uint32_t h)
{
    return h * 0x4C1u + 0xAB1CD9Fu;
}

inline float leatherUnit(std::uint32_t h)
{
    return static_cast<float>(h) / 4294967296.0f;
}

inline float finiteCoordinate(float x)
{
    return std::isfinite(x) ? x : 0.0f;
}

inline std::int64_t leatherCell(float x)
{
    const double whole = std::floor(static_cast<double>(x));
    if (whole > 2147483647.0) return 2147483647;
    if (whole < -2147483648.0) return -2147483648;
    return static_cast<std::int64_t>(whole);
}

struct TwoNearest {
    float F1 = 1e10f, F2 = 1e10f;
    std::uint32_t s1 = 0, s2 = 0;
};

// Walks the rows one by one.
inline TwoNearest twoNearest(float px, float py, float pz, float randomness)
{
    TwoNearest found;
    const std::int64_t cx = leatherCell(px);
    const std::int64_t cy = leatherCell(py);
    const std::int64_t cz = leatherCell(pz);
    const std::vector<SearchRow>& rows = cellSearchOrder();
    for (const SearchRow& row : rows) {
        if (!(static_cast<float>(row.bound) < found.F2) && &row != &rows.front()) break;
        const std::int64_t cellX = cx + row.dx;
        const std::int64_t cellY = cy + row.dy;
        const std::int64_t cellZ = cz + row.dz;
        const auto X = static_cast<std::uint32_t>(cellX);
        const auto Y = static_cast<std::uint32_t>(cellY);
        const auto Z = static_cast<std::uint32_t>(cellZ);
        std::uint32_t h =
            (((X ^ Y ^ (X * 8u) ^ (Y >> 2)) * 0x202C3u - Y) + Z * 3u) * 0x127EFB9u + 0xEA996361u;
        h = (h ^ ((h ^ Z) * 2u)) * 0x4C1u + 0xAB1CD9Fu;
        const float r1 = leatherUnit(h);
        h = leatherNext(h);
        const float r2 = leatherUnit(h);
        h = leatherNext(h);
        const float r3 = leatherUnit(h);
        const float dx = (r1 - 0.5f) * randomness + (0.5f - px) + static_cast<float>(cellX);
        const float dy = (r2 - 0.5f) * randomness + (0.5f - py) + static_cast<float>(cellY);
        const float dz = (r3 - 0.5f) * randomness + (0.5f - pz) + static_cast<float>(cellZ);
        const float D = dx * dx + dy * dy + dz * dz;
        if (D < found.F1) {
            found.F2 = found.F1;
            found.s2 = found.s1;
            found.F1 = D;
            found.s1 = h;
        } else if (D < found.F2) {
            found.F2 = D;
            found.s2 = h;
        }
    }
    return found;
}

inline Rgba legacyLeather(float u, float v, float w, const LeatherNumbers& k, const Rgb& cell,
                          const Rgb& crease)
{
    const float T = k.threshold;
    const bool high = T > 0.5f;
    const float cut = high ? T * T * T : 0.0f;
    const float lowT = 2.0f * (T * T);
    const float dens = k.density < 1e-9f ? 1e-9f : k.density;
    const float scaled = k.size * 0.2f;
    const float sc = scaled < 1e-9f ? 1e-9f : scaled;
    const TwoNearest f = twoNearest(finiteCoordinate(u / sc), finiteCoordinate(v / sc),
                                    finiteCoordinate(w / sc), k.randomness);
    const float ra = leatherUnit(leatherNext(f.s1));
    const float rb = leatherUnit(leatherNext(f.s2));

    float value = 1.0f;
    if (!(2.0f * f.F1 >= dens)) {
        const float a = ((ra - 0.75f) * k.spottyness * 2.0f + 1.0f) * (1.0f - std::sqrt(2.0f * f.F1 / dens));
        if (2.0f * f.F2 >= dens) {
            value = 1.0f - a;
        } else {
            const float b =
                (k.spottyness * 2.0f * (rb - 0.75f) + 1.0f) * (1.0f - std::sqrt(2.0f * f.F2 / dens));
            value = k.creases ? 1.0f - std::fabs(b - a) : (1.0f - a) - b;
        }
    }

    float c;
    if (high)
        c = value >= cut ? (1.0f - cut == 0.0f ? 1.0f : (value - cut) / (1.0f - cut)) : 0.0f;
    else
        c = (0.5f - lowT) + (lowT + 0.5f) * value;
    if (c < 0.0f) c = 0.0f;
    if (c > 1.0f) c = 1.0f;
    return {cell[0] + (crease[0] - cell[0]) * c, cell[1] + (crease[1] - cell[1]) * c,
            cell[2] + (crease[2] - cell[2]) * c, 1.0f - c};
}

// --- current

inline float leatherBlobs(float size, float dens, float spottyness, float randomness, float cut, bool creases,
                          const Rgb& point)
{
    const float* T = leatherNumbers().data();
    const float* F = leatherFalloff().data();
    const float scale = size * 4.0f < 0.0001f ? 0.0001f : size * 4.0f;
    const float inv = 2.0f / (dens < 0.0001f ? 0.0001f : dens);
    const float sp = spottyness * 0.5f;
    const float rn = randomness * 0.5f;
    int ci[3];
    float f[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const float q = finiteCoordinate(point[axis] / scale);
        const float c = (q - std::floor(q)) * 20.0f;
        ci[axis] = static_cast<int>(c);
        f[axis] = c - static_cast<float>(ci[axis]);
    }
    const auto wrapped = [](int cell) { return cell < 0 ? cell + 20 : cell >= 20 ? cell - 20 : cell; };
    float s = 0.0f;
    for (int k = -1; k <= 1; ++k)
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i) {
                const int n = (wrapped(ci[2] + k) * 20 + wrapped(ci[1] + j)) * 20 + wrapped(ci[0] + i);
                const float dx = f[0] - static_cast<float>(i) - (T[n] * rn + 0.5f);
                const float dy = f[1] - static_cast<float>(j) - (T[n + 1] * rn + 0.5f);
                const float dz = f[2] - static_cast<float>(k) - (T[n + 2] * rn + 0.5f);
                const float D = (dx * dx + dy * dy + dz * dz) * inv;
                if (!(D < 1.0f)) continue;
                const float w = (T[n + 3] * sp + 0.5f) * F[static_cast<int>(D * 255.0f)];
                const float e = T[n + 4] * sp + (1.0f - sp);
                if (e <= 0.0f) continue;
                const float b = e * w;
                if (!creases || !(s > 0.0f)) {
                    s += b;
                    continue;
                }
                const float d = std::fabs(s - b);
                if (d < cut)
                    s = 20.0f + d / cut;
                else if (d < 18.0f)
                    s += b;
            }
    return s;
}

inline Rgba currentLeather(float u, float v, float w, const LeatherNumbers& k, const Rgb& cell,
                           const Rgb& crease)
{
    const float cut = 1.0f - k.threshold < 0.0001f ? 0.0001f : 1.0f - k.threshold;
    const float dens = k.density < 0.0001f ? 0.0001f : k.density;
    float value = leatherBlobs(k.size, dens, k.spottyness, k.randomness, cut, k.creases, {u, v, w});
    if (k.creases && value >= 20.0f) {
        const float mark = value - 20.0f;
        value = mark < 0.0f ? 0.0f : mark > 1.0f ? 1.0f : mark;
    } else {
        value = value < cut ? value / cut : 1.0f;
    }
    if (value == 0.0f) return {crease[0], crease[1], crease[2], 1.0f};
    return {cell[0] * value + crease[0] * (1.0f - value), cell[1] * value + crease[1] * (1.0f - value),
            cell[2] * value + crease[2] * (1.0f - value), value};
}

} // namespace plain
