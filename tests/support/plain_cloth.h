// The cloth texture once more, in both looks, written straight from its description: the oracle of the
// tests and the measure of the benchmarks. Slow on purpose, and sharing nothing with the kernel but the
// permutation of the gradient noise, which is given.
#pragma once

#include "kernels/noises/perlin_tables.h"
#include "support/plain_noise.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace plain {

using Channels = std::array<float, 4>;

struct ClothColors {
    Channels gap{0.0f, 0.0f, 0.0f, 1.0f};
    Channels u{1.0f, 1.0f, 1.0f, 1.0f};
    Channels v{0.0f, 0.0f, 0.0f, 1.0f};
};

struct ClothNumbers {
    float uWidth = 0.75f, vWidth = 0.75f, uWave = 0.0f, vWave = 0.0f;
    float randomness = 0.0f, widthSpread = 0.0f, brightSpread = 0.0f;
};

// The sine of the maths library, or the one that is rounded right: they differ in the last place of few.
struct LibrarySine {
    float operator()(float x) const { return std::sin(x); }
};
struct RoundedSine {
    float operator()(float x) const { return static_cast<float>(std::sin(static_cast<double>(x))); }
};

inline float finite(float x)
{
    return std::isfinite(x) ? x : 0.0f;
}

// --- the accurate weave

inline float clothEntry(const float* table, std::int64_t i)
{
    return static_cast<float>(static_cast<double>(table[i & 32767]));
}

// The fraction of what is not finite is 0.
inline float clothFrac(float x)
{
    return finite(x) - std::floor(finite(x));
}

inline std::int64_t clothTrunc(float x)
{
    const double whole = std::trunc(static_cast<double>(finite(x)));
    if (whole > 2147483647.0) return 2147483647;
    if (whole < -2147483648.0) return -2147483648;
    return static_cast<std::int64_t>(whole);
}

inline float clothSmooth2(const float* table, float x, float y)
{
    const float cx = clothFrac(x) * 32.0f;
    const float cy = clothFrac(y) * 32.0f;
    const std::int64_t i = clothTrunc(cx);
    const std::int64_t j = clothTrunc(cy);
    const float tx = cx - static_cast<float>(i);
    const float ty = cy - static_cast<float>(j);
    float rows[3];
    for (int row = 0; row < 3; ++row) {
        const std::int64_t at = ((j + row - 1) & 31) * 32;
        rows[row] = spline(clothEntry(table, ((i - 1) & 31) + at), clothEntry(table, (i & 31) + at),
                           clothEntry(table, ((i + 1) & 31) + at), tx);
    }
    return spline(rows[0], rows[1], rows[2], ty) * 0.25f;
}

inline float clothStrand(const float* table, std::int64_t n, float p)
{
    const float s = clothEntry(table, n) + p;
    const float c = clothFrac(s) * 32.0f;
    const std::int64_t i = c >= 1.0f ? clothTrunc(c) : 1;
    const float t = c - static_cast<float>(i);
    return spline(clothEntry(table, (i + 31) & 31), clothEntry(table, i & 31),
                  clothEntry(table, (i + 1) & 31), t);
}

inline Channels clothBlend(const Channels& gap, const Channels& thread, float t)
{
    Channels result;
    for (std::size_t i = 0; i < 4; ++i)
        result[i] = gap[i] * (1.0f - t) + thread[i] * t;
    return result;
}

template <typename Sine = LibrarySine>
Channels accurateCloth(const float* table, float u, float v, ClothNumbers k, const ClothColors& colors,
                       Sine sine = {})
{
    if (k.randomness > 0.0f) {
        const float a = clothSmooth2(table, u / 22.0f, v / 24.0f);
        const float b = clothSmooth2(table, u / 23.0f, v / 23.0f);
        u += a * k.randomness;
        v += b * k.randomness;
    }

    const float s1 = sine(u * 6.2831855f);
    const float s2 = sine(v * 6.2831855f);
    u -= k.uWave * s2;
    v += k.vWave * s1;

    k.uWidth += (clothStrand(table, clothTrunc(2.0f * u), v / 123.5f) * 0.25f - 0.5f) * k.widthSpread;
    k.vWidth += (clothStrand(table, clothTrunc(2.0f * v) + 100, u / 123.5f) * 0.25f - 0.5f) * k.widthSpread;

    const float fu = clothFrac(u);
    const float fv = clothFrac(v);
    bool over = false;
    float p = fu, q = fv, wp = k.uWidth, wq = k.vWidth;
    if ((fu >= 0.5f) != (fv >= 0.5f)) {
        over = true;
        p = fv;
        q = fu;
        wp = k.vWidth;
        wq = k.uWidth;
    }
    p = clothFrac(2.0f * p);
    q = clothFrac(2.0f * q);

    float r;
    if (wq < q && wp < p) {
        r = 1.0f;
    } else if (wq < q) {
        over = !over;
        const float a = 2.0f * p / wp - 1.0f;
        const float b = (q - 1.0f) - wq * 0.5f;
        r = (a * a + b * b) * 0.75f;
    } else {
        const float a = p - wp * 0.5f;
        const float b = 2.0f * q / wq - 1.0f;
        r = (a * a + b * b) * 0.75f;
    }
    // A thread of no width, whose r is not a number, shows nowhere.
    if (!(r < 1.0f)) return colors.gap;

    const std::int64_t n = over ? clothTrunc(2.0f * u) : clothTrunc(2.0f * v) + 1000;
    const float s = clothStrand(table, n, v / 100.0f);
    const float bright = (1.0f - r) * ((s * 0.25f - 0.5f) * k.brightSpread + 1.0f);
    const float t = bright < 1.0f ? bright : 1.0f;
    return clothBlend(colors.gap, over ? colors.u : colors.v, t);
}

// --- the legacy weave

inline const GradientTables& clothGradientTables()
{
    static const auto tables = [] {
        GradientTables made;
        made.gradients = gradientRows();
        for (std::size_t i = 0; i < 256; ++i)
            made.permutation[i] = OUtils::perlinTables.permutation[i];
        return made;
    }();
    return tables;
}

// The gradient noise in the plane: z cell 0, no distances along z.
inline double gradientNoisePlane(const GradientTables& tables, float X, float Y)
{
    const float point[2] = {X, Y};
    int cell[2];
    double distance[2][2];
    double fade[2];
    for (int axis = 0; axis < 2; ++axis) {
        double d = static_cast<double>(point[axis]);
        if (d < 0.0) d = d - 1.0 + 1e-9;
        cell[axis] = static_cast<int>(d);
        const double f = static_cast<double>(point[axis]) - cell[axis];
        distance[axis][0] = f;
        distance[axis][1] = static_cast<double>(point[axis]) - (cell[axis] + 1);
        fade[axis] = f * f * f * ((6.0 * f - 15.0) * f + 10.0);
    }
    double corners[2][2];
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 2; ++i) {
            const int middle =
                tables.permutation[static_cast<std::size_t>(wrap(wrap(cell[1] + j) + tables.permutation[0]))];
            const auto& g = tables.gradients[static_cast<std::size_t>(wrap(wrap(cell[0] + i) + middle))];
            corners[j][i] =
                static_cast<double>(g[0]) * distance[0][i] + static_cast<double>(g[1]) * distance[1][j];
        }
    const auto mix = [](double a, double b, double s) { return a + s * (b - a); };
    return mix(mix(corners[0][0], corners[0][1], fade[0]), mix(corners[1][0], corners[1][1], fade[0]),
               fade[1]);
}

// sqrt(1 - e^2) sin(pi g), with e the distance from the axis of a thread of the given width.
template <typename Sine>
float legacyThread(float across, float width, float g, Sine sine)
{
    const float e = std::fabs(width * 0.5f - across) / (width * 0.5f);
    return std::sqrt(1.0f - e * e) * sine(g * 3.1415927f);
}

inline float legacyFraction(float x)
{
    const float f = finite(x) - std::trunc(finite(x));
    return f < 0.0f ? f + 1.0f : f;
}

// Small coordinates: the cells of the gradient noise are ints here.
template <typename Sine = LibrarySine>
Channels legacyCloth(const GradientTables& tables, float u, float v, float w, ClothNumbers k,
                     ClothColors colors, Sine sine = {})
{
    float U = u - k.uWave * sine(v * 6.28318f);
    float V = v + k.vWave * sine(u * 6.28318f);

    if (k.randomness > 1e-5f || k.brightSpread > 1e-5f) {
        const float n = static_cast<float>(gradientNoise(tables, u, v, w));
        if (k.randomness > 1e-5f) {
            U += k.randomness * n;
            V += k.randomness * n;
        }
        if (k.brightSpread > 1e-5f) {
            const float b = (n + 1.0f) * 0.5f * k.brightSpread;
            for (std::size_t i = 0; i < 4; ++i) {
                colors.u[i] = colors.u[i] * (1.0f - b) + colors.gap[i] * b;
                colors.v[i] = colors.v[i] * (1.0f - b) + colors.gap[i] * b;
            }
        }
    }
    if (k.widthSpread > 1e-5f) {
        const float nn = static_cast<float>(gradientNoisePlane(tables, u * 0.2f, v * 0.2f));
        const float m = (nn + 1.0f) * 0.5f * k.widthSpread;
        k.uWidth -= m;
        k.vWidth -= k.widthSpread - m;
    }

    const float fu = legacyFraction(U);
    const float fv = legacyFraction(V);
    const float a = k.uWidth * 0.5f;
    const float b = k.vWidth * 0.5f;
    const auto threadU = [&](float t) { return clothBlend(colors.gap, colors.u, t); };
    const auto threadV = [&](float t) { return clothBlend(colors.gap, colors.v, t); };
    if (fu >= 0.5f) {
        if (0.5f < fv && fv < b + 0.5f)
            return threadV(legacyThread(fv - 0.5f, b, (fu - a) / (1.0f - a), sine));
        if (0.5f < fu && fu < a + 0.5f) {
            const float h = fv < 0.5f ? fv + 0.5f : fv - 0.5f;
            return threadU(legacyThread(fu - 0.5f, a, (h - b) / (1.0f - b), sine));
        }
        if (fv < b) return threadV(legacyThread(fv, b, ((fu - 0.5f) - a) / (1.0f - a), sine));
    } else {
        if (fv < b) return threadV(legacyThread(fv, b, ((fu + 0.5f) - a) / (1.0f - a), sine));
        if (fu < a) return threadU(legacyThread(fu, a, (fv - b) / (1.0f - b), sine));
        if (0.5f < fv && fv < b + 0.5f)
            return threadV(legacyThread(fv - 0.5f, b, (fu - a) / (1.0f - a), sine));
    }
    return colors.gap;
}

} // namespace plain
