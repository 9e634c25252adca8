#include "kernels/noises/volume/spline_tables.h"

namespace nezaiva {

namespace {

void fillRow(const float* a, const float* b, const float* c, float (*coefficients)[kLatticeRowStride])
{
    for (int i = 0; i < kLatticeRowStride; ++i) {
        coefficients[kSplineValue][i] = a[i] + b[i];
        coefficients[kSplineSlope][i] = 2.0f * (a[i] - b[i]);
        coefficients[kSplineBend][i] = a[i] - 2.0f * b[i] + c[i];
    }
}

} // namespace

void fillSplineTables(const NoiseTables& noise, SplineTables& tables)
{
    for (int x = 0; x < kLatticeCells; ++x) {
        fillRow(noise.plane[x], noise.plane[x + 1], noise.plane[x + 2], tables.plane[x]);
        for (int y = 0; y < kLatticeSide; ++y)
            fillRow(noise.space[x][y], noise.space[x + 1][y], noise.space[x + 2][y], tables.space[x][y]);
    }
}

} // namespace nezaiva
