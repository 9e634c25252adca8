// The splines along x through the values of the lattice, which the Perlin fractals would compute anew
// at each point although they depend on the random table alone.
#pragma once

#include "kernels/noises/random_tables.h"

namespace nezaiva {

// The spline through three neighbours, a + b + ((a - 2b + c) t - 2 (a - b)) t, is
// (bend t - slope) t + value. The coefficients are rounded as the formula rounds them, so that what is
// left to compute gives the formula's bits.
enum SplineCoefficient : int {
    kSplineValue, // a + b
    kSplineSlope, // 2 (a - b)
    kSplineBend,  // a - 2b + c
    kSplineCoefficients,
};

// The rows are those of NoiseTables: position p + 1 of y and z holds grid position p & 31. Along x
// there is an entry for each cell.
struct SplineTables {
    alignas(64) float plane[kLatticeCells][kSplineCoefficients][kLatticeRowStride]; // [x][][y]
    alignas(
        64) float space[kLatticeCells][kLatticeSide][kSplineCoefficients][kLatticeRowStride]; // [x][y][][z]
};

void fillSplineTables(const NoiseTables& noise, SplineTables& tables);

} // namespace nezaiva
