// The arithmetic nodes written down plainly, in double precision: the oracle of their tests and the peer of
// their benchmark. It shares nothing with the library.
#pragma once

#include "support/plain_values.h"

#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

namespace plain {

// A power as single precision has it: infinite where it is too large, zero where it is too small.
inline double power(double base, double exponent)
{
    const double value = std::pow(base, exponent);
    if (std::fabs(value) > static_cast<double>(FLT_MAX)) return std::copysign(HUGE_VAL, value);
    return std::fabs(value) < 0.5 * static_cast<double>(FLT_TRUE_MIN) ? 0.0 : value;
}

inline Rgba multiplyDivideOf(const Rgba& a, const Rgba& b, int operation)
{
    const bool black = (operation == 1 || operation == 2) && b[0] * b[0] + b[1] * b[1] + b[2] * b[2] < 1e-6;
    Rgba result{0.0, 0.0, 0.0, 1.0};
    for (std::size_t i = 0; i < 3 && !black; ++i) {
        result[i] = a[i];
        if (operation == 1) result[i] = a[i] * b[i];
        if (operation == 2) result[i] = a[i] * 1e-6 > b[i] ? 0.0 : a[i] / b[i];
        if (operation == 3) result[i] = power(a[i], most(0.0, b[i]));
    }
    return result;
}

inline double gammaPowerOf(double x, double gamma)
{
    return gamma < 1e-6 ? 0.0 : power(x, 1.0 / gamma);
}

inline double setRangeOf(double value, double oldMin, double oldMax, double newMin, double newMax)
{
    const double m = oldMin == oldMax ? oldMax + 1e6 : oldMax;
    return newMin + (value - oldMin) / (m - oldMin) * (newMax - newMin);
}

inline double dot(const Vec& a, const Vec& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Vec unit(const Vec& v)
{
    const double length = std::sqrt(dot(v, v));
    const double longest = most(most(std::fabs(v[0]), std::fabs(v[1])), std::fabs(v[2]));
    if (!(longest < length * 1e18)) return v;
    return {v[0] / length, v[1] / length, v[2] / length};
}

// The columns of a matrix, then the offset.
using Placement = std::array<Vec, 4>;

inline Vec placed(const Placement& t, const Vec& v, bool withOffset)
{
    Vec result{};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = t[0][i] * v[0] + t[1][i] * v[1] + t[2][i] * v[2] + (withOffset ? t[3][i] : 0.0);
    return result;
}

inline Vec vectorProductOf(const Vec& a, const Vec& b, const Placement& t, int operation, bool normalize)
{
    Vec result{1.0, 0.0, 0.0};
    if (operation == 0) result = a;
    if (operation == 1) {
        const double product = normalize ? dot(unit(a), unit(b)) : dot(a, b);
        return {product, product, product};
    }
    if (operation == 2)
        result = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    if (operation == 3) result = placed(t, a, false);
    if (operation == 4) return placed(t, a, true);
    return normalize ? unit(result) : result;
}

inline double distanceOf(const Vec& a, const Placement& ta, const Vec& b, const Placement& tb)
{
    const Vec p = placed(ta, a, true), q = placed(tb, b, true);
    const Vec d{p[0] - q[0], p[1] - q[1], p[2] - q[2]};
    return std::sqrt(dot(d, d));
}

// values: what the entries of the list give, zero for those that add nothing.
inline double plusMinusAverageOf(const std::vector<double>& values, int operation)
{
    if (values.empty() || operation < 0 || operation > 3) return 0.0;
    double others = 0.0;
    for (std::size_t i = 1; i < values.size(); ++i)
        others += values[i];
    if (operation == 0) return values[0];
    if (operation == 2) return values[0] - others;
    const double sum = values[0] + others;
    return operation == 3 ? sum / static_cast<double>(values.size()) : sum;
}

inline bool conditionOf(double a, double b, int operation)
{
    if (operation == 0) return std::fabs(a - b) < 1e-6;
    if (operation == 1) return std::fabs(a - b) > 1e-6;
    if (operation == 2) return a - 1e-6 > b;
    if (operation == 3) return a + 1e-6 >= b;
    if (operation == 4) return b > a + 1e-6;
    if (operation == 5) return b >= a - 1e-6;
    return false;
}

inline double contrastOf(double x, double contrast, double bias)
{
    const bool above = x > bias;
    const double t = above ? (x - bias) / (1.0 - bias) : (bias - x) / bias;
    const double exponent = above ? 0.5 / bias : 0.5 / (1.0 - bias);
    const double p = most(0.0, power(most(0.0, 1.0 - t), exponent));
    const double away = (1.0 - power(p, contrast)) * 0.5;
    return above ? 0.5 + away : 0.5 - away;
}

} // namespace plain
