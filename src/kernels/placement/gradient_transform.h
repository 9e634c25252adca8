// Takes a gradient in UVW space back to the space of the point.
#pragma once

#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// The inverse by cofactors in double precision, rounded to floats. A determinant of exactly 0 gives zero.
Matrix inverseOf(const Matrix& matrix);

// gradient.r, g and b along U, V and W; the result along x, y and z, with the same sum over zeros as its
// fourth component: 0, or NaN. The columns of the inverse of uvwFromPoint are normalised first, save where
// the length is not above the largest component by 1e-18.
AColor gradientInPointSpace(const AColor& gradient, const Matrix& uvwFromPoint);

} // namespace nezaiva
