#include "arithmetic_test.h"

#include "kernels/color/black_body.h"
#include "support/plain_black_body.h"

#include <cmath>

namespace {

using namespace support;
using OUtils::AColor;

class ColorSpaceInput : public OUtils::ColorSpaceSettings {
public:
    OUtils::PluginBase* getPlugin() override { return nullptr; }
    int getColorSpace() override { return index; }
    float getTimeUnit() override { return 1.0f; }

    int index = 0;
};

void expectGlow(const AColor& actual, double temperature, std::size_t space, float alpha)
{
    const plain::Vec expected = plain::temperatureColorOf(temperature, space);
    EXPECT_NEAR(static_cast<double>(actual.r), expected[0], tolerance::kSum);
    EXPECT_NEAR(static_cast<double>(actual.g), expected[1], tolerance::kSum);
    EXPECT_NEAR(static_cast<double>(actual.b), expected[2], tolerance::kSum);
    EXPECT_SAME_BITS(actual.a, alpha);
}

struct TemperatureTest : testing::Test {
    TemperatureTest() { input.value = {1.0f, 0.5f, 0.0f, 0.25f}; } // a half on average

    CallLog log;
    TestColor input{"input", &log};
    TestNode node{descriptor("TexTemperatureToColor")};
};

TEST_F(TemperatureTest, NothingConnectedIsBlackWhateverTheTemperature)
{
    for (float temperature : {1.0f, 5000.0f}) {
        node.set("temperature", temperature);
        EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
        expectZeroGradient(node);
    }
}

TEST_F(TemperatureTest, ScalesTheTemperatureByTheMeanChannel)
{
    node.connect("input", input);
    for (float temperature : {4000.0f, 9000.0f, 24'000.0f}) {
        node.set("temperature", temperature);
        expectGlow(node.color(), 0.5 * static_cast<double>(temperature), 1, 0.25f);
    }
}

TEST_F(TemperatureTest, BlackGlowsAtAThousandKelvin)
{
    input.value = {0.0f, 0.0f, 0.0f, 0.75f};
    node.connect("input", input).set("temperature", 6500.0f);
    expectGlow(node.color(), 1000.0, 1, 0.75f);
    // So does everything while the temperature has its declared default, 1.
    input.value = {3.0f, 3.0f, 3.0f, 0.75f};
    node.set("temperature", 1.0f);
    expectGlow(node.color(), 1000.0, 1, 0.75f);
    input.value = {-1.0f, -1.0f, -1.0f, 0.75f};
    node.set("temperature", 6500.0f);
    expectGlow(node.color(), 1000.0, 1, 0.75f);
}

TEST_F(TemperatureTest, TheColorSpaceIsTheRenderers)
{
    ColorSpaceInput space;
    node.connect("input", input).set("temperature", 9000.0f);
    expectGlow(node.color(), 4500.0, 1, 0.25f);
    node.renderer.addInterface(&space, 0);
    for (int index : {0, 1, 2}) {
        space.index = index;
        node.life()->frameBegin(&node.renderer);
        expectGlow(node.color(), 4500.0, static_cast<std::size_t>(index), 0.25f);
    }
    space.index = 3; // not one of the three
    node.life()->frameBegin(&node.renderer);
    expectGlow(node.color(), 4500.0, 1, 0.25f);
    space.index = 0;
    node.life()->frameBegin(&node.renderer);
    node.renderer.removeInterface(&space);
    expectGlow(node.color(), 4500.0, 0, 0.25f); // known until the next frame
    node.life()->frameBegin(&node.renderer);
    expectGlow(node.color(), 4500.0, 1, 0.25f);
}

TEST_F(TemperatureTest, NaNHasNoColor)
{
    input.value = {kNaN, 0.5f, 0.0f, 0.25f};
    node.connect("input", input).set("temperature", 6500.0f);
    EXPECT_SAME_COLOR(node.color(), {kNaN, kNaN, kNaN, 0.25f});
    input.value = {kInfinity, 0.5f, 0.0f, kNaN};
    EXPECT_SAME_COLOR(node.color(), {kNaN, kNaN, kNaN, kNaN});
}

TEST_F(TemperatureTest, BoundsAreTheColorsOfTheInputsBounds)
{
    input.lowerBound = {0.25f, 0.5f, 0.75f, 0.1f};
    input.upperBound = {1.0f, 1.5f, 2.0f, 0.2f};
    node.connect("input", input).set("temperature", 8000.0f);
    const ColorBounds bounds = colorBounds(node);
    expectGlow(bounds.lower, 4000.0, 1, 0.1f);
    expectGlow(bounds.upper, 12'000.0, 1, 0.2f);
    EXPECT_GT(bounds.lower.r, bounds.upper.r) << "a hotter input may give less";
}

TEST_F(TemperatureTest, GradientIsThatOfTheInput)
{
    node.connect("input", input);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {3.0f, 4.0f, 5.0f, 6.0f});
}

TEST_F(TemperatureTest, OutputIsTheTextureItself)
{
    EXPECT_EQ(outputOf<OUtils::TextureInterface>(node, "color"), node.texture());
}

TEST_F(TemperatureTest, WritesTheColorOfTheMiddleOfTheBounds)
{
    input.lowerBound = {0.0f, 0.5f, 1.0f, 0.25f};
    input.upperBound = {1.0f, 1.5f, 2.0f, 0.75f}; // one on average, over both
    node.connect("input", input).set("temperature", 5000.0f);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    const plain::Vec expected = plain::temperatureColorOf(5000.0, 1);
    float r = 0.0f, g = 0.0f, b = 0.0f;
    int end = 0;
    ASSERT_EQ(std::sscanf(written.text.c_str(), "color_value %f %f %f 0.500000\n%n", &r, &g, &b, &end), 3);
    EXPECT_EQ(static_cast<std::size_t>(end), written.text.size());
    EXPECT_NEAR(static_cast<double>(r), expected[0], tolerance::kSum);
    EXPECT_NEAR(static_cast<double>(g), expected[1], tolerance::kSum);
    EXPECT_NEAR(static_cast<double>(b), expected[2], tolerance::kSum);
}

TEST_F(TemperatureTest, WritesTheBytesOfACappedColor)
{
    input.lowerBound = input.upperBound = {0.0f, 0.0f, 0.0f, 1.0f};
    node.connect("input", input).set("temperature", 5000.0f);
    // The plain twin at 1000 kelvin: 1, 0.02172903, and a blue outside the gamut.
    EXPECT_EQ(std::round(plain::temperatureColorOf(1000.0, 1)[1] * 1e6), 21729.0);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "color_value 1.000000 0.021729 0.000000 1.000000\n");
}

TEST_F(TemperatureTest, WritesNothingWhenUnset)
{
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
}

} // namespace
