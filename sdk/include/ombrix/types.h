// Plain value types that a host and a plug-in library share. All are trivially copyable.
#pragma once

#include <cstdint>

namespace OUtils {

// Linear red, green, blue; no range is implied.
struct Color {
    float r = 0.0f, g = 0.0f, b = 0.0f;
};
using Color3f = Color;

// Red, green, blue and alpha. Not premultiplied.
struct AColor {
    float r = 0.0f, g = 0.0f, b = 0.0f, a = 0.0f;
};

struct Vector {
    float x = 0.0f, y = 0.0f, z = 0.0f;
};

struct Vector4 {
    float x = 0.0f, y = 0.0f, z = 0.0f, w = 0.0f;
};

struct VectorD {
    double x = 0.0, y = 0.0, z = 0.0;
};

// A 3 by 3 matrix as three columns: column i is the image of the axis i.
struct Matrix {
    Vector columns[3] = {{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}};
};

// Maps p to columns[0] p.x + columns[1] p.y + columns[2] p.z + offset. Default: the identity.
struct Transform {
    Matrix matrix;
    Vector offset;
};

// As Transform, with a double precision offset, so that far worlds keep their detail.
struct TraceTransform {
    Matrix matrix;
    VectorD offset;
};

// Axis-aligned box. Empty while a lower bound lies above its upper bound, as in a new one.
struct Box {
    Vector lower{1e18f, 1e18f, 1e18f};
    Vector upper{-1e18f, -1e18f, -1e18f};
};

// The working result of a mapping: the coordinates and their derivatives along the two screen axes.
// The fourth component of each is padding.
struct UVWSample {
    Vector4 uvw;
    Vector4 du;
    Vector4 dv;
};

inline Vector operator+(const Vector& a, const Vector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector operator-(const Vector& a, const Vector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector operator*(const Vector& v, float s)
{
    return {v.x * s, v.y * s, v.z * s};
}

// The linear part applied to v: columns[0] v.x + columns[1] v.y + columns[2] v.z, added in this order.
inline Vector operator*(const Matrix& m, const Vector& v)
{
    return m.columns[0] * v.x + m.columns[1] * v.y + m.columns[2] * v.z;
}

} // namespace OUtils
