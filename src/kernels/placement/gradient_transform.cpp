#include "kernels/placement/gradient_transform.h"

#include <cmath>

namespace nezaiva {

namespace {

constexpr float kLargestRatio = 1e+18f;

VectorD inDouble(const Vector& v)
{
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

Vector normalised(const Vector& column)
{
    const float length = std::sqrt(column.x * column.x + column.y * column.y + column.z * column.z);
    float largest = std::fabs(column.x);
    if (std::fabs(column.y) > largest) largest = std::fabs(column.y);
    if (std::fabs(column.z) > largest) largest = std::fabs(column.z);
    if (!(largest < length * kLargestRatio)) return column;
    return {column.x / length, column.y / length, column.z / length};
}

} // namespace

Matrix inverseOf(const Matrix& matrix)
{
    const auto [ax, ay, az] = inDouble(matrix.columns[0]);
    const auto [bx, by, bz] = inDouble(matrix.columns[1]);
    const auto [cx, cy, cz] = inDouble(matrix.columns[2]);
    const double cofactorX = by * cz - bz * cy;
    const double cofactorY = bz * cx - bx * cz;
    const double cofactorZ = bx * cy - by * cx;
    const double determinant = ax * cofactorX + ay * cofactorY + az * cofactorZ;
    if (determinant == 0.0) return {{{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}}};
    // Row i of the inverse is the cross product of the two other columns over the determinant.
    const auto entry = [determinant](double cofactor) { return static_cast<float>(cofactor / determinant); };
    Matrix inverse;
    inverse.columns[0] = {entry(cofactorX), entry(cy * az - cz * ay), entry(ay * bz - az * by)};
    inverse.columns[1] = {entry(cofactorY), entry(cz * ax - cx * az), entry(az * bx - ax * bz)};
    inverse.columns[2] = {entry(cofactorZ), entry(cx * ay - cy * ax), entry(ax * by - ay * bx)};
    return inverse;
}

AColor gradientInPointSpace(const AColor& gradient, const Matrix& uvwFromPoint)
{
    Matrix inverse = inverseOf(uvwFromPoint);
    for (Vector& column : inverse.columns)
        column = normalised(column);
    const Vector result = inverse * Vector{gradient.r, gradient.g, gradient.b};
    // The fourth component follows the same sum; the columns have 0 there.
    return {result.x, result.y, result.z, 0.0f * gradient.r + 0.0f * gradient.g + 0.0f * gradient.b};
}

} // namespace nezaiva
