// Both looks of the leather at points that were reckoned by hand from the formulas of leather.h. A size of 5
// makes the cells of both as large as a unit.

#include "kernels/procedurals/leather.h"

#include "support/instruction_sets.h"

#include <cmath>
#include <limits>

namespace {

using namespace nezaiva;
using OUtils::AColor;
using OUtils::Vector;

const LeatherColors kColors{{0.9f, 0.5f, 0.2f, 0.3f}, {0.1f, 0.05f, 0.4f, 0.6f}};
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Features in the middles of cells, all of the same brightness.
LeatherNumbers regular()
{
    LeatherNumbers numbers;
    numbers.size = 5.0f;
    numbers.spottyness = 0.0f;
    numbers.randomness = 0.0f;
    return numbers;
}

LeatherNumbers withThreshold(LeatherNumbers numbers, float threshold)
{
    numbers.threshold = threshold;
    return numbers;
}
LeatherNumbers withDensity(LeatherNumbers numbers, float density)
{
    numbers.density = density;
    return numbers;
}
LeatherNumbers withoutCreases(LeatherNumbers numbers)
{
    numbers.creases = false;
    return numbers;
}

void expectColor(const AColor& color, const AColor& expected)
{
    EXPECT_NEAR(color.r, expected.r, 2e-6);
    EXPECT_NEAR(color.g, expected.g, 2e-6);
    EXPECT_NEAR(color.b, expected.b, 2e-6);
    EXPECT_NEAR(color.a, expected.a, 2e-6);
}

// The crease colour where the part of the cell is 0.
void expectCellPart(const AColor& color, float part, float alpha)
{
    const auto blend = [part](float cell, float crease) { return cell * part + crease * (1.0f - part); };
    expectColor(color, {blend(0.9f, 0.1f), blend(0.5f, 0.05f), blend(0.2f, 0.4f), alpha});
}

AColor current(float x, float y, float z, const LeatherNumbers& numbers)
{
    return currentLeather({x, y, z}, numbers, kColors);
}

// The part of the crease colour, which is 1 - alpha.
float legacyCrease(float x, float y, float z, const LeatherNumbers& numbers)
{
    const AColor color = legacyLeather({x, y, z}, numbers, kColors);
    expectCellPart(color, color.a, color.a);
    return 1.0f - color.a;
}

class CurrentLeather : public EveryInstructionSet {};
INSTANTIATE_TEST_SUITE_P(Sets, CurrentLeather, kInstructionSets, instructionSetName);
class LegacyLeather : public EveryInstructionSet {};
INSTANTIATE_TEST_SUITE_P(Sets, LegacyLeather, kInstructionSets, instructionSetName);

} // namespace

TEST(Leather, BeginsWithTheDefaultsOfTheNode)
{
    const LeatherNumbers numbers;
    EXPECT_EQ(numbers.size, 0.5f);
    EXPECT_EQ(numbers.density, 1.0f);
    EXPECT_EQ(numbers.spottyness, 0.5f);
    EXPECT_EQ(numbers.randomness, 0.5f);
    EXPECT_EQ(numbers.threshold, 0.83f);
    EXPECT_TRUE(numbers.creases);
}

// In the middle of a cell the blob is 0.5 F[0] and no other reaches: above the cut of 0.17.
TEST_P(CurrentLeather, MiddleOfACellHasTheCellColor)
{
    expectCellPart(current(3.5f, 4.5f, 5.5f, regular()), 1.0f, 1.0f);
}

// 0.4 behind the middle D = 0.32, the step 81, the blob 0.5 (1 - 9 / 16) = 0.21875. The next cell has
// D = 0.72, the step 183, 0.5 (1 - sqrt(183) / 16) = 0.0772578. They are 0.1414922 apart.
TEST_P(CurrentLeather, TwoBlobsNearlyAlikeMakeACrease)
{
    expectCellPart(current(3.5f, 4.5f, 5.9f, regular()), 0.1414922f / 0.17f, 0.1414922f / 0.17f);
    expectCellPart(current(3.5f, 4.1f, 5.5f, regular()), 0.1414922f / 0.17f, 0.1414922f / 0.17f);
}

// Further apart than the cut of 0.1 they are added to 0.2960078, which is above it; below a cut of 0.5 the
// sum is only a part of the cell, here without creases.
TEST_P(CurrentLeather, OtherBlobsAreAdded)
{
    expectCellPart(current(3.9f, 4.5f, 5.5f, withThreshold(regular(), 0.9f)), 1.0f, 1.0f);
    const LeatherNumbers half = withThreshold(withoutCreases(regular()), 0.5f);
    expectCellPart(current(3.9f, 4.5f, 5.5f, half), 0.2960078f / 0.5f, 0.2960078f / 0.5f);
}

// In a corner of cells eight blobs of 0.5 (1 - sqrt(127) / 16) = 0.1478304 meet, at D = 0.5.
TEST_P(CurrentLeather, SumAboveOneIsAllCellWithoutCreases)
{
    const LeatherNumbers dense = withDensity(withoutCreases(regular()), 3.0f);
    expectCellPart(current(4.0f, 4.0f, 4.0f, dense), 1.0f, 1.0f);
    // A cut of 2 shows the sum.
    expectCellPart(current(4.0f, 4.0f, 4.0f, withThreshold(dense, -1.0f)), 8.0f * 0.1478304f / 2.0f,
                   8.0f * 0.1478304f / 2.0f);
}

// The first two of eight equal blobs are 0 apart and make the mark 20, which the others are too far from.
TEST_P(CurrentLeather, NothingIsAddedToAMark)
{
    const AColor color = current(4.0f, 4.0f, 4.0f, withDensity(regular(), 3.0f));
    expectCellPart(color, 0.0f, 1.0f);
}

TEST_P(CurrentLeather, AlphaJumpsToOneWhereNothingOfTheCellIsLeft)
{
    const LeatherNumbers sparse = withDensity(regular(), 0.01f);
    const AColor between = current(3.5f, 4.5f, 5.9f, sparse);
    EXPECT_EQ(between.r, 0.1f);
    EXPECT_EQ(between.a, 1.0f);
    const AColor atTheBlob = current(3.5f, 4.5f, 5.568f, sparse); // D = 0.92
    EXPECT_GT(atTheBlob.a, 0.0f);
    EXPECT_LT(atTheBlob.a, 0.2f);
}

TEST_P(CurrentLeather, RepeatsEveryTwentyCells)
{
    for (const float x : {0.3f, 1.7f, 19.5f})
        expectColor(current(x, 2.25f, 19.75f, regular()),
                    current(x + 20.0f, 2.25f - 20.0f, 39.75f, regular()));
}

TEST_P(CurrentLeather, SizeZeroHasTheFloorOfTheScale)
{
    LeatherNumbers none, small;
    none.size = 0.0f;
    small.size = 0.000025f;
    const AColor color = current(0.00003f, 0.00005f, 0.00001f, none);
    expectColor(color, current(0.00003f, 0.00005f, 0.00001f, small));
    none.size = -3.0f;
    expectColor(current(0.00003f, 0.00005f, 0.00001f, none), color);
}

TEST_P(CurrentLeather, DensityAndCutHaveTheirFloors)
{
    const LeatherNumbers none = withDensity(regular(), 0.0f);
    const LeatherNumbers small = withDensity(regular(), 0.0001f);
    expectColor(current(3.5f, 4.5f, 5.503f, none), current(3.5f, 4.5f, 5.503f, small));
    EXPECT_LT(current(3.5f, 4.5f, 5.503f, withThreshold(none, 0.5f)).a, 0.9f);
    expectColor(current(3.5f, 4.5f, 5.9f, withThreshold(regular(), 1.0f)),
                current(3.5f, 4.5f, 5.9f, withThreshold(regular(), 0.9999f)));
}

// From a calculation in another language, in double precision.
TEST_P(CurrentLeather, DefaultsAreTheFormula)
{
    const LeatherNumbers numbers;
    EXPECT_NEAR(current(0.31f, 0.47f, 0.83f, numbers).a, 0.261904382, 2e-6);
    EXPECT_NEAR(current(-1.7f, 2.9f, 0.4f, numbers).a, 0.0412641763, 1e-5);
    EXPECT_NEAR(current(5.5f, -3.25f, 0.7f, numbers).a, 0.640789525, 1e-5);
    EXPECT_NEAR(current(12.3f, 0.4f, 7.7f, numbers).a, 0.107305668, 1e-5);
    EXPECT_NEAR(current(0.9f, 0.1f, 0.2f, withThreshold(withoutCreases(numbers), 0.3f)).a, 0.165601954, 2e-6);
}

TEST_P(CurrentLeather, WhatIsNotFiniteCountsAsZero)
{
    for (const float odd : {kNaN, kInfinity, -kInfinity}) {
        expectColor(current(odd, 0.3f, 0.2f, {}), current(0.0f, 0.3f, 0.2f, {}));
        expectColor(current(0.1f, 0.3f, odd, {}), current(0.1f, 0.3f, 0.0f, {}));
    }
}

TEST_P(CurrentLeather, NumbersThatAreNotANumberCrashNothing)
{
    for (const float odd : {kNaN, kInfinity, -kInfinity, 3e38f})
        for (auto number : {&LeatherNumbers::size, &LeatherNumbers::density, &LeatherNumbers::spottyness,
                            &LeatherNumbers::randomness, &LeatherNumbers::threshold}) {
            LeatherNumbers numbers;
            numbers.*number = odd;
            for (const float x : {0.3f, 1.9f, -1e30f, kNaN, kInfinity}) {
                current(x, 0.7f, x, numbers);
                legacyLeather({x, 0.7f, x}, numbers, kColors);
            }
        }
}

// F1 = 0 and F2 = 1: v = 1 - a = 0, which is below 0.83^3.
TEST_P(LegacyLeather, MiddleOfACellHasTheCellColor)
{
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 5.5f, regular()), 0.0f);
}

// 0.3 behind the middle F1 = 0.09 and F2 = 0.49: a = 1 - sqrt(0.18) = 0.575735931,
// b = 1 - sqrt(0.98) = 0.010050506. A threshold of 0.5 shows v as it is.
TEST_P(LegacyLeather, ValueComesFromTheTwoNearestFeatures)
{
    const LeatherNumbers numbers = withThreshold(regular(), 0.5f);
    EXPECT_NEAR(legacyCrease(3.5f, 4.5f, 5.8f, numbers), 1.0 - 0.575735931 + 0.010050506, 2e-6);
    EXPECT_NEAR(legacyCrease(3.5f, 4.5f, 5.8f, withoutCreases(numbers)), 1.0 - 0.575735931 - 0.010050506,
                2e-6);
}

// Of a density of 0.9: a = 1 - sqrt(0.2) = 0.552786405, and 2 F2 = 0.98 is beyond it. Of 0.1, 2 F1 = 0.18 is
// too.
TEST_P(LegacyLeather, FeaturesBeyondTheDensityDoNotCount)
{
    const LeatherNumbers numbers = withThreshold(regular(), 0.5f);
    EXPECT_NEAR(legacyCrease(3.5f, 4.5f, 5.8f, withDensity(numbers, 0.9f)), 1.0 - 0.552786405, 2e-6);
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 5.8f, withDensity(numbers, 0.1f)), 1.0f);
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 5.8f, withDensity(numbers, 0.0f)), 1.0f);
}

TEST_P(LegacyLeather, SurfaceIsRegularWithoutRandomness)
{
    for (int cell = -3; cell < 3; ++cell)
        for (const float offset : {0.125f, 0.375f, 0.75f})
            expectColor(legacyLeather({static_cast<float>(cell) + offset, 0.25f, 0.5f}, regular(), kColors),
                        legacyLeather({offset, 7.25f, -2.5f}, regular(), kColors));
}

// Between two features, at 0.5 of each, a density of 4 gives a = b = 1 - sqrt(0.125) = 0.646446609 and
// v = -0.292893219 without creases.
TEST_P(LegacyLeather, NegativeValueIsHeldAtZero)
{
    const LeatherNumbers numbers = withDensity(withoutCreases(regular()), 4.0f);
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 6.0f, withThreshold(numbers, 0.5f)), 0.0f);
    // T' = 2 0.3^2 = 0.18: c = 0.32 + 0.68 v.
    EXPECT_NEAR(legacyCrease(3.5f, 4.5f, 6.0f, withThreshold(numbers, 0.3f)), 0.32 - 0.68 * 0.292893219,
                2e-6);
}

TEST_P(LegacyLeather, ThresholdAboveOneHalfCutsAndStretches)
{
    // v = 0.434314575 as above.
    const double v = 1.0 - 0.575735931 + 0.010050506;
    const double cut = 0.6 * 0.6 * 0.6;
    EXPECT_NEAR(legacyCrease(3.5f, 4.5f, 5.8f, withThreshold(regular(), 0.6f)), (v - cut) / (1.0 - cut),
                2e-6);
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 5.8f, withThreshold(regular(), 0.8f)), 0.0f); // 0.512 is above v
    EXPECT_NEAR(legacyCrease(3.5f, 4.5f, 5.8f, withThreshold(regular(), 0.0f)), 0.5 + 0.5 * v, 2e-6);
}

TEST_P(LegacyLeather, ThresholdOfOneDividesByNothing)
{
    const LeatherNumbers numbers = withThreshold(withDensity(regular(), 0.1f), 1.0f);
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 5.8f, numbers), 1.0f); // v = 1
    EXPECT_EQ(legacyCrease(3.5f, 4.5f, 5.5f, numbers), 0.0f); // v = 0
}

TEST_P(LegacyLeather, SizeZeroHasTheFloorOfTheScale)
{
    LeatherNumbers none, small;
    none.size = 0.0f;
    small.size = 5e-9f;
    const Vector p{3e-10f, 5e-10f, -1e-9f};
    expectColor(legacyLeather(p, none, kColors), legacyLeather(p, small, kColors));
}

// From a calculation in another language, in double precision.
TEST_P(LegacyLeather, DefaultsAreTheFormula)
{
    const LeatherNumbers numbers;
    EXPECT_NEAR(legacyCrease(0.31f, 0.47f, 0.83f, numbers), 0.243100826, 1e-5);
    EXPECT_NEAR(legacyCrease(5.5f, -3.25f, 0.7f, numbers), 0.851366655, 1e-4);
    EXPECT_NEAR(legacyCrease(12.3f, 0.4f, 7.7f, numbers), 0.300056851, 1e-4);
    EXPECT_NEAR(legacyCrease(12.3f, 0.4f, 7.7f, withThreshold(withoutCreases(numbers), 0.4f)), 0.749101742,
                1e-5);
}

TEST_P(LegacyLeather, WhatIsNotFiniteCountsAsZero)
{
    for (const float odd : {kNaN, kInfinity, -kInfinity}) {
        expectColor(legacyLeather({odd, 0.3f, 0.2f}, {}, kColors),
                    legacyLeather({0.0f, 0.3f, 0.2f}, {}, kColors));
        expectColor(legacyLeather({0.1f, odd, odd}, {}, kColors),
                    legacyLeather({0.1f, 0.0f, 0.0f}, {}, kColors));
    }
}

// A point so far that no feature is nearer than 1e10.
TEST_P(LegacyLeather, WithoutAFeatureThereIsNothingOfACell)
{
    EXPECT_EQ(legacyCrease(1e30f, 0.3f, 0.2f, {}), 1.0f);
}
