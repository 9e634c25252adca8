// Small vector arithmetic of the renderer, in single precision.
#pragma once

#include <ombrix/types.h>

#include <algorithm>
#include <cmath>

namespace ombrix {

using OUtils::AColor;
using OUtils::Box;
using OUtils::Color;
using OUtils::Matrix;
using OUtils::TraceTransform;
using OUtils::Transform;
using OUtils::Vector;
using OUtils::VectorD;

inline constexpr float kPi = 3.14159265f;

inline float dot(const Vector& a, const Vector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(const Vector& v)
{
    return std::sqrt(dot(v, v));
}
inline Vector negated(const Vector& v)
{
    return {-v.x, -v.y, -v.z};
}
inline float radians(float degrees)
{
    return degrees * (kPi / 180.0f);
}

inline bool isFinite(const Vector& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}
inline float largestComponent(const Vector& v)
{
    return std::max({std::fabs(v.x), std::fabs(v.y), std::fabs(v.z)});
}

// v at unit length; the fallback when v is too short, or not finite.
inline Vector normalizedOr(const Vector& v, const Vector& fallback)
{
    const float squared = dot(v, v);
    if (squared > 1e-30f && squared < 1e30f) return v * (1.0f / std::sqrt(squared));
    // Scaled by its largest component first, so that the square neither vanishes nor overflows.
    const float largest = largestComponent(v);
    if (!(largest > 0.0f) || !std::isfinite(largest)) return fallback;
    const Vector scaled{v.x / largest, v.y / largest, v.z / largest};
    const float scaledLength = length(scaled);
    return isFinite(scaled) && scaledLength > 0.0f ? scaled * (1.0f / scaledLength) : fallback;
}

inline Vector mix(const Vector& a, const Vector& b, float t)
{
    return a * (1.0f - t) + b * t;
}
inline Transform mix(const Transform& a, const Transform& b, float t)
{
    Transform result;
    for (int i = 0; i < 3; ++i)
        result.matrix.columns[i] = mix(a.matrix.columns[i], b.matrix.columns[i], t);
    result.offset = mix(a.offset, b.offset, t);
    return result;
}

inline Vector transformPoint(const Transform& transform, const Vector& p)
{
    return transform.matrix * p + transform.offset;
}

// The product of all three stretches, negative when the transform mirrors.
inline float determinant(const Matrix& m)
{
    return dot(m.columns[0], cross(m.columns[1], m.columns[2]));
}
// The cofactor matrix: it turns normals as the matrix turns surfaces, up to length.
inline Matrix cofactors(const Matrix& m)
{
    return {{cross(m.columns[1], m.columns[2]), cross(m.columns[2], m.columns[0]),
             cross(m.columns[0], m.columns[1])}};
}

inline bool isEmpty(const Box& box)
{
    return !(box.lower.x <= box.upper.x);
}
inline void extend(Box& box, const Vector& p)
{
    box.lower = {std::min(box.lower.x, p.x), std::min(box.lower.y, p.y), std::min(box.lower.z, p.z)};
    box.upper = {std::max(box.upper.x, p.x), std::max(box.upper.y, p.y), std::max(box.upper.z, p.z)};
}
// The border included.
inline bool isWithin(const Box& box, const Vector& p)
{
    return p.x >= box.lower.x && p.y >= box.lower.y && p.z >= box.lower.z && p.x <= box.upper.x &&
           p.y <= box.upper.y && p.z <= box.upper.z;
}
inline Vector corner(const Box& box, int index)
{
    return {index & 1 ? box.upper.x : box.lower.x, index & 2 ? box.upper.y : box.lower.y,
            index & 4 ? box.upper.z : box.lower.z};
}

inline Color operator*(const Color& a, const Color& b)
{
    return {a.r * b.r, a.g * b.g, a.b * b.b};
}
inline Color operator*(const Color& a, float s)
{
    return {a.r * s, a.g * s, a.b * s};
}
inline Color operator+(const Color& a, const Color& b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b};
}
inline float mean(const Color& c)
{
    return (c.r + c.g + c.b) * (1.0f / 3.0f);
}
inline float largest(const Color& c)
{
    return std::max({c.r, c.g, c.b});
}

// Two axes that make a right-handed orthonormal frame with the unit vector n as the third
// (Duff et al., "Building an Orthonormal Basis, Revisited", 2017).
inline void orthonormalFrame(const Vector& n, Vector* tangent, Vector* bitangent)
{
    const float sign = std::copysign(1.0f, n.z);
    const float a = -1.0f / (sign + n.z);
    const float b = n.x * n.y * a;
    *tangent = {1.0f + sign * n.x * n.x * a, sign * b, -sign * n.x};
    *bitangent = {b, sign + n.y * n.y * a, -n.y};
}

} // namespace ombrix
