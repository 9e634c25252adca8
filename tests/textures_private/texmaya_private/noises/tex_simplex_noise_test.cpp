// The simplex noise texture. Its values come from the plain twins of the simplex noises.

#include "noise_node.h"
#include "support/plain_noise.h"

#include <cmath>

namespace {

using namespace support;
using OUtils::AColor;

class SimplexNode : public NoiseNode {
public:
    SimplexNode() : NoiseNode("TexSimplexNoise") {}
    float valueAt(float u, float v)
    {
        const AColor color = at(u, v, 0.625f);
        EXPECT_SAME_COLOR(color, {color.r, color.r, color.r, color.r});
        return color.r;
    }
};

// The declared defaults, and a set where everything differs from them.
constexpr plain::Fractal kDefaults{1.0f, 0.707f, 3, 2.0f, 1.0f, 0.0f, 0.0f, 0.0f};
constexpr plain::Fractal kOther{0.75f, 0.5f, 2, 1.5f, 1.25f, 0.3f, -0.4f, 0.8f};

void setOther(SimplexNode& node)
{
    node.set("amplitude", kOther.amplitude).set("ratio", kOther.ratio).set("octaves", kOther.octaves);
    node.set("frequency", kOther.frequency).set("frequency_ratio", kOther.frequencyRatio);
    node.set("distortion_u", kOther.du).set("distortion_v", kOther.dv).set("distortion_ratio", kOther.dr);
}

float positive(float r)
{
    return r > 0.0f ? r : 0.0f;
}

TEST(TexSimplexNoise, IsAConstantUntilItHasAScale)
{
    SimplexNode node;
    const float expected = positive(plain::fractal(0.0f, 0.0f, kDefaults));
    for (const auto& [u, v] : {std::pair(0.0f, 0.0f), {3.7f, -2.1f}, {1e6f, 5.0f}})
        EXPECT_SAME_BITS(node.valueAt(u, v), expected);
    for (const float scale : {0.0001f, -5.0f}) {
        node.set("scale", scale);
        EXPECT_SAME_BITS(node.valueAt(3.7f, -2.1f), expected) << scale;
    }
    node.set("scale", 0.00011f);
    EXPECT_SAME_BITS(node.valueAt(3000.7f, -2000.1f),
                     positive(plain::fractal(0.00011f * 3000.7f, 0.00011f * -2000.1f, kDefaults)));
}

TEST(TexSimplexNoise, AScaleThatIsNoNumberCountsAndLeavesNoCoordinates)
{
    SimplexNode node;
    node.set("scale", kNaN);
    EXPECT_SAME_BITS(node.valueAt(3.7f, -2.1f), positive(plain::fractal(kNaN, kNaN, kDefaults)));
}

TEST(TexSimplexNoise, ReadsItsDefaultsWhereNothingIsConnected)
{
    SimplexNode node;
    node.set("scale", 2.0f);
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f), positive(plain::fractal(0.6f, 1.4f, kDefaults)));
}

TEST(TexSimplexNoise, PassesItsParametersToEachKind)
{
    SimplexNode node;
    setOther(node);
    node.set("scale", 2.0f);
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f), positive(plain::fractal(0.6f, 1.4f, kOther)));
    node.set("noise_type", 2);
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f), positive(plain::ridged(0.6f, 1.4f, kOther)));
    node.set("noise_type", 1);
    const float x = 0.6f + kOther.du * kOther.dr;
    const float y = 1.4f + (kOther.dv + 0.2f) * kOther.dr;
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f), plain::cellular(x, y, kOther.amplitude, kOther.frequency));
    node.set("distortion_ratio", 0.0f); // no move at all, the 0.2 included
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f),
                     plain::cellular(0.6f, 1.4f, kOther.amplitude, kOther.frequency));
}

TEST(TexSimplexNoise, UnknownKindsGiveTheThreshold)
{
    SimplexNode node;
    node.set("threshold", 0.375f);
    for (const int type : {-1, 3, 1000}) {
        node.set("noise_type", type);
        EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f), 0.375f);
    }
    node.set("threshold", -0.5f);
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f), 0.0f);
}

TEST(TexSimplexNoise, GammaCountsBetweenZeroAndOneAlone)
{
    SimplexNode node;
    node.set("noise_type", 9).set("threshold", 0.25f);
    for (const auto& [gamma, expected] : {std::pair(0.5f, 0.0625f),
                                          {0.25f, 0.00390625f},
                                          {1.0f, 0.25f},
                                          {2.0f, 0.25f},
                                          {0.0f, 0.25f},
                                          {-0.5f, 0.25f},
                                          {kNaN, 0.25f}}) {
        node.set("gamma", gamma);
        EXPECT_SAME_BITS(node.valueAt(0.0f, 0.0f), expected) << gamma;
    }
    node.set("threshold", -0.5f).set("gamma", 0.5f); // (-0.5) squared
    EXPECT_SAME_BITS(node.valueAt(0.0f, 0.0f), 0.25f);
    node.set("gamma", 0.3f); // powf of a negative number to no whole power
    EXPECT_SAME_BITS(node.valueAt(0.0f, 0.0f), 0.0f);
}

TEST(TexSimplexNoise, ReadsConnectedTextures)
{
    TestFloat scale(2.0f), threshold(0.5f);
    SimplexNode node;
    node.connect("scale", scale).connect("threshold", threshold);
    EXPECT_SAME_BITS(node.valueAt(0.3f, 0.7f),
                     positive(positive(plain::fractal(0.6f, 1.4f, kDefaults)) + 0.5f));
}

TEST(TexSimplexNoise, OctavesBelowZeroGiveTheCentre)
{
    SimplexNode node;
    node.set("octaves", -1);
    EXPECT_SAME_BITS(node.valueAt(0.0f, 0.0f), 0.5f);
}

TEST(TexSimplexNoise, HasAnAnswerForCoordinatesThatAreNoNumbers)
{
    SimplexNode node;
    node.set("scale", 2.0f);
    for (const int type : {0, 1, 2}) {
        node.set("noise_type", type);
        for (const float u : {kNaN, INFINITY, -INFINITY, 1e38f}) {
            const float value = node.valueAt(u, u);
            EXPECT_TRUE(value >= 0.0f && value <= 3.5f) << type << ' ' << u << ": " << value;
        }
    }
}

TEST(TexSimplexNoise, BoundsAreZeroToThreeAndAHalf)
{
    SimplexNode node;
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 0.0f});
    EXPECT_SAME_COLOR(bounds.upper, {3.5f, 3.5f, 3.5f, 3.5f});
}

TEST(TexSimplexNoise, GradientIsZero)
{
    SimplexNode node;
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST(TexSimplexNoise, HasNoTextOfItsOwn)
{
    SimplexNode node;
    const WrittenSource written = sourceOf(node.rtTexture(), "MaterialDescriptor");
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
}

} // namespace
