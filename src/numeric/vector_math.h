// Vectors and points in single precision, on plain values.
#pragma once

#include <ombrix/types.h>

#include <algorithm>
#include <cmath>

namespace nezaiva {

using namespace OUtils;

inline float dotProduct(const Vector& a, const Vector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector crossProduct(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline float lengthOf(const Vector& v)
{
    return std::sqrt(dotProduct(v, v));
}

// v at length 1. A vector whose length is lost stays as it is: zero, too short for its square, infinite, or
// not a number. One too long for its square becomes zero.
inline Vector safelyNormalized(const Vector& v)
{
    const float length = lengthOf(v);
    const float largest = std::max(std::max(std::fabs(v.x), std::fabs(v.y)), std::fabs(v.z));
    return largest < length * 1e18f ? v * (1.0f / length) : v;
}

// The point under the whole transform, its offset included.
inline Vector transformedPoint(const Transform& transform, const Vector& point)
{
    return transform.matrix * point + transform.offset;
}

} // namespace nezaiva
