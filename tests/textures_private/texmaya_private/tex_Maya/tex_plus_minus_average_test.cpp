#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

struct PlusMinusAverageTest : testing::Test {
    PlusMinusAverageTest()
    {
        colorA.value = {1.0f, 2.0f, 3.0f, 4.0f};
        colorB.value = {10.0f, 20.0f, 30.0f, 40.0f};
        colorC.value = {100.0f, 200.0f, 300.0f, 400.0f};
        floatA.value = 1.0f;
        floatB.value = 10.0f;
        floatC.value = 100.0f;
    }
    void connectColors(std::vector<OUtils::PluginBase*> entries)
    {
        connectList(node, "input3D", std::move(entries));
    }
    AColor result(int operation)
    {
        node.set("operation", operation);
        return node.color();
    }

    CallLog log;
    TestColor colorA{"colorA", &log}, colorB{"colorB", &log}, colorC{"colorC", &log};
    TestFloat floatA{"floatA", &log}, floatB{"floatB", &log}, floatC{"floatC", &log};
    TestNode node{descriptor("TexPlusMinusAverage")};
};

TEST_F(PlusMinusAverageTest, EmptyListsGiveZeroInEveryOperation)
{
    auto* output1D = outputOf<OUtils::TextureFloatInterface>(node, "output1D");
    auto* output2D = outputOf<OUtils::TextureInterface>(node, "output2D");
    ASSERT_TRUE(output1D && output2D);
    for (int operation : {1, 0, 2, 3, 4, -1}) {
        EXPECT_SAME_COLOR(result(operation), {0.0f, 0.0f, 0.0f, 0.0f});
        EXPECT_SAME_BITS(output1D->evalFloat(node.context), 0.0f);
        AColor color = kUnwrittenColor;
        output2D->evalColor(&color, node.context);
        EXPECT_SAME_COLOR(color, {0.0f, 0.0f, 0.0f, 0.0f});
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 0.0f});
        EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 0.0f});
    }
}

TEST_F(PlusMinusAverageTest, CombinesAllFourChannels)
{
    connectColors({&colorA, &colorB, &colorC});
    EXPECT_SAME_COLOR(node.color(), {111.0f, 222.0f, 333.0f, 444.0f}); // sums unless it is told otherwise
    EXPECT_SAME_COLOR(result(0), {1.0f, 2.0f, 3.0f, 4.0f});
    EXPECT_SAME_COLOR(result(1), {111.0f, 222.0f, 333.0f, 444.0f});
    EXPECT_SAME_COLOR(result(2), {-109.0f, -218.0f, -327.0f, -436.0f});
    EXPECT_SAME_COLOR(result(3), {37.0f, 74.0f, 111.0f, 148.0f});
}

TEST_F(PlusMinusAverageTest, OtherOperationsGiveZero)
{
    connectColors({&colorA, &colorB});
    for (int operation : {4, -1, 1000})
        EXPECT_SAME_COLOR(result(operation), {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST_F(PlusMinusAverageTest, OneEntryIsItselfInEveryOperation)
{
    connectColors({&colorA});
    for (int operation : {0, 1, 2, 3})
        EXPECT_SAME_COLOR(result(operation), {1.0f, 2.0f, 3.0f, 4.0f});
}

TEST_F(PlusMinusAverageTest, EntriesThatAddNothingStillCount)
{
    colorB.value = {5.0f, 10.0f, 0.0f, -4.0f};
    for (OUtils::PluginBase* nothing :
         {static_cast<OUtils::PluginBase*>(nullptr), static_cast<OUtils::PluginBase*>(&floatA)}) {
        connectColors({&colorA, nothing, &colorB});
        EXPECT_SAME_COLOR(result(3), {2.0f, 4.0f, 1.0f, 0.0f});
        EXPECT_SAME_COLOR(result(1), {6.0f, 12.0f, 3.0f, 0.0f});
        connectColors({nothing, &colorA, &colorB});
        EXPECT_SAME_COLOR(result(0), {0.0f, 0.0f, 0.0f, 0.0f});
        EXPECT_SAME_COLOR(result(2), {-6.0f, -12.0f, -3.0f, 0.0f});
    }
}

TEST_F(PlusMinusAverageTest, TheThreeListsAreApart)
{
    connectList(node, "input1D", {&floatA, &floatB, &floatC});
    connectList(node, "input2D", {&colorA, &colorB});
    connectColors({&colorC});
    auto* output1D = outputOf<OUtils::TextureFloatInterface>(node, "output1D");
    auto* output2D = outputOf<OUtils::TextureInterface>(node, "output2D");
    auto* output3D = outputOf<OUtils::TextureInterface>(node, "output3D");
    const float floats[] = {1.0f, 111.0f, -109.0f, 37.0f, 0.0f};
    const float reds[] = {1.0f, 11.0f, -9.0f, 5.5f, 0.0f};
    const float thirdReds[] = {100.0f, 100.0f, 100.0f, 100.0f, 0.0f};
    for (int operation = 0; operation <= 4; ++operation) {
        node.set("operation", operation);
        AColor color;
        EXPECT_SAME_BITS(output1D->evalFloat(node.context), floats[operation]);
        EXPECT_SAME_BITS(output2D->evalColor(&color, node.context)->r, reds[operation]);
        EXPECT_SAME_BITS(output3D->evalColor(&color, node.context)->r, thirdReds[operation]);
        EXPECT_SAME_BITS(node.color().r, thirdReds[operation]);
    }
}

TEST_F(PlusMinusAverageTest, PassesNaNOn)
{
    colorB.value = {kNaN, 0.0f, 0.0f, 0.0f};
    connectColors({&colorA, &colorB});
    for (int operation : {1, 2, 3}) {
        const AColor color = result(operation);
        EXPECT_SAME_BITS(color.r, kNaN);
        EXPECT_FALSE(std::isnan(color.g));
    }
    EXPECT_SAME_BITS(result(0).r, 1.0f);
}

TEST_F(PlusMinusAverageTest, BoundsFollowTheOperation)
{
    colorA.lowerBound = {-1.0f, 0.0f, 1.0f, 2.0f};
    colorA.upperBound = {1.0f, 2.0f, 3.0f, 4.0f};
    colorB.lowerBound = {10.0f, 20.0f, 30.0f, 40.0f};
    colorB.upperBound = {11.0f, 22.0f, 33.0f, 44.0f};
    colorC.lowerBound = {100.0f, 200.0f, 300.0f, 400.0f};
    colorC.upperBound = {101.0f, 202.0f, 303.0f, 404.0f};
    connectColors({&colorA, &colorB, nullptr, &colorC});
    const AColor expected[][2] = {
        {{-1.0f, 0.0f, 1.0f, 2.0f}, {1.0f, 2.0f, 3.0f, 4.0f}},
        {{109.0f, 220.0f, 331.0f, 442.0f}, {113.0f, 226.0f, 339.0f, 452.0f}},
        {{-113.0f, -224.0f, -335.0f, -446.0f}, {-109.0f, -218.0f, -327.0f, -436.0f}},
        {{27.25f, 55.0f, 82.75f, 110.5f}, {28.25f, 56.5f, 84.75f, 113.0f}},
        {{}, {}},
    };
    for (int operation = 0; operation <= 4; ++operation) {
        node.set("operation", operation);
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, expected[operation][0]);
        EXPECT_SAME_COLOR(bounds.upper, expected[operation][1]);
    }
}

TEST_F(PlusMinusAverageTest, BoundsOfFloatsFollowTheOperationToo)
{
    floatA.lowerBound = -1.0f;
    floatA.upperBound = 1.0f;
    floatB.lowerBound = 10.0f;
    floatB.upperBound = 12.0f;
    connectList(node, "input1D", {&floatA, &floatB});
    auto* output = outputOf<OUtils::TextureFloatInterface>(node, "output1D");
    const float expected[][2] = {{-1.0f, 1.0f}, {9.0f, 13.0f}, {-13.0f, -9.0f}, {4.5f, 6.5f}, {0.0f, 0.0f}};
    for (int operation = 0; operation <= 4; ++operation) {
        node.set("operation", operation);
        float lower = kUnwritten, upper = kUnwritten;
        output->evalFloatBounds(&lower, &upper);
        EXPECT_SAME_BITS(lower, expected[operation][0]);
        EXPECT_SAME_BITS(upper, expected[operation][1]);
    }
}

TEST_F(PlusMinusAverageTest, RemembersOneColorForEachRayDepth)
{
    connectColors({&colorA, &colorB});
    log.clear();
    node.color();
    node.context.rayDepth = 20;
    node.context.sampleStamp = 2;
    node.color();
    node.context.rayDepth = 0;
    node.context.sampleStamp = 1;
    colorA.value = {};
    EXPECT_SAME_COLOR(node.color(), {11.0f, 22.0f, 33.0f, 44.0f});
    EXPECT_EQ(log.size(), 4u);
    node.life()->frameBegin(&node.renderer);
    EXPECT_SAME_COLOR(node.color(), {10.0f, 20.0f, 30.0f, 40.0f});
}

TEST_F(PlusMinusAverageTest, RemembersOneFloatForTheThread)
{
    connectList(node, "input1D", {&floatA, &floatB});
    auto* output = outputOf<OUtils::TextureFloatInterface>(node, "output1D");
    EXPECT_SAME_BITS(output->evalFloat(node.context), 11.0f);
    floatA.value = 5.0f;
    node.context.rayDepth = 3; // the memo of floats does not look at the depth
    EXPECT_SAME_BITS(output->evalFloat(node.context), 11.0f);
    node.context.shadeFlags = OUtils::noTexCache;
    EXPECT_SAME_BITS(output->evalFloat(node.context), 15.0f);
    node.context.shadeFlags = 0;
    node.context.threadRecord->threadIndex = 1;
    EXPECT_SAME_BITS(output->evalFloat(node.context), 15.0f);
    node.context.threadRecord->threadIndex = 0;
    ++node.context.sampleStamp;
    EXPECT_SAME_BITS(output->evalFloat(node.context), 15.0f);
}

// A texture that traces a deeper ray through the node that it feeds.
class TracingInput : public OUtils::OmbrixTexture {
public:
    TracingInput() : OmbrixTexture(nullptr) {}
    AColor* evalColor(AColor* result, const OUtils::OmbrixContext& context) override
    {
        *result = {1.0f, 1.0f, 1.0f, 1.0f};
        if (context.rayDepth >= 100) return result;
        TestContext deeper;
        deeper.rayDepth = context.rayDepth + 1;
        deeper.sampleStamp = context.sampleStamp + 1;
        AColor beyond;
        traced->evalColor(&beyond, deeper);
        result->r += beyond.r;
        return result;
    }
    void evalColorBounds(AColor*, AColor*) override {}

    OUtils::TextureInterface* traced = nullptr;
};

TEST_F(PlusMinusAverageTest, RaysThatComeBackDeeperDoNotDisturbTheMemo)
{
    TracingInput tracing;
    tracing.traced = node.texture();
    connectColors({&tracing});
    EXPECT_SAME_BITS(node.color().r, 101.0f);
    tracing.traced = nullptr; // must not be asked again
    EXPECT_SAME_BITS(node.color().r, 101.0f);
}

TEST_F(PlusMinusAverageTest, OutputsAnswerTheirInterfaces)
{
    const struct {
        const char* name;
        OUtils::InterfaceId id, absent;
    } rows[] = {{"output1D", OUtils::EXT_TEXTURE_FLOAT, OUtils::EXT_TEXTURE},
                {"output2D", OUtils::EXT_TEXTURE, OUtils::EXT_TEXTURE_FLOAT},
                {"output3D", OUtils::EXT_TEXTURE, OUtils::EXT_TEXTURE_FLOAT}};
    for (const auto& row : rows) {
        OUtils::PluginInterface* output = ombrix::boundOutput(*node.life()->paramList, row.name);
        ASSERT_NE(output, nullptr) << row.name;
        OUtils::PluginBase* holder = output->getPlugin();
        EXPECT_NE(holder, node.base()) << row.name;
        EXPECT_EQ(holder->getInterface(row.id), output) << row.name;
        EXPECT_EQ(holder->getInterface(row.absent), nullptr) << row.name;
        ASSERT_NE(holder->getInterface(OUtils::EXT_RTTEX), nullptr) << row.name;
        EXPECT_EQ(holder->getInterface(OUtils::EXT_RTTEX)->getPlugin(), holder) << row.name;
    }
}

TEST_F(PlusMinusAverageTest, OutputsFeedOtherNodes)
{
    connectList(node, "input2D", {&colorA, &colorB});
    TestNode next(descriptor("TexPlusMinusAverage"));
    connectList(next, "input3D",
                {ombrix::boundOutput(*node.life()->paramList, "output2D")->getPlugin(), &colorC});
    EXPECT_SAME_COLOR(next.color(), {111.0f, 222.0f, 333.0f, 444.0f});
}

TEST_F(PlusMinusAverageTest, GradientIsZero)
{
    connectColors({&colorA});
    expectZeroGradient(node);
}

} // namespace
