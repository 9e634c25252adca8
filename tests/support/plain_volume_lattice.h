// The random values and the lattice noises written down plainly, for the twins of the kernels that
// rest on them.
#pragma once

#include "kernels/noises/random_tables.h"

#include <cmath>
#include <cstdlib>

namespace plain {

inline float randomValue(int i)
{
    int m = std::abs(i);
    if (m >= 65535) m = m % 65535;
    return nezaiva::randomTable[m];
}

// The lattice.

struct Cell {
    int index;
    float fraction;
};

inline Cell cellOf(double d, float period)
{
    if (d > 1e9) d = 0.0;
    if (!std::isfinite(d)) return {0, 0.0f};
    const double i = std::floor(d);
    const float f = static_cast<float>(d - i) * period;
    const int c = static_cast<int>(f);
    return {c, f - static_cast<float>(c)};
}

inline float spline(float a, float b, float c, float t)
{
    return a + b + ((a - 2.0f * b + c) * t - 2.0f * (a - b)) * t;
}

inline float latticeNoise2(float x, float y)
{
    const Cell cx = cellOf(static_cast<double>(x), 32.0f);
    const Cell cy = cellOf(static_cast<double>(y), 32.0f);
    float rows[3];
    for (int j = 0; j < 3; ++j) {
        const int row = ((cy.index + j - 1) & 31) << 5;
        float values[3];
        for (int i = 0; i < 3; ++i)
            values[i] = randomValue(((cx.index + i - 1) & 31) | row);
        rows[j] = spline(values[0], values[1], values[2], cx.fraction);
    }
    return spline(rows[0], rows[1], rows[2], cy.fraction) * 0.25f;
}

// The spline along x, y and z over the values that value(index) gives to the 27 grid points.
template <class Value>
float splineOver27(const Cell& cx, const Cell& cy, const Cell& cz, const Value& value)
{
    float planes[3];
    for (int k = 0; k < 3; ++k) {
        const int plane = ((cz.index + k - 1) & 31) << 10;
        float rows[3];
        for (int j = 0; j < 3; ++j) {
            const int row = plane | ((cy.index + j - 1) & 31) << 5;
            float values[3];
            for (int i = 0; i < 3; ++i)
                values[i] = value(((cx.index + i - 1) & 31) | row);
            rows[j] = spline(values[0], values[1], values[2], cx.fraction);
        }
        planes[k] = spline(rows[0], rows[1], rows[2], cy.fraction);
    }
    return spline(planes[0], planes[1], planes[2], cz.fraction);
}

inline float latticeNoise3(float x, float y, float z)
{
    return splineOver27(cellOf(static_cast<double>(x), 32.0f), cellOf(static_cast<double>(y), 32.0f),
                        cellOf(static_cast<double>(z), 32.0f), [](int index) { return randomValue(index); }) *
           0.125f;
}

inline float latticeNoise4(float x, float y, float z, float w, int period)
{
    const Cell cw = cellOf(static_cast<double>(w), static_cast<float>(period < 60000 ? period : 60000));
    const float m0 = (randomValue(cw.index) + 1.0f) * 21568.16f;
    const float m1 = (randomValue(cw.index + 1) + 1.0f) * 21568.16f;
    const float m2 = (randomValue(cw.index + 2) + 1.0f) * 21568.16f;
    const auto fraction = [](float a) { return a - static_cast<float>(static_cast<int>(a)); };
    const auto value = [&](int index) {
        const float c = randomValue(index) + 2.0f;
        return spline(fraction(m0 * c), fraction(m1 * c), fraction(m2 * c), cw.fraction);
    };
    return splineOver27(cellOf(static_cast<double>(x), 32.0f), cellOf(static_cast<double>(y), 32.0f),
                        cellOf(static_cast<double>(z), 32.0f), value) *
               0.125f -
           1.0f;
}

} // namespace plain
