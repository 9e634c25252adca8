// What the plain twins are written in: values in double precision, and comparisons whose order is told. It
// shares nothing with the library.
#pragma once

#include <array>
#include <cstddef>

namespace plain {

// Red, green, blue and alpha, by name or by index.
struct Rgba {
    double r = 0.0, g = 0.0, b = 0.0, a = 0.0;

    double& operator[](std::size_t channel) { return this->*kChannels[channel]; }
    double operator[](std::size_t channel) const { return this->*kChannels[channel]; }

private:
    static constexpr double Rgba::*kChannels[] = {&Rgba::r, &Rgba::g, &Rgba::b, &Rgba::a};
};

// A vector, a point, or a colour without alpha.
using Vec = std::array<double, 3>;

// Comparisons in the order of the arguments: the first one stays unless the second is truly beyond it.
inline double least(double x, double y)
{
    return y < x ? y : x;
}
inline double most(double x, double y)
{
    return x < y ? y : x;
}

} // namespace plain
