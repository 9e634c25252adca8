// Coordinates that try a noise: every magnitude, both signs, whole numbers, edges of the conversions,
// and what is not finite.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

template <typename Real>
std::vector<Real> edgeCoordinates()
{
    constexpr Real kInfinity = std::numeric_limits<Real>::infinity();
    std::vector<Real> values{Real(0),
                             Real(0.5),
                             Real(1),
                             Real(31.999999),
                             Real(1e-10),
                             Real(1e-30),
                             Real(16777216),
                             Real(999999999),
                             Real(1e9),
                             Real(1.0000001e9),
                             Real(2e9),
                             Real(2147483520.),
                             Real(2147483648.),
                             Real(4294967296.),
                             Real(9.3e18),
                             Real(1e30),
                             kInfinity,
                             std::numeric_limits<Real>::max(),
                             std::numeric_limits<Real>::denorm_min()};
    const std::size_t count = values.size();
    for (std::size_t i = 0; i < count; ++i)
        values.push_back(-values[i]);
    values.push_back(std::numeric_limits<Real>::quiet_NaN());
    return values;
}

// A reproducible source of coordinates: mostly near the origin, some anywhere up to 1e8, some whole,
// some of the edges.
class NoisePoints {
public:
    explicit NoisePoints(std::uint64_t seed, bool withEdges = true)
        : m_random(seed), m_edges(edgeCoordinates<double>()), m_withEdges(withEdges)
    {
    }
    double next()
    {
        const std::uint64_t choice = m_random() % 64;
        if (choice == 0 && m_withEdges) return m_edges[m_random() % m_edges.size()];
        if (choice < 4) return static_cast<double>(static_cast<int>(m_random() % 200) - 100);
        if (choice < 10) return uniform() * 1e8;
        if (choice < 20) return uniform() * 1e3;
        return uniform() * 4.0;
    }
    float nextFloat() { return static_cast<float>(next()); }

private:
    double uniform() { return static_cast<double>(m_random() >> 11) * 0x1p-52 - 1.0; }

    std::mt19937_64 m_random;
    std::vector<double> m_edges;
    bool m_withEdges;
};

// One number for "the same result": equal bits, or both not a number.
inline bool sameNoise(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

inline bool sameNoise(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}
