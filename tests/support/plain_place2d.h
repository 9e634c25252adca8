// The chain of the 2D placement once more, in double precision and straight from its description: the
// oracle of the tests. It shares nothing with the kernel.
#pragma once

#include "kernels/noises/perlin_tables.h"
#include "support/plain_noise.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace plain {

struct PlaceNumbers {
    double coverageU = 1, coverageV = 1, translateU = 0, translateV = 0, rotateFrame = 0;
    double repeatU = 1, repeatV = 1, offsetU = 0, offsetV = 0, rotateUV = 0, noiseU = 0, noiseV = 0;
};

struct PlaceSwitches {
    bool wrapU = true, wrapV = true, clampU = false, clampV = false, mirrorU = false, mirrorV = false;
    bool stagger = false;
};

using Matrix3 = std::array<std::array<double, 3>, 3>; // rows

inline Matrix3 multiplied(const Matrix3& a, const Matrix3& b)
{
    Matrix3 product{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            for (std::size_t k = 0; k < 3; ++k)
                product[row][column] += a[row][k] * b[k][column];
    return product;
}

inline Matrix3 turned(double angle)
{
    return {
        {{std::cos(angle), -std::sin(angle), 0.0}, {std::sin(angle), std::cos(angle), 0.0}, {0.0, 0.0, 1.0}}};
}

inline Matrix3 placeLinear(const PlaceNumbers& p)
{
    const auto quotient = [](double a, double b) { return std::fabs(a) < std::fabs(b) * 1e18 ? a / b : 0.0; };
    const Matrix3 scale{{{quotient(p.repeatU, p.coverageU), 0.0, 0.0},
                         {0.0, quotient(p.repeatV, p.coverageV), 0.0},
                         {0.0, 0.0, 1.0}}};
    return multiplied(turned(p.rotateUV), multiplied(scale, turned(p.rotateFrame)));
}

inline const GradientTables& placeNoiseTables()
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

// Six octaves, each 0.606 of the last one at 1.5 times its frequency.
inline double placeNoise(double u, double v, double depth)
{
    double frequency = 1.0, amplitude = 1.0, sum = 0.0, norm = 0.0;
    for (int octave = 0; octave < 6; ++octave) {
        sum += amplitude * gradientNoise(placeNoiseTables(), static_cast<float>(17.0 * u * frequency),
                                         static_cast<float>(17.0 * v * frequency),
                                         static_cast<float>(depth * frequency));
        norm += amplitude;
        frequency *= 1.5;
        amplitude *= 0.606;
    }
    return sum / norm;
}

// Where a point ends, and how near it came to a place where the chain jumps: single precision may fall on
// the other side there.
class Place2d {
public:
    Place2d(double inputU, double inputV, const PlaceNumbers& numbers, const PlaceSwitches& switches)
        : u(inputU), v(inputV), p(numbers), s(switches)
    {
        if (std::fabs(p.coverageU) < 1e-7 || std::fabs(p.coverageV) < 1e-7)
            rejected = true;
        else
            run();
        valid = valid && !rejected;
    }

    double u, v;
    bool valid = true;
    bool rejected = false; // the result is the input
    double margin = 1e30;

private:
    bool below(double a, double b)
    {
        margin = std::min(margin, std::fabs(a - b));
        return a < b;
    }
    double wholePart(double x)
    {
        margin = std::min(margin, std::fabs(x - std::round(x)));
        return std::floor(x);
    }
    void turn(double angle)
    {
        const double a = u - 0.5, b = v - 0.5;
        u = std::cos(angle) * a - std::sin(angle) * b + 0.5;
        v = std::sin(angle) * a + std::cos(angle) * b + 0.5;
    }
    bool outside(double x, double end) { return below(x, 0.0) || below(end, x); }
    double onImage(double x, double coverage, double repeat, bool wrap, bool clamp)
    {
        const bool negative = repeat < 0.0 || coverage < 0.0;
        coverage = std::fabs(coverage);
        repeat = std::fabs(repeat);
        if (coverage >= 1.0) {
            x = x * repeat / coverage;
            if (clamp) x = std::min(std::max(x, 1e-6), repeat - 1e-6);
            if (!wrap && outside(x, repeat)) valid = false;
        } else {
            if (wrap && !clamp) x -= wholePart(x);
            x /= coverage;
            if (clamp) x = std::min(std::max(x, 1e-6), 0.999999);
            if (outside(x, 1.0)) valid = false;
            x *= repeat;
        }
        return negative ? 1.0 - x : x;
    }
    // Whole numbers are jumps of everything that asks for the tile.
    bool oddTile(double x)
    {
        wholePart(x);
        double m = std::fmod(x, 2.0);
        if (x < 0.0) m += 2.0;
        return m > 1.0;
    }
    void run()
    {
        const double nU = p.noiseU > 1e-8 ? placeNoise(u, v, 0.0) : 0.0;
        const double nV = p.noiseV > 1e-8 ? placeNoise(u, v, 1.0) : 0.0;
        u += p.noiseU * 3.0 * nU;
        v += p.noiseV * 3.0 * nV;
        turn(p.rotateFrame);
        if ((s.clampU && !s.wrapU && outside(u, 1.0)) || (s.clampV && !s.wrapV && outside(v, 1.0))) {
            rejected = true;
            return;
        }
        u = onImage(u - p.translateU, p.coverageU, p.repeatU, s.wrapU, s.clampU) + p.offsetU;
        v = onImage(v - p.translateV, p.coverageV, p.repeatV, s.wrapV, s.clampV) + p.offsetV;
        if ((s.stagger || s.mirrorV) && oddTile(v)) {
            if (s.stagger) u += 0.5;
            if (s.mirrorV) v = 1.0 + 2.0 * std::floor(v) - v;
        }
        if (s.mirrorU && oddTile(u)) u = 1.0 + 2.0 * std::floor(u) - u;
        turn(p.rotateUV);
    }

    PlaceNumbers p;
    PlaceSwitches s;
};

} // namespace plain
