// Both looks of the cloth at points that were reckoned by hand from the formulas of cloth.h.

#include "kernels/procedurals/cloth.h"

#include "kernels/noises/perlin_noise.h"
#include "support/instruction_sets.h"
#include "support/plain_cloth.h"

#include <cmath>
#include <limits>

namespace {

using namespace nezaiva;
using OUtils::AColor;

const ClothColors kColors{{0.1f, 0.2f, 0.3f, 0.4f}, {1.0f, 0.9f, 0.8f, 0.7f}, {0.0f, 0.5f, 0.25f, 1.0f}};
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

void expectColor(const AColor& color, const AColor& expected)
{
    EXPECT_NEAR(color.r, expected.r, 2e-6);
    EXPECT_NEAR(color.g, expected.g, 2e-6);
    EXPECT_NEAR(color.b, expected.b, 2e-6);
    EXPECT_NEAR(color.a, expected.a, 2e-6);
}

// The gap where t is 0, the thread where it is 1.
void expectThread(const AColor& color, const AColor& thread, float t)
{
    const AColor& gap = kColors.gap;
    const auto blend = [t](float from, float to) { return from * (1.0f - t) + to * t; };
    expectColor(color, {blend(gap.r, thread.r), blend(gap.g, thread.g), blend(gap.b, thread.b),
                        blend(gap.a, thread.a)});
}

void expectGap(const AColor& color)
{
    EXPECT_SAME_BITS(color.r, kColors.gap.r);
    EXPECT_SAME_BITS(color.g, kColors.gap.g);
    EXPECT_SAME_BITS(color.b, kColors.gap.b);
    EXPECT_SAME_BITS(color.a, kColors.gap.a);
}

AColor accurate(float u, float v, const ClothWeave& weave = {})
{
    return accurateCloth(u, v, weave, kColors);
}

AColor legacy(float u, float v, const ClothWeave& weave = {}, float w = 0.0f)
{
    return legacyCloth({u, v, w}, weave, kColors);
}

ClothWeave weaveOf(float ClothWeave::*number, float value)
{
    ClothWeave weave;
    weave.*number = value;
    return weave;
}

class AccurateCloth : public EveryInstructionSet {};
INSTANTIATE_TEST_SUITE_P(Sets, AccurateCloth, kInstructionSets, instructionSetName);
class LegacyCloth : public EveryInstructionSet {};
INSTANTIATE_TEST_SUITE_P(Sets, LegacyCloth, kInstructionSets, instructionSetName);

} // namespace

TEST(Cloth, BeginsWithTheDefaultsOfTheNode)
{
    const ClothWeave weave;
    EXPECT_EQ(weave.uWidth, 0.75f);
    EXPECT_EQ(weave.vWidth, 0.75f);
    for (const float amount :
         {weave.uWave, weave.vWave, weave.randomness, weave.widthSpread, weave.brightSpread})
        EXPECT_EQ(amount, 0.0f);
    const ClothColors colors;
    EXPECT_EQ(colors.gap.r, 0.0f);
    EXPECT_EQ(colors.gap.a, 1.0f);
    EXPECT_EQ(colors.u.b, 1.0f);
    EXPECT_EQ(colors.v.g, 0.0f);
}

// p = q = 0.2 and both widths 0.75: r = ((0.2 - 0.375)^2 + (0.4 / 0.75 - 1)^2) 0.75 = 0.186302083.
TEST_P(AccurateCloth, ThreadsAlternateByHalfUnits)
{
    constexpr float kT = 1.0f - 0.186302083f;
    expectThread(accurate(0.1f, 0.1f), kColors.v, kT);
    expectThread(accurate(0.6f, 0.1f), kColors.u, kT);
    expectThread(accurate(0.1f, 0.6f), kColors.u, kT);
    expectThread(accurate(0.6f, 0.6f), kColors.v, kT);
    expectThread(accurate(7.1f, -2.9f), kColors.v, kT);
}

// p = 0.9, q = 0.2: the upper thread goes on under no other,
// r = ((0.9 - 0.375)^2 + (0.4 / 0.75 - 1)^2) 0.75 = 0.370052083.
// p = 0.2, q = 0.9: beside it the other thread shows, r = ((0.4 / 0.75 - 1)^2 + (-0.1 - 0.375)^2) 0.75
// = 0.332552083.
TEST_P(AccurateCloth, TheOtherThreadShowsBesideTheUpperOne)
{
    expectThread(accurate(0.45f, 0.1f), kColors.v, 1.0f - 0.370052083f);
    expectThread(accurate(0.1f, 0.45f), kColors.u, 1.0f - 0.332552083f);
    expectThread(accurate(0.6f, 0.45f), kColors.u, 1.0f - 0.370052083f);
    expectThread(accurate(0.95f, 0.1f), kColors.v, 1.0f - 0.332552083f);
}

TEST_P(AccurateCloth, GapShowsBesideBothThreads)
{
    for (const float u : {0.38f, 0.4f, 0.45f, 0.49f, 0.88f, 0.95f})
        for (const float v : {0.39f, 0.47f, 0.89f, 0.99f})
            expectGap(accurate(u, v));
    expectGap(accurate(-0.05f, -0.05f));
}

// The corners apart, which the elliptic profile rounds off.
TEST_P(AccurateCloth, GapShowsOnlyBeyondBothWidths)
{
    for (int i = 5; i < 93; i += 2)
        for (int j = 5; j < 93; j += 2) {
            if ((i > 70 && i < 76) || (j > 70 && j < 76)) continue;
            const AColor color = accurate(static_cast<float>(i) * 0.005f, static_cast<float>(j) * 0.005f);
            EXPECT_EQ(color.r == kColors.gap.r && color.g == kColors.gap.g, i > 75 && j > 75)
                << i << ", " << j;
        }
}

// wp = 0.5, wq = 0.9: r = ((0.2 - 0.25)^2 + (0.4 / 0.9 - 1)^2) 0.75 = 0.233356481; over, the two change
// places: r = ((0.2 - 0.45)^2 + (0.4 / 0.5 - 1)^2) 0.75 = 0.076875.
TEST_P(AccurateCloth, EachWidthIsOfItsOwnThread)
{
    ClothWeave weave;
    weave.uWidth = 0.5f;
    weave.vWidth = 0.9f;
    expectThread(accurate(0.1f, 0.1f, weave), kColors.v, 1.0f - 0.233356481f);
    expectThread(accurate(0.6f, 0.1f, weave), kColors.u, 1.0f - 0.076875f);
}

TEST_P(AccurateCloth, WidthOfOneFillsTheCell)
{
    ClothWeave weave;
    weave.uWidth = weave.vWidth = 1.0f;
    for (float u = 0.2f; u < 2.0f; u += 0.1f)
        EXPECT_NE(accurate(u, 0.23f, weave).r, kColors.gap.r) << u;
}

TEST_P(AccurateCloth, ThreadsOfNoWidthShowNowhereNotEvenOnTheLattice)
{
    ClothWeave weave;
    weave.uWidth = weave.vWidth = 0.0f;
    for (const float u : {0.0f, -0.0f, 0.5f, 1.0f, 3.0f, -2.0f, 0.3f, -1e-10f})
        for (const float v : {0.0f, 0.5f, 1.0f, -7.0f, 0.8f})
            expectGap(accurate(u, v, weave));
}

// sin(6.2831855 0.1) = 0.587785256 of the other axis.
TEST_P(AccurateCloth, WavesShiftEachAxisByTheOther)
{
    const ClothWeave waveU = weaveOf(&ClothWeave::uWave, 0.1f);
    const AColor shiftedU = accurate(0.3f, 0.1f, waveU);
    const AColor expectedU = accurate(0.3f - 0.0587785256f, 0.1f);
    expectColor(shiftedU, expectedU);
    const ClothWeave waveV = weaveOf(&ClothWeave::vWave, 0.1f);
    expectColor(accurate(0.1f, 0.3f, waveV), accurate(0.1f, 0.3f + 0.0587785256f));
}

TEST_P(AccurateCloth, BothWavesTakeTheUnwavedCoordinates)
{
    ClothWeave weave;
    weave.uWave = 0.2f;
    weave.vWave = 0.3f;
    const float u = 0.1f - 0.2f * std::sin(6.2831855f * 0.2f);
    const float v = 0.2f + 0.3f * std::sin(6.2831855f * 0.1f);
    expectColor(accurate(0.1f, 0.2f, weave), accurate(u, v));
}

TEST_P(AccurateCloth, RandomnessDriftsByTheSmoothNoise)
{
    const float* table = plain::currentTable().data();
    const float a = plain::clothSmooth2(table, 5.3f / 22.0f, 2.6f / 24.0f);
    const float b = plain::clothSmooth2(table, 5.3f / 23.0f, 2.6f / 23.0f);
    expectColor(accurate(5.3f, 2.6f, weaveOf(&ClothWeave::randomness, 0.7f)),
                accurate(5.3f + a * 0.7f, 2.6f + b * 0.7f));
    // Only above 0.
    expectColor(accurate(5.3f, 2.6f, weaveOf(&ClothWeave::randomness, -0.7f)), accurate(5.3f, 2.6f));
}

TEST_P(AccurateCloth, WidthSpreadGivesEachThreadAWidthOfItsOwn)
{
    const float* table = plain::currentTable().data();
    ClothWeave expected;
    expected.uWidth += (plain::clothStrand(table, 13, 2.2f / 123.5f) * 0.25f - 0.5f) * 0.4f;
    expected.vWidth += (plain::clothStrand(table, 4 + 100, 6.6f / 123.5f) * 0.25f - 0.5f) * 0.4f;
    EXPECT_LT(expected.uWidth, 0.75f);
    expectColor(accurate(6.6f, 2.2f, weaveOf(&ClothWeave::widthSpread, 0.4f)),
                accurate(6.6f, 2.2f, expected));
}

// (0.6, 0.1) and (0.7, 0.1) lie on the U thread 1, (0.1, 0.1) on the V thread 1000.
TEST_P(AccurateCloth, BrightSpreadFollowsVAlongBothThreads)
{
    const float* table = plain::currentTable().data();
    const ClothWeave weave = weaveOf(&ClothWeave::brightSpread, 0.8f);
    const auto gain = [&](int thread, float along) {
        return (plain::clothStrand(table, thread, along / 100.0f) * 0.25f - 0.5f) * 0.8f + 1.0f;
    };
    expectThread(accurate(0.6f, 0.1f, weave), kColors.u, (1.0f - 0.186302083f) * gain(1, 0.1f));
    expectThread(accurate(0.1f, 0.1f, weave), kColors.v, (1.0f - 0.186302083f) * gain(1000, 0.1f));
    // p = 0.2 of v, q = 0.4 of u: r = ((0.2 - 0.375)^2 + (0.8 / 0.75 - 1)^2) 0.75 = 0.026302083.
    expectThread(accurate(0.7f, 0.1f, weave), kColors.u, (1.0f - 0.026302083f) * gain(1, 0.1f));
}

TEST_P(AccurateCloth, BrightnessStopsAtOne)
{
    const AColor color = accurate(0.1f, 0.1f, weaveOf(&ClothWeave::brightSpread, -1000.0f));
    expectThread(color, kColors.v, 1.0f);
}

// A strand that begins below cell 1 runs from cell 1 backwards: B(r0, r1, r2; c - 1).
TEST_P(AccurateCloth, StrandBelowTheFirstCellHasANegativeFraction)
{
    const std::vector<float>& table = plain::currentTable();
    int found = 0;
    for (std::size_t thread = 1; thread < 400; thread += 2) {
        const float c = plain::clothFrac(table[thread] + 0.1f / 100.0f) * 32.0f;
        if (c >= 1.0f) continue;
        ++found;
        const float s = plain::spline(table[0], table[1], table[2], c - 1.0f);
        const float gain = (s * 0.25f - 0.5f) * 0.5f + 1.0f;
        const float u = static_cast<float>(thread) * 0.5f + 0.1f; // in the second half of its unit
        const float q = plain::clothFrac(2.0f * plain::clothFrac(u));
        const float b = 2.0f * q / 0.75f - 1.0f;
        const float r = ((0.2f - 0.375f) * (0.2f - 0.375f) + b * b) * 0.75f;
        expectThread(accurate(u, 0.1f, weaveOf(&ClothWeave::brightSpread, 0.5f)), kColors.u,
                     (1.0f - r) * gain);
    }
    EXPECT_GT(found, 3);
}

TEST_P(AccurateCloth, WhatIsNotFiniteHasTheFractionZero)
{
    for (const float odd : {kNaN, kInfinity, -kInfinity}) {
        expectColor(accurate(odd, 0.1f), accurate(0.0f, 0.1f));
        expectColor(accurate(0.6f, odd), accurate(0.6f, 0.0f));
    }
}

TEST_P(AccurateCloth, NumbersThatAreNotANumberCrashNothing)
{
    for (const float odd : {kNaN, kInfinity, -kInfinity, 3e38f}) {
        ClothWeave weave{odd, odd, odd, odd, odd, odd, odd};
        for (const float u : {0.3f, -1e30f, kNaN, kInfinity})
            accurate(u, 0.7f, weave);
        for (auto number : {&ClothWeave::uWidth, &ClothWeave::vWidth, &ClothWeave::uWave, &ClothWeave::vWave,
                            &ClothWeave::randomness, &ClothWeave::widthSpread, &ClothWeave::brightSpread})
            accurate(0.3f, 0.7f, weaveOf(number, odd));
    }
}

// (0.1, 0.1), a = b = 0.375: a V thread, across at 0.1, along (0.6 - 0.375) / 0.625 = 0.36:
// sqrt(1 - (0.0875 / 0.1875)^2) sin(0.36 pi) = 0.884433277 0.904827052 = 0.800259...
TEST_P(LegacyCloth, FieldsOfTheSquareHaveTheirThreads)
{
    const auto part = [](float across, float along) {
        const double e = std::fabs(0.1875 - static_cast<double>(across)) / 0.1875;
        const double g = (static_cast<double>(along) - 0.375) / 0.625;
        return static_cast<float>(std::sqrt(1.0 - e * e) * std::sin(g * 3.14159265358979));
    };
    EXPECT_NEAR(part(0.1f, 0.6f), 0.8002592f, 1e-6);
    // The first half of u: V, then U, then V again.
    expectThread(legacy(0.1f, 0.1f), kColors.v, part(0.1f, 0.6f));
    expectThread(legacy(0.1f, 0.4f), kColors.u, part(0.1f, 0.4f));
    expectThread(legacy(0.1f, 0.6f), kColors.u, part(0.1f, 0.6f));
    expectThread(legacy(0.4f, 0.6f), kColors.v, part(0.1f, 0.4f));
    expectGap(legacy(0.4f, 0.4f));
    expectGap(legacy(0.45f, 0.95f));
    // The second half: V, then U, then V again.
    expectThread(legacy(0.6f, 0.6f), kColors.v, part(0.1f, 0.6f));
    expectThread(legacy(0.6f, 0.1f), kColors.u, part(0.1f, 0.6f));
    expectThread(legacy(0.6f, 0.9f), kColors.u, part(0.1f, 0.4f));
    expectThread(legacy(0.9f, 0.1f), kColors.v, part(0.1f, 0.4f));
    expectGap(legacy(0.9f, 0.4f));
    expectGap(legacy(0.95f, 0.45f));
    // Fractions of negative coordinates count up.
    expectThread(legacy(-1.9f, -2.9f), kColors.v, part(0.1f, 0.6f));
}

TEST_P(LegacyCloth, WavesHaveTheShorterConstantAndTheUnwavedCoordinates)
{
    ClothWeave weave;
    weave.uWave = 0.1f;
    weave.vWave = 0.2f;
    // 6.28318 and 6.2831855 differ by 5e-6; at 300 units that is a wave of another phase.
    const float u = 300.3f - 0.1f * std::sin(301.6f * 6.28318f);
    const float v = 301.6f + 0.2f * std::sin(300.3f * 6.28318f);
    expectColor(legacy(300.3f, 301.6f, weave), legacy(u, v));
}

TEST_P(LegacyCloth, RandomnessShiftsBothAxesAlike)
{
    const float n = static_cast<float>(OUtils::gradientNoise3(3.3f, 5.4f, 0.7f));
    ASSERT_GT(std::fabs(n), 0.1f);
    expectColor(legacy(3.3f, 5.4f, weaveOf(&ClothWeave::randomness, 0.4f), 0.7f),
                legacy(3.3f + 0.4f * n, 5.4f + 0.4f * n));
    expectColor(legacy(3.3f, 5.4f, weaveOf(&ClothWeave::randomness, 1e-5f), 0.7f), legacy(3.3f, 5.4f));
    expectColor(legacy(3.3f, 5.4f, weaveOf(&ClothWeave::randomness, -1.0f), 0.7f), legacy(3.3f, 5.4f));
}

// The noise is 1 nowhere, so the spread makes up for it: (n + 1) 0.5 spread = 1.
TEST_P(LegacyCloth, BrightSpreadTurnsBothThreadsIntoTheGap)
{
    for (const float u : {0.1f, 0.6f})
        for (const float v : {0.1f, 0.4f, 0.6f, 0.9f}) {
            const float n = static_cast<float>(OUtils::gradientNoise3(u, v, 0.3f));
            expectColor(legacy(u, v, weaveOf(&ClothWeave::brightSpread, 2.0f / (n + 1.0f)), 0.3f),
                        kColors.gap);
        }
    // Half of the way: (n + 1) 0.5 spread = 0.5.
    const float n = static_cast<float>(OUtils::gradientNoise3(0.1f, 0.1f, 0.3f));
    const AColor full = legacy(0.1f, 0.1f, {}, 0.3f);
    const AColor half = legacy(0.1f, 0.1f, weaveOf(&ClothWeave::brightSpread, 1.0f / (n + 1.0f)), 0.3f);
    expectColor(half, {(full.r + 0.1f) * 0.5f, (full.g + 0.2f) * 0.5f, (full.b + 0.3f) * 0.5f,
                       (full.a + 0.4f) * 0.5f});
}

TEST_P(LegacyCloth, TheWidthsShareTheWidthSpread)
{
    const float nn = static_cast<float>(OUtils::gradientNoise2(3.1f * 0.2f, 7.1f * 0.2f));
    const float m = (nn + 1.0f) * 0.5f * 0.3f;
    ClothWeave expected;
    expected.uWidth -= m;
    expected.vWidth -= 0.3f - m;
    for (const float u : {3.1f, 3.15f})
        EXPECT_GT(std::fabs(legacy(u, 7.1f, weaveOf(&ClothWeave::widthSpread, 0.3f)).g - legacy(u, 7.1f).g),
                  0.01f);
    expectColor(legacy(3.1f, 7.1f, weaveOf(&ClothWeave::widthSpread, 0.3f)), legacy(3.1f, 7.1f, expected));
}

TEST_P(LegacyCloth, ThreadsOfNoWidthShowNowhere)
{
    ClothWeave weave;
    weave.uWidth = weave.vWidth = 0.0f;
    for (const float u : {0.0f, 0.25f, 0.5f, 0.75f, -3.0f})
        for (const float v : {0.0f, 0.3f, 0.5f, 0.8f})
            expectGap(legacy(u, v, weave));
}

TEST_P(LegacyCloth, WhatIsNotFiniteHasTheFractionZero)
{
    for (const float odd : {kNaN, kInfinity, -kInfinity}) {
        expectColor(legacy(odd, 0.1f), legacy(0.0f, 0.1f));
        expectColor(legacy(0.6f, odd), legacy(0.6f, 0.0f));
        const ClothWeave everything{odd, odd, odd, odd, odd, odd, odd};
        legacy(odd, 0.3f, everything, odd);
        legacy(0.1f, 0.3f, everything);
    }
}
