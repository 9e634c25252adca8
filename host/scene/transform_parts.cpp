#include "host/scene/transform_parts.h"

#include <cmath>
#include <numbers>

namespace ombrix {

namespace {

struct Turn {
    double sine = 0.0, cosine = 1.0;
};

Turn turnOf(double degrees)
{
    const double rest = std::fmod(degrees, 360.0);
    const double quarters = rest / 90.0;
    if (quarters == std::trunc(quarters)) {
        switch ((static_cast<int>(quarters) + 4) % 4) {
        case 0:
            return {0.0, 1.0};
        case 1:
            return {1.0, 0.0};
        case 2:
            return {0.0, -1.0};
        default:
            return {-1.0, 0.0};
        }
    }
    const double angle = rest * (std::numbers::pi / 180.0);
    return {std::sin(angle), std::cos(angle)};
}

// Turns a vector about x, then y, then z.
OUtils::VectorD turned(OUtils::VectorD v, const Turn& x, const Turn& y, const Turn& z)
{
    v = {v.x, x.cosine * v.y - x.sine * v.z, x.sine * v.y + x.cosine * v.z};
    v = {y.cosine * v.x + y.sine * v.z, v.y, y.cosine * v.z - y.sine * v.x};
    return {z.cosine * v.x - z.sine * v.y, z.sine * v.x + z.cosine * v.y, v.z};
}

// Adding zero turns -0 into 0.
OUtils::Vector scaledColumn(const OUtils::VectorD& axis, double scale)
{
    return {static_cast<float>(axis.x * scale + 0.0), static_cast<float>(axis.y * scale + 0.0),
            static_cast<float>(axis.z * scale + 0.0)};
}

} // namespace

OUtils::TraceTransform composeTransform(const OUtils::VectorD& translate, const OUtils::VectorD& rotate,
                                        const OUtils::VectorD& scale)
{
    const Turn x = turnOf(rotate.x), y = turnOf(rotate.y), z = turnOf(rotate.z);
    OUtils::TraceTransform result;
    result.matrix.columns[0] = scaledColumn(turned({1.0, 0.0, 0.0}, x, y, z), scale.x);
    result.matrix.columns[1] = scaledColumn(turned({0.0, 1.0, 0.0}, x, y, z), scale.y);
    result.matrix.columns[2] = scaledColumn(turned({0.0, 0.0, 1.0}, x, y, z), scale.z);
    result.offset = translate;
    return result;
}

} // namespace ombrix
