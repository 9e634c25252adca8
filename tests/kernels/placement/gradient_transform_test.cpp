// The way of a gradient back from UVW space, against the inverse by its definition.

#include "kernels/placement/gradient_transform.h"

#include "support/tolerances.h"

#include <limits>
#include <random>

namespace {

using nezaiva::gradientInPointSpace;
using nezaiva::inverseOf;
using OUtils::AColor;
using OUtils::Matrix;
using OUtils::Vector;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

bool sameVector(const Vector& a, const Vector& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

TEST(InverseOf, UndoesTheMatrix)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> number(-2.0f, 2.0f);
    for (int run = 0; run < 1000; ++run) {
        Matrix matrix;
        for (Vector& column : matrix.columns)
            column = {number(random), number(random), number(random)};
        const auto& [a, b, c] = matrix.columns;
        const float determinant =
            a.x * (b.y * c.z - b.z * c.y) - b.x * (a.y * c.z - a.z * c.y) + c.x * (a.y * b.z - a.z * b.y);
        if (std::fabs(determinant) < 0.1f) continue;
        const Matrix inverse = inverseOf(matrix);
        const Vector p{number(random), number(random), number(random)};
        const Vector back = inverse * (matrix * p);
        EXPECT_NEAR(back.x, p.x, 1e-4);
        EXPECT_NEAR(back.y, p.y, 1e-4);
        EXPECT_NEAR(back.z, p.z, 1e-4);
    }
}

TEST(InverseOf, IsZeroForADeterminantOfZeroAlone)
{
    const Matrix flat{{{1.0f, 2.0f, 3.0f}, {2.0f, 4.0f, 6.0f}, {0.0f, 0.0f, 1.0f}}};
    for (const Vector& column : inverseOf(flat).columns)
        EXPECT_TRUE(sameVector(column, {0.0f, 0.0f, 0.0f}));
    // The determinant 1e-90 is far below a float.
    const Matrix tiny{{{1e-30f, 0.0f, 0.0f}, {0.0f, 1e-30f, 0.0f}, {0.0f, 0.0f, 1e-30f}}};
    EXPECT_FLOAT_EQ(inverseOf(tiny).columns[0].x, 1e30f);
}

TEST(GradientInPointSpace, KeepsTheDirectionUnderAScale)
{
    // The columns of the inverse are normalised: a scale does nothing.
    const Matrix scale{{{4.0f, 0.0f, 0.0f}, {0.0f, 0.5f, 0.0f}, {0.0f, 0.0f, -2.0f}}};
    const AColor result = gradientInPointSpace({1.0f, 2.0f, 3.0f, 9.0f}, scale);
    EXPECT_SAME_BITS(result.r, 1.0f);
    EXPECT_SAME_BITS(result.g, 2.0f);
    EXPECT_SAME_BITS(result.b, -3.0f);
    EXPECT_SAME_BITS(result.a, 0.0f);
}

TEST(GradientInPointSpace, AddsTheNormalisedColumnsOfTheInverse)
{
    // U = 3 x + 4 y, V = 5 y, W = z. The inverse takes U to x / 3 and V to (-4 / 15, 1 / 5, 0), which has
    // the length 1 / 3: normalised (-0.8, 0.6, 0).
    const Matrix shear{{{3.0f, 0.0f, 0.0f}, {4.0f, 5.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}};
    const AColor result = gradientInPointSpace({10.0f, 5.0f, 2.0f, 0.0f}, shear);
    EXPECT_NEAR(result.r, 6.0f, 1e-5);
    EXPECT_NEAR(result.g, 3.0f, 1e-5);
    EXPECT_NEAR(result.b, 2.0f, 1e-5);
}

TEST(GradientInPointSpace, IsZeroForAFlatMapping)
{
    const Matrix flat{{{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 0.0f}}};
    const AColor result = gradientInPointSpace({1.0f, 2.0f, 3.0f, 4.0f}, flat);
    EXPECT_EQ(result.r, 0.0f);
    EXPECT_EQ(result.g, 0.0f);
    EXPECT_EQ(result.b, 0.0f);
    EXPECT_EQ(result.a, 0.0f);
}

TEST(GradientInPointSpace, DoesNotNormaliseAColumnWhoseLengthVanishes)
{
    // The column is 1e-30, its square no float: the length is 0.
    const Matrix huge{{{1e30f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}};
    EXPECT_FLOAT_EQ(gradientInPointSpace({1.0f, 0.0f, 0.0f, 0.0f}, huge).r, 1e-30f);
}

TEST(GradientInPointSpace, PassesWhatIsNoNumberOn)
{
    const AColor result = gradientInPointSpace({kNaN, 0.0f, 0.0f, 0.0f}, Matrix{});
    EXPECT_TRUE(std::isnan(result.r));
    EXPECT_TRUE(std::isnan(result.a)); // the fourth component is a sum over all three as well
}

} // namespace
