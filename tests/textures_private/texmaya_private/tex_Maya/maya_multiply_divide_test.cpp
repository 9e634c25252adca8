#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct MultiplyDivideTest : testing::Test {
    MultiplyDivideTest()
    {
        color1.value = {0.5f, 0.25f, -2.0f, 0.3f};
        color2.value = {4.0f, 0.5f, 0.125f, 0.3f};
    }
    void connectBoth() { node.connect("color1", color1).connect("color2", color2); }
    AColor result(const AColor& a, const AColor& b)
    {
        color1.value = a;
        color2.value = b;
        return freshColor(node);
    }

    CallLog log;
    TestColor color1{"color1", &log}, color2{"color2", &log};
    TestNode node{descriptor("MayaMultiplyDivide")};
};

TEST_F(MultiplyDivideTest, NothingConnectedIsWhiteWhateverTheOperation)
{
    for (int operation : {1, 2, 3, 0, 4}) {
        node.set("operation", operation);
        EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
    }
}

TEST_F(MultiplyDivideTest, MultipliesUnlessItIsToldOtherwise)
{
    connectBoth();
    EXPECT_SAME_COLOR(node.color(), {2.0f, 0.125f, -0.25f, 1.0f});
}

TEST_F(MultiplyDivideTest, Divides)
{
    connectBoth();
    node.set("operation", 2);
    EXPECT_SAME_COLOR(node.color(), {0.125f, 0.5f, -16.0f, 1.0f});
}

TEST_F(MultiplyDivideTest, RaisesToPowers)
{
    connectBoth();
    node.set("operation", 3);
    // 3^2, 0.25^0.5, and a negative exponent that counts as 0.
    EXPECT_SAME_COLOR(result({3.0f, 0.25f, 9.0f, 0.0f}, {2.0f, 0.5f, -1.0f, 0.0f}), {9.0f, 0.5f, 1.0f, 1.0f});
    // The base is not limited: (-2)^3, and (-2)^0.5 is no number. A NaN exponent counts as 0.
    EXPECT_SAME_COLOR(result({-2.0f, -2.0f, 5.0f, 0.0f}, {3.0f, 0.5f, kNaN, 0.0f}),
                      {-8.0f, kNaN, 1.0f, 1.0f});
}

TEST_F(MultiplyDivideTest, PassesTheFirstColorOnForOtherOperations)
{
    connectBoth();
    for (int operation : {0, 4, -1, 1000}) {
        node.set("operation", operation);
        EXPECT_SAME_COLOR(node.color(), {0.5f, 0.25f, -2.0f, 1.0f});
    }
}

TEST_F(MultiplyDivideTest, ASmallSecondColorMakesProductsBlack)
{
    connectBoth();
    EXPECT_SAME_COLOR(result({2.0f, 2.0f, 2.0f, 2.0f}, {0.0005f, 0.0f, 0.0f, 1.0f}),
                      {0.0f, 0.0f, 0.0f, 1.0f});
    // 0.002 squared is above the threshold.
    EXPECT_SAME_COLOR(result({2.0f, 2.0f, 2.0f, 2.0f}, {0.002f, 0.0f, 0.0f, 1.0f}),
                      {0.004f, 0.0f, 0.0f, 1.0f});
    // The signs do not matter to the length.
    EXPECT_SAME_COLOR(result({2.0f, 2.0f, 2.0f, 2.0f}, {-0.002f, 0.0f, 0.0f, 1.0f}),
                      {-0.004f, 0.0f, 0.0f, 1.0f});
}

TEST_F(MultiplyDivideTest, ASmallSecondColorMakesQuotientsBlackToo)
{
    connectBoth();
    node.set("operation", 2);
    EXPECT_SAME_COLOR(result({2.0f, -2.0f, 2.0f, 2.0f}, {0.0005f, 0.0f, 0.0f, 1.0f}),
                      {0.0f, 0.0f, 0.0f, 1.0f});
    node.set("operation", 3);
    EXPECT_SAME_COLOR(result({2.0f, 2.0f, 2.0f, 2.0f}, {0.0f, 0.0f, 0.0f, 1.0f}), {1.0f, 1.0f, 1.0f, 1.0f});
}

TEST_F(MultiplyDivideTest, CutsNegativeDivisorsOff)
{
    connectBoth();
    node.set("operation", 2);
    EXPECT_SAME_COLOR(result({1.0f, -1.0f, -1.0f, 0.0f}, {-1.0f, 2.0f, -2.0f, 0.0f}),
                      {0.0f, -0.5f, 0.0f, 1.0f});
    // 1e-6 > 0, while -1e-6 > 0 does not hold and the division goes through.
    EXPECT_SAME_COLOR(result({1.0f, -1.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f, 0.0f}),
                      {0.0f, -kInfinity, 0.0f, 1.0f});
}

TEST_F(MultiplyDivideTest, PassesNaNOn)
{
    connectBoth();
    EXPECT_SAME_COLOR(result({kNaN, 1.0f, 1.0f, 0.0f}, {1.0f, kNaN, 2.0f, 0.0f}), {kNaN, kNaN, 2.0f, 1.0f});
    node.set("operation", 2);
    EXPECT_SAME_COLOR(result({kNaN, 1.0f, 1.0f, 0.0f}, {1.0f, kNaN, 2.0f, 0.0f}), {kNaN, kNaN, 0.5f, 1.0f});
}

TEST_F(MultiplyDivideTest, BoundsAreThoseOfTheFourPairs)
{
    connectBoth();
    color1.lowerBound = {-1.0f, 1.0f, 2.0f, 9.0f};
    color1.upperBound = {2.0f, 3.0f, 3.0f, 9.0f};
    color2.lowerBound = {-3.0f, 0.5f, -1.0f, 9.0f};
    color2.upperBound = {4.0f, 2.0f, 2.0f, 9.0f};
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {-6.0f, 0.5f, -3.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {8.0f, 6.0f, 6.0f, 1.0f});

    // Nothing guards the quotients: 2 / -1 and 3 / -1 stay.
    node.set("operation", 2);
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {2.0f / -3.0f, 0.5f, -3.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 6.0f, 1.5f, 1.0f});

    // Negative exponents count as 0: 2^0 to 3^2 in blue.
    node.set("operation", 3);
    color1.lowerBound = {4.0f, 1.0f, 2.0f, 9.0f};
    color1.upperBound = {9.0f, 1.0f, 3.0f, 9.0f};
    color2.lowerBound = {0.5f, 0.5f, -1.0f, 9.0f};
    color2.upperBound = {2.0f, 2.0f, 2.0f, 9.0f};
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {2.0f, 1.0f, 1.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {81.0f, 1.0f, 9.0f, 1.0f});
}

TEST_F(MultiplyDivideTest, BoundsPassADivisionByZeroThrough)
{
    connectBoth();
    node.set("operation", 2);
    color1.lowerBound = {1.0f, -1.0f, 1.0f, 0.0f};
    color1.upperBound = {2.0f, 1.0f, 2.0f, 0.0f};
    color2.lowerBound = {0.0f, 0.0f, 0.0f, 0.0f};
    color2.upperBound = {2.0f, 1.0f, 0.0f, 0.0f};
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.5f, -kInfinity, kInfinity, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {kInfinity, kInfinity, kInfinity, 1.0f});
}

TEST_F(MultiplyDivideTest, BoundsOfUnsetColorsAreOne)
{
    for (int operation : {1, 2, 3}) {
        node.set("operation", operation);
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, {1.0f, 1.0f, 1.0f, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
    }
}

TEST_F(MultiplyDivideTest, BoundsOfOtherOperationsWriteAlphaAlone)
{
    connectBoth();
    for (int operation : {0, 4, -1}) {
        node.set("operation", operation);
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, {kUnwritten, kUnwritten, kUnwritten, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {kUnwritten, kUnwritten, kUnwritten, 1.0f});
    }
}

TEST_F(MultiplyDivideTest, GradientIsZero)
{
    connectBoth();
    expectZeroGradient(node);
}

TEST_F(MultiplyDivideTest, RemembersOnePointForEachRayDepth)
{
    connectBoth();
    log.clear();
    const AColor first = node.color();
    node.context.rayDepth = 40; // a deeper ray shades another point in between
    node.context.sampleStamp = 2;
    node.color();
    node.context.rayDepth = 0;
    node.context.sampleStamp = 1;
    color1.value = {};
    EXPECT_SAME_COLOR(node.color(), first);
    EXPECT_EQ(log, (CallLog{"color1.evalColor", "color2.evalColor", "color1.evalColor", "color2.evalColor"}));
    node.context.shadeFlags = OUtils::noTexCache;
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f}); // the memo is barred
}

TEST_F(MultiplyDivideTest, ForgetsWithEveryFrameAndEveryRender)
{
    connectBoth();
    node.color();
    color1.value = {1.0f, 1.0f, 1.0f, 1.0f};
    node.life()->frameBegin(&node.renderer);
    EXPECT_SAME_COLOR(node.color(), {4.0f, 0.5f, 0.125f, 1.0f});
    color1.value = {2.0f, 2.0f, 2.0f, 1.0f};
    node.life()->renderEnd(&node.renderer);
    EXPECT_SAME_COLOR(node.color(), {8.0f, 1.0f, 0.25f, 1.0f}); // and there is no memo outside a render
    color1.value = {1.0f, 1.0f, 1.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {4.0f, 0.5f, 0.125f, 1.0f});
    node.life()->renderBegin(&node.renderer);
    color1.value = {2.0f, 2.0f, 2.0f, 1.0f};
    EXPECT_SAME_COLOR(node.color(), {8.0f, 1.0f, 0.25f, 1.0f});
}

TEST_F(MultiplyDivideTest, OutputIsTheSameColor)
{
    connectBoth();
    auto* output = outputOf<OUtils::TextureInterface>(node, "color");
    ASSERT_NE(output, nullptr);
    AColor color;
    output->evalColor(&color, node.context);
    EXPECT_SAME_COLOR(color, {2.0f, 0.125f, -0.25f, 1.0f});
    OUtils::PluginBase* holder = output->getPlugin();
    EXPECT_EQ(holder->getInterface(OUtils::EXT_TEXTURE), output);
    EXPECT_NE(holder->getInterface(OUtils::EXT_RTTEX), nullptr);
    EXPECT_EQ(holder->getInterface(OUtils::EXT_TEXTURE_FLOAT), nullptr);
}

TEST_F(MultiplyDivideTest, WritesBothColorsAndItsOperation)
{
    connectBoth();
    node.set("operation", 3);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, sourceLine("color1") + "subtex\n" + sourceLine("color2") +
                                "subtex\n"
                                "bitmap -956\n"
                                "uvw_transform 3.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
                                "0.000000,0.000000,0.000000,0.000000,0.000000,0.000000\n");
}

TEST_F(MultiplyDivideTest, WritesBlackForInputsWithoutSource)
{
    color2.hasSource = false;
    node.connect("color2", color2).set("operation", -7);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.0 0.0 0.0 0.0\nsubtex\n"
                            "color 0.0 0.0 0.0 0.0\nsubtex\n"
                            "bitmap -956\n"
                            "uvw_transform -7.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
                            "0.000000,0.000000,0.000000,0.000000,0.000000,0.000000\n");
}

} // namespace
