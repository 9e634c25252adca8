#include "kernels/noises/volume/spline_tables.h"

#include "support/plain_volume_lattice.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <memory>

using namespace nezaiva;

namespace {

const SplineTables& filledTables()
{
    static const auto tables = [] {
        auto made = std::make_unique<SplineTables>();
        fillSplineTables(activeNoiseTables(), *made);
        return made;
    }();
    return *tables;
}

float valueAt(int x, int y, int z)
{
    return plain::randomValue((x & 31) | (y & 31) << 5 | (z & 31) << 10);
}

float evaluated(const float (&coefficients)[kSplineCoefficients][kLatticeRowStride], int position, float t)
{
    return (coefficients[kSplineBend][position] * t - coefficients[kSplineSlope][position]) * t +
           coefficients[kSplineValue][position];
}

constexpr float kFractions[] = {0.0f, 1e-7f, 0.1f, 0.3333f, 0.5f, 0.77f, 0.99999994f, 1.0f};

} // namespace

TEST(SplineTables, SplinesAlongXHaveTheFormulasBits)
{
    const SplineTables& tables = filledTables();
    for (int x = 0; x < 32; ++x)
        for (int y = -1; y <= 32; ++y)
            for (int z = -1; z <= 32; ++z)
                for (const float t : kFractions) {
                    const float formula =
                        plain::spline(valueAt(x - 1, y, z), valueAt(x, y, z), valueAt(x + 1, y, z), t);
                    EXPECT_SAME_BITS(evaluated(tables.space[x][y + 1], z + 1, t), formula);
                }
}

TEST(SplineTables, SplinesOfThePlaneHaveTheFormulasBits)
{
    const SplineTables& tables = filledTables();
    for (int x = 0; x < 32; ++x)
        for (int y = -1; y <= 32; ++y)
            for (const float t : kFractions) {
                const float formula =
                    plain::spline(valueAt(x - 1, y, 0), valueAt(x, y, 0), valueAt(x + 1, y, 0), t);
                EXPECT_SAME_BITS(evaluated(tables.plane[x], y + 1, t), formula);
            }
}
