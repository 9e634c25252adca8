#include "kernels/noises/simplex_noise.h"

#include "support/instruction_sets.h"
#include "support/noise_points.h"
#include "support/plain_noise.h"
#include "support/tolerances.h"

#include <limits>

using namespace nezaiva;

namespace {

constexpr int kMillion = 1000000;

plain::Fractal plainOf(const SimplexOctaves& o)
{
    return {o.amplitude,      o.ratio,       o.octaves,     o.frequency,
            o.frequencyRatio, o.distortionU, o.distortionV, o.distortionRatio};
}

SimplexOctaves someOctaves(int octaves)
{
    return {.amplitude = 0.8f,
            .ratio = 0.6f,
            .octaves = octaves,
            .frequency = 1.9f,
            .frequencyRatio = 1.1f,
            .distortionU = 0.4f,
            .distortionV = -0.7f,
            .distortionRatio = 0.5f};
}

} // namespace

TEST(SimplexNoise, IsZeroAtTheOrigin)
{
    // The first corner is the point itself, and the others are further off than sqrt(0.5).
    withEveryInstructionSet([] { EXPECT_EQ(simplexNoise(0.0f, 0.0f), 0.0f); });
}

TEST(SimplexNoise, StaysNearTheUnitRangeAndUsesIt)
{
    NoisePoints points(31, false);
    float smallest = 0.0f;
    float largest = 0.0f;
    for (int i = 0; i < 100000; ++i) {
        const float n = simplexNoise(points.nextFloat() * 1e-3f, points.nextFloat() * 1e-3f);
        smallest = std::min(smallest, n);
        largest = std::max(largest, n);
    }
    EXPECT_GT(smallest, -1.01f);
    EXPECT_LT(largest, 1.01f);
    EXPECT_LT(smallest, -0.8f);
    EXPECT_GT(largest, 0.8f);
}

TEST(SimplexNoise, EveryInstructionSetGivesTheBitsOfThePlainFormula)
{
    withEveryInstructionSet([] {
        NoisePoints points(30);
        int different = 0;
        for (int i = 0; i < kMillion; ++i) {
            const float x = points.nextFloat();
            const float y = points.nextFloat();
            different += !sameNoise(simplexNoise(x, y), plain::simplex(x, y));
            different += !sameNoise(simplexCellular(x, y, 0.7f, 1.3f), plain::cellular(x, y, 0.7f, 1.3f));
        }
        EXPECT_EQ(different, 0);
    });
}

TEST(SimplexNoise, CoordinatesAtTheEdgesGiveTheBitsOfThePlainFormula)
{
    const auto edges = edgeCoordinates<float>();
    withEveryInstructionSet([&] {
        for (const float x : edges)
            for (const float y : edges) {
                EXPECT_SAME_BITS(simplexNoise(x, y), plain::simplex(x, y));
                EXPECT_SAME_BITS(simplexCellular(x, y, 1.0f, 2.0f), plain::cellular(x, y, 1.0f, 2.0f));
                EXPECT_SAME_BITS(simplexFractal(x, y, someOctaves(5)),
                                 plain::fractal(x, y, plainOf(someOctaves(5))));
                EXPECT_SAME_BITS(simplexRidged(x, y, someOctaves(5)),
                                 plain::ridged(x, y, plainOf(someOctaves(5))));
            }
    });
}

TEST(SimplexFractal, OctavesZeroRunsOneTerm)
{
    withEveryInstructionSet([] {
        SimplexOctaves octaves;
        octaves.octaves = 0;
        octaves.amplitude = 0.75f;
        EXPECT_SAME_BITS(simplexFractal(0.3f, 0.4f, octaves),
                         0.5f + plain::simplex(0.3f, 0.4f) * 0.75f * 0.5f);
    });
}

TEST(SimplexFractal, NegativeOctavesRunNothing)
{
    SimplexOctaves octaves;
    octaves.octaves = -1;
    EXPECT_SAME_BITS(simplexFractal(0.3f, 0.4f, octaves), 0.5f);
    octaves.octaves = std::numeric_limits<int>::min();
    EXPECT_SAME_BITS(simplexFractal(0.3f, 0.4f, octaves), 0.5f);
}

TEST(SimplexFractal, FirstOctaveIsDistortedOnce)
{
    SimplexOctaves octaves = someOctaves(0);
    const float n = plain::simplex(0.3f + 0.4f * 0.5f, 0.4f - 0.7f * 0.5f);
    EXPECT_SAME_BITS(simplexFractal(0.3f, 0.4f, octaves), 0.5f + n * 0.8f * 0.5f);
}

TEST(SimplexFractal, PointTurnsOverBetweenOctaves)
{
    // Two octaves without ratio or distortion: the second is read at (2y - 0.02, 0.3 + 2x), with the
    // weight 2^-1.
    SimplexOctaves octaves;
    octaves.octaves = 1;
    octaves.ratio = 1.0f;
    const float first = plain::simplex(0.3f, 0.4f);
    const float second = plain::simplex(0.4f * 2.0f - 0.02f, 0.3f + 0.3f * 2.0f);
    EXPECT_FLOAT_EQ(simplexFractal(0.3f, 0.4f, octaves), 0.5f + (first + second * 0.5f) * 0.5f);
}

TEST(SimplexFractal, AnyNumberOfOctavesAgreesWithThePlainLoop)
{
    withEveryInstructionSet([] {
        NoisePoints points(32, false);
        for (int octaves = -2; octaves < 14; ++octaves)
            for (int i = 0; i < 200; ++i) {
                const float x = points.nextFloat();
                const float y = points.nextFloat();
                EXPECT_SAME_BITS(simplexFractal(x, y, someOctaves(octaves)),
                                 plain::fractal(x, y, plainOf(someOctaves(octaves))));
                EXPECT_SAME_BITS(simplexRidged(x, y, someOctaves(octaves)),
                                 plain::ridged(x, y, plainOf(someOctaves(octaves))));
            }
    });
}

TEST(SimplexRidged, OctavesOneRunsOnlyTheFirstTerm)
{
    const float q = 1.0f - std::fabs(plain::simplex(0.3f, 0.4f));
    for (const int count : {1, 0, -5}) {
        SimplexOctaves octaves = someOctaves(count);
        EXPECT_SAME_BITS(simplexRidged(0.3f, 0.4f, octaves), 0.5f + q * q * 0.5f);
    }
}

TEST(SimplexRidged, SecondTermUsesTheFirstDistortion)
{
    SimplexOctaves octaves = someOctaves(2);
    const float q0 = 1.0f - std::fabs(plain::simplex(0.3f, 0.4f));
    const float q1 = 1.0f - std::fabs(plain::simplex(0.3f * 1.9f + 0.4f * 0.5f, 0.4f * 1.9f - 0.7f * 0.5f));
    const float gain = std::min(q0 * q0 * 1.1f, 1.0f);
    const float expected = 0.5f + 0.5f * (q0 * q0 + std::pow(1.9f, -0.6f) * 0.8f * gain * q1 * q1);
    EXPECT_FLOAT_EQ(simplexRidged(0.3f, 0.4f, octaves), expected);
}

TEST(SimplexTexture, DefaultsAreOneConstant)
{
    const SimplexTextureValues values;
    const float constant = plain::fractal(0.0f, 0.0f, plainOf(values.octaves));
    EXPECT_SAME_BITS(simplexTexture(0.0f, 0.0f, values), constant);
    EXPECT_SAME_BITS(simplexTexture(0.37f, -12.0f, values), constant);
}

TEST(SimplexTexture, SmallScaleCountsAsZero)
{
    SimplexTextureValues values;
    values.scale = 0.0001f;
    EXPECT_SAME_BITS(simplexTexture(1000.0f, 500.0f, values), simplexTexture(0.0f, 0.0f, values));
    values.scale = -3.0f;
    EXPECT_SAME_BITS(simplexTexture(1000.0f, 500.0f, values), simplexTexture(0.0f, 0.0f, values));
    values.scale = 0.00011f;
    EXPECT_NE(simplexTexture(1000.0f, 500.0f, values), simplexTexture(0.0f, 0.0f, values));
}

TEST(SimplexTexture, NoiseTypeChoosesTheGenerator)
{
    SimplexTextureValues values;
    values.octaves = someOctaves(3);
    values.scale = 2.0f;
    values.threshold = 0.125f;
    const auto octaves = plainOf(values.octaves);
    EXPECT_SAME_BITS(simplexTexture(0.3f, 0.4f, values), plain::fractal(0.6f, 0.8f, octaves) + 0.125f);
    values.noiseType = 1;
    // The distortion ratio is above 0, so the point moves by (0.4, -0.7 + 0.2) * 0.5.
    const float moved = plain::cellular(0.6f + 0.4f * 0.5f, 0.8f + (-0.7f + 0.2f) * 0.5f, 0.8f, 1.9f);
    EXPECT_SAME_BITS(simplexTexture(0.3f, 0.4f, values), moved + 0.125f);
    for (const float notAboveZero : {0.0f, -0.5f}) { // the point stays where it is
        values.octaves.distortionRatio = notAboveZero;
        EXPECT_SAME_BITS(simplexTexture(0.3f, 0.4f, values),
                         plain::cellular(0.6f, 0.8f, 0.8f, 1.9f) + 0.125f);
    }
    values.octaves.distortionRatio = 0.5f;
    values.noiseType = 2;
    EXPECT_SAME_BITS(simplexTexture(0.3f, 0.4f, values), plain::ridged(0.6f, 0.8f, octaves) + 0.125f);
    for (const int unknown : {3, -1, 1000}) {
        values.noiseType = unknown;
        EXPECT_SAME_BITS(simplexTexture(0.3f, 0.4f, values), 0.125f);
    }
}

TEST(SimplexTexture, FractalIsClampedBeforeTheThreshold)
{
    SimplexTextureValues values;
    values.octaves.octaves = 0;
    values.octaves.amplitude = 100.0f;
    values.scale = 1.0f;
    values.threshold = 0.25f;
    float x = 0.0f;
    while (plain::simplex(x, 0.4f) > -0.1f)
        x += 0.01f;
    EXPECT_SAME_BITS(simplexTexture(x, 0.4f, values), 0.25f);
}

TEST(SimplexTexture, GammaActsOnlyBetweenZeroAndOne)
{
    SimplexTextureValues values;
    values.noiseType = 9;
    values.threshold = 0.25f;
    for (const float gamma : {1.0f, 2.0f, 0.0f, -0.5f, std::numeric_limits<float>::quiet_NaN()}) {
        values.gamma = gamma;
        EXPECT_SAME_BITS(simplexTexture(0.0f, 0.0f, values), 0.25f);
    }
    values.gamma = 0.5f;
    EXPECT_FLOAT_EQ(simplexTexture(0.0f, 0.0f, values), 0.0625f);
}

TEST(SimplexTexture, NegativeValueTakesWhatThePowerGives)
{
    SimplexTextureValues values;
    values.noiseType = 9;
    values.threshold = -0.5f;
    EXPECT_SAME_BITS(simplexTexture(0.0f, 0.0f, values), 0.0f);
    values.gamma = 0.5f; // (-0.5)^2
    EXPECT_FLOAT_EQ(simplexTexture(0.0f, 0.0f, values), 0.25f);
    values.gamma = 0.4f; // (-0.5)^2.5 is not a number, and the last maximum makes it 0
    EXPECT_SAME_BITS(simplexTexture(0.0f, 0.0f, values), 0.0f);
}
