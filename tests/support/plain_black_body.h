// The colour of a black body written down plainly, in double precision: the oracle of its tests and the peer
// of its benchmark. It shares nothing with the library.
#pragma once

#include "support/plain_values.h"

#include <cmath>
#include <cstddef>

namespace plain {

// What the light of 360 + 5 row nanometres adds to X, Y and Z.
inline constexpr double kObserver[72][3] = {
    {0, 0, 0},          {0, 0, 0},          {0, 0, 0},          {0, 0, 0},          {0, 0, 0},
    {0, 0, 0},          {0, 0, 0.01},       {0.01, 0, 0.03},    {0.02, 0, 0.09},    {0.04, 0, 0.2},
    {0.08, 0.01, 0.39}, {0.14, 0.01, 0.66}, {0.2, 0.02, 0.97},  {0.26, 0.03, 1.28}, {0.31, 0.04, 1.55},
    {0.36, 0.05, 1.8},  {0.38, 0.06, 1.97}, {0.39, 0.07, 2.03}, {0.37, 0.09, 1.99}, {0.34, 0.11, 1.9},
    {0.3, 0.13, 1.75},  {0.25, 0.15, 1.55}, {0.2, 0.19, 1.32},  {0.13, 0.22, 1.03}, {0.08, 0.25, 0.77},
    {0.04, 0.3, 0.57},  {0.02, 0.34, 0.42}, {0.01, 0.4, 0.3},   {0, 0.46, 0.22},    {0.02, 0.53, 0.16},
    {0.04, 0.61, 0.11}, {0.07, 0.69, 0.08}, {0.12, 0.76, 0.06}, {0.17, 0.82, 0.04}, {0.24, 0.88, 0.03},
    {0.3, 0.92, 0.02},  {0.38, 0.96, 0.01}, {0.45, 0.98, 0.01}, {0.53, 0.99, 0},    {0.62, 1, 0},
    {0.71, 1, 0},       {0.79, 0.98, 0},    {0.88, 0.96, 0},    {0.95, 0.92, 0},    {1.01, 0.87, 0},
    {1.07, 0.83, 0},    {1.12, 0.78, 0},    {1.13, 0.72, 0},    {1.12, 0.66, 0},    {1.09, 0.59, 0},
    {1.03, 0.53, 0},    {0.95, 0.46, 0},    {0.86, 0.4, 0},     {0.75, 0.34, 0},    {0.65, 0.28, 0},
    {0.54, 0.23, 0},    {0.43, 0.18, 0},    {0.34, 0.14, 0},    {0.27, 0.11, 0},    {0.2, 0.08, 0},
    {0.15, 0.06, 0},    {0.11, 0.04, 0},    {0.08, 0.03, 0},    {0.06, 0.02, 0},    {0.04, 0.02, 0},
    {0.03, 0.01, 0},    {0.02, 0.01, 0},    {0.01, 0.01, 0},    {0.01, 0, 0},       {0.01, 0, 0},
    {0, 0, 0},          {0, 0, 0},
};

inline constexpr double kFromXyz[3][3][3] = {
    {{2.370672, -0.900039, -0.470634}, {-0.513883, 1.425302, 0.088581}, {0.005298, -0.014695, 1.009397}},
    {{3.2407088, -1.5372593, -0.4985704},
     {-0.9692574, 1.8759952, 0.041555557},
     {0.055635083, -0.20399582, 1.0570697}},
    {{1.641023, -0.324803, -0.236425}, {-0.663663, 1.615332, 0.016756}, {0.011722, -0.008284, 0.988395}},
};

// Red, green and blue before the white scale; kT is Boltzmann's constant times the temperature.
inline Vec unscaledBlackBody(double kT, std::size_t space)
{
    double xyz[3] = {};
    for (int row = 0; row <= 70; ++row) {
        const double w = (360.0 + 5.0 * row) * 1e-9;
        const double light =
            3.7417712843186317e-16 / (std::pow(w, 5.0) * (std::exp(1.9864455003959036e-25 / (w * kT)) - 1.0));
        for (std::size_t i = 0; i < 3; ++i)
            xyz[i] += light * kObserver[row][i] * 5.0;
    }
    Vec rgb{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            rgb[i] += kFromXyz[space][i][j] * xyz[j];
    return rgb;
}

inline Vec overMean(const Vec& c)
{
    const double mean = (c[0] + c[1] + c[2]) / 3.0;
    return mean == 0.0 ? c : Vec{c[0] / mean, c[1] / mean, c[2] / mean};
}

inline Vec whiteScaleOf(std::size_t space)
{
    if (space == 0) return {1.0, 1.0, 1.0};
    const Vec daylight = overMean(unscaledBlackBody(8.974227600000001e-20, space));
    return {1.0 / daylight[0], 1.0 / daylight[1], 1.0 / daylight[2]};
}

inline Vec blackBodyOf(double temperature, std::size_t space)
{
    static const Vec kScales[3] = {whiteScaleOf(0), whiteScaleOf(1), whiteScaleOf(2)};
    const Vec c = unscaledBlackBody(1.3806504e-23 * temperature, space);
    return overMean({c[0] * kScales[space][0], c[1] * kScales[space][1], c[2] * kScales[space][2]});
}

// The largest channel at 1, none below 0.
inline Vec temperatureColorOf(double temperature, std::size_t space)
{
    Vec c = blackBodyOf(temperature < 1000.0 ? 1000.0 : temperature, space);
    const double largest = std::fmax(std::fmax(c[0], c[1]), c[2]);
    for (double& channel : c) {
        channel /= largest;
        if (channel < 0.0) channel = 0.0;
    }
    return c;
}

} // namespace plain
