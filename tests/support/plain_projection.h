// The projections once more, in double precision and by other formulas, to hold the host's against.
#pragma once

#include <array>
#include <cmath>
#include <complex>
#include <functional>

namespace support {

using PlainPoint = std::array<double, 3>;
using PlainUV = std::array<double, 2>;
using PlainProjection = std::function<PlainUV(const PlainPoint&)>;

inline double plainLength(const PlainPoint& p)
{
    return std::hypot(p[0], p[1], p[2]);
}
// Counter-clockwise from the first axis, in half turns.
inline double plainHalfTurns(double along, double across)
{
    return std::arg(std::complex<double>(along, across)) / std::acos(-1.0);
}

inline PlainUV plainPlanar(const PlainPoint& p)
{
    return {(p[0] + 1) / 2, (p[1] + 1) / 2};
}
// Angles in degrees.
inline PlainUV plainSpherical(const PlainPoint& p, double angleU, double angleV)
{
    const double latitude = 0.5 - std::acos(p[1] / plainLength(p)) / std::acos(-1.0); // in half turns
    return {0.5 + plainHalfTurns(p[2], p[0]) * 180 / angleU, 0.5 + latitude * 180 / angleV};
}
inline PlainUV plainCylindrical(const PlainPoint& p, double angleU)
{
    return {0.5 + plainHalfTurns(p[2], p[0]) * 180 / angleU, plainPlanar(p)[1]};
}
inline PlainUV plainBall(const PlainPoint& p)
{
    const double halfTurnsFromFront = std::acos(p[2] / plainLength(p)) / std::acos(-1.0);
    const std::complex<double> around =
        std::polar(halfTurnsFromFront / 2, std::arg(std::complex<double>(p[0], p[1])));
    return {0.5 + around.real(), 0.5 + around.imag()};
}
// The plane of an axis, from its positive or its negative side.
inline PlainUV plainSide(const PlainPoint& p, int axis, bool negative)
{
    const double mirror = negative ? -1 : 1;
    const PlainUV square = axis == 0   ? PlainUV{-p[2] * mirror, p[1]}
                           : axis == 1 ? PlainUV{p[0], -p[2] * mirror}
                                       : PlainUV{p[0] * mirror, p[1]};
    return {(square[0] + 1) / 2, (square[1] + 1) / 2};
}
inline int plainLargestAxis(const PlainPoint& v)
{
    int axis = 0;
    for (int i = 1; i < 3; ++i)
        if (std::fabs(v[static_cast<std::size_t>(i)]) > std::fabs(v[static_cast<std::size_t>(axis)]))
            axis = i;
    return axis;
}
inline PlainUV plainCubic(const PlainPoint& p)
{
    const int axis = plainLargestAxis(p);
    return plainSide(p, axis, p[static_cast<std::size_t>(axis)] < 0);
}
inline PlainUV plainTriPlanar(const PlainPoint& p, const PlainPoint& normal)
{
    return plainSide(p, plainLargestAxis(normal), false);
}

// The change of both coordinates along a direction, by central differences of this step.
inline PlainUV plainSlope(const PlainProjection& projection, const PlainPoint& p, const PlainPoint& direction,
                          double step = 1e-6)
{
    PlainPoint before = p, after = p;
    for (std::size_t i = 0; i < 3; ++i) {
        before[i] -= direction[i] * step;
        after[i] += direction[i] * step;
    }
    const PlainUV from = projection(before), to = projection(after);
    return {(to[0] - from[0]) / (2 * step), (to[1] - from[1]) / (2 * step)};
}

} // namespace support
