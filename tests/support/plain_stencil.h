// The stencil once more, in double precision and by cases, to hold the plugin against.
#pragma once

#include "support/plain_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace support {

struct PlainStencil {
    double u = 0, v = 0, edgeBlend = 0;
    bool keyMasking = false, positiveKey = false;
    plain::Rgba image{1, 1, 1, 1}, background{0, 0, 0, 1};
    plain::Vec key{1, 1, 1}, ranges{0, 0, 0};
    double mask = 0;
    bool invert = false, invertAlpha = true, alphaFromColor = false, raw = false;
    plain::Vec colorMult{1, 1, 1}, colorOffset{0, 0, 0};
    double alphaMult = 1, alphaOffset = 0;
};

struct PlainStencilResult {
    plain::Rgba color;
    double weight = 0;
    // How far the nearest decision was from falling the other way; a twin in single precision may
    // decide otherwise where this is next to nothing.
    double margin = std::numeric_limits<double>::infinity();
};

// The weight of the soft edge. A corner's point is measured from the centre of the corner's circle.
inline double plainStencilEdge(double u, double v, double blend)
{
    if (blend <= 1e-6) return 1;
    const auto toEdge = [](double x) {
        const double part = x - std::trunc(x);
        return part > 0.5 ? 1 - part : part;
    };
    const double radius = blend / 2, plateau = radius / 10, ramp = radius - plateau;
    const double x = toEdge(u), y = toEdge(v);
    const bool inCorner = x < radius && y < radius;
    if (!inCorner) return std::min(x, y) >= ramp ? 1 : std::min(x, y) / ramp;
    const double fromCentre = std::hypot(x - radius, y - radius);
    if (fromCentre <= plateau) return 1;
    return fromCentre > radius ? 0 : (radius - fromCentre) / ramp;
}

// Hue as a fraction of the circle, saturation, value.
inline plain::Vec plainHsv(const plain::Vec& c)
{
    const double high = std::max({c[0], c[1], c[2]}), low = std::min({c[0], c[1], c[2]});
    const double span = high - low;
    if (span <= 0) return {0, 0, high};
    double sixth = 0; // of the circle
    if (high == c[0])
        sixth = (c[1] - c[2]) / span;
    else if (high == c[1])
        sixth = 2 + (c[2] - c[0]) / span;
    else
        sixth = 4 + (c[0] - c[1]) / span;
    if (sixth < 0) sixth += 6;
    return {sixth / 6, span / high, high};
}

inline PlainStencilResult plainStencil(const PlainStencil& in)
{
    PlainStencilResult out;
    const auto decide = [&out](double distance) { out.margin = std::min(out.margin, std::fabs(distance)); };

    out.weight = plainStencilEdge(in.u, in.v, in.edgeBlend);
    bool takenByKey = false;
    if (in.keyMasking) {
        const auto image = plainHsv({in.image[0], in.image[1], in.image[2]});
        const auto key = plainHsv(in.key);
        bool outside = false;
        for (std::size_t i = 0; i < 3; ++i) {
            const double beyond = std::fabs(key[i] - image[i]) - in.ranges[i];
            decide(beyond);
            outside = outside || beyond > 0;
        }
        takenByKey = in.positiveKey ? outside : !outside;
    }
    if (takenByKey)
        out.weight -= 1;
    else if (in.mask >= 1e-6)
        out.weight -= in.mask;

    // 0 and 1 come out exactly in any precision.
    if (out.weight != 0 && out.weight != 1) {
        decide(out.weight - 1e-6);
        decide(out.weight - 0.999999);
    }
    out.color = in.background;
    if (out.weight < 1e-6) return out;
    const double share = out.weight >= 0.999999 ? 1 : out.weight;
    for (std::size_t i = 0; i < 4; ++i)
        out.color[i] = share == 1 ? in.image[i] : in.image[i] * share + in.background[i] * (1 - share);

    auto& [r, g, b, a] = out.color;
    if (in.raw) {
        if (in.invert) r = -r, g = -g, b = -b;
        return out;
    }
    if (in.invert)
        for (std::size_t i = 0; i < (in.invertAlpha ? 4 : 3); ++i)
            out.color[i] = std::max(0.0, 1 - out.color[i]);
    if (in.alphaFromColor) a = 0.3 * r + 0.59 * g + 0.11 * b;
    for (std::size_t i = 0; i < 3; ++i)
        out.color[i] = out.color[i] * in.colorMult[i] + in.colorOffset[i];
    a = a * in.alphaMult + in.alphaOffset;
    return out;
}

} // namespace support
