// Inputs by themselves: what unset reads as, and what a connected texture gives.

#include <ombrix/inputs.h>

#include "support/test_node.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

namespace {

using namespace support;
using OUtils::AColor;
using OUtils::ColorInput;
using OUtils::FloatInput;

// Leaves its bounds unwritten.
class SilentFloat final : public TestFloat {
public:
    void evalFloatBounds(float*, float*) override {}
};
class SilentColor final : public TestColor {
public:
    void evalColorBounds(AColor*, AColor*) override {}
};

TEST(Inputs, UnsetFloatsReadAsWhatTheTableSays)
{
    const TestContext context;
    FloatInput input;
    input.unset = 0.75f;
    EXPECT_FALSE(input);
    EXPECT_SAME_BITS(input(context), 0.75f);
    EXPECT_SAME_BITS(input.valueOr(0.5f, context), 0.5f);
    EXPECT_SAME_BITS(input.bounds().lower, 0.75f);
    EXPECT_SAME_BITS(input.bounds().upper, 0.75f);
    EXPECT_SAME_BITS(input.boundsOr({-1.0f, 2.0f}).upper, 2.0f);
    EXPECT_TRUE(input.isOn(context));
    input.unset = 0.0f;
    EXPECT_FALSE(input.isOn(context));
}

TEST(Inputs, ConnectedFloatsGiveTheirTexture)
{
    const TestContext context;
    TestFloat texture(0.25f);
    FloatInput input;
    input.texture = &texture;
    EXPECT_TRUE(input);
    EXPECT_SAME_BITS(input(context), 0.25f);
    EXPECT_SAME_BITS(input.valueOr(0.5f, context), 0.25f);
    EXPECT_TRUE(input.isOn(context));
    texture.value = 0.0f;
    EXPECT_FALSE(input.isOn(context));
    texture.value = kNaN;
    EXPECT_TRUE(input.isOn(context));
}

TEST(Inputs, UnwrittenBoundsAreZeroAndOne)
{
    SilentFloat number;
    FloatInput floatInput;
    floatInput.texture = &number;
    EXPECT_SAME_BITS(floatInput.bounds().lower, 0.0f);
    EXPECT_SAME_BITS(floatInput.bounds().upper, 1.0f);
    SilentColor color;
    ColorInput colorInput;
    colorInput.texture = &color;
    EXPECT_SAME_COLOR(colorInput.bounds().lower, {0.0f, 0.0f, 0.0f, 0.0f});
    EXPECT_SAME_COLOR(colorInput.bounds().upper, {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST(Inputs, ColorsPassTheirTextureOn)
{
    const TestContext context;
    ColorInput input;
    input.unset = {0.1f, 0.2f, 0.3f, 0.4f};
    AColor result = kUnwrittenColor;
    EXPECT_EQ(input.evalColor(&result, context), &result);
    EXPECT_SAME_COLOR(result, {0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_SAME_COLOR(input(context), {0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_SAME_COLOR(input.gradient(context), {0.0f, 0.0f, 0.0f, 0.0f});
    TestColor texture({0.5f, 0.6f, 0.7f, 0.8f});
    input.texture = &texture;
    input.evalColor(&result, context);
    EXPECT_SAME_COLOR(result, {0.5f, 0.6f, 0.7f, 0.8f});
    EXPECT_SAME_BITS(input.rgb(context).b, 0.7f);
    EXPECT_SAME_COLOR(input.valueOr({}, context), {0.5f, 0.6f, 0.7f, 0.8f});
}

TEST(Inputs, ReferencesFindTheWantedInterface)
{
    TestColor color;
    TestFloat number;
    OUtils::PluginInput<OUtils::TextureInterface> input;
    input.resolve();
    EXPECT_FALSE(input);
    input.plugin = &number;
    input.resolve();
    EXPECT_FALSE(input);
    input.plugin = &color;
    EXPECT_FALSE(input); // until it is resolved
    input.resolve();
    EXPECT_EQ(static_cast<OUtils::TextureInterface*>(input), &color);

    OUtils::PluginListInput<OUtils::TextureInterface> list;
    list.plugins.alloc(3);
    list.plugins[0] = &number;
    list.plugins[2] = &color;
    list.resolve();
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list[0], nullptr);
    EXPECT_EQ(list[1], nullptr);
    EXPECT_EQ(list[2], &color);
}

} // namespace
