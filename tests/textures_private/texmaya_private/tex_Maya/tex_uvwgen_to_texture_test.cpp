#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

// A generator of given coordinates.
class GeneratorInput : public OUtils::OmbrixUVWGen, public TestSource {
public:
    GeneratorInput() : OmbrixUVWGen(nullptr) { label = "generator"; }

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return hasSource ? static_cast<OUtils::RTTexInterface*>(this) : nullptr;
        if (id == OUtils::EXT_UVWGEN && !generates) return nullptr;
        return OmbrixUVWGen::getInterface(id);
    }
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& data) override
    {
        return refuses ? 0 : TestSource::getSource(name, tag, descriptor, source, data);
    }
    int evalUVW(const OUtils::OmbrixContext&, OUtils::UVWSample* result) override
    {
        result->uvw = {0.25f, -1.5f, 3.0f, 42.0f};
        return valid;
    }
    int evalUVWDerivs(const OUtils::OmbrixContext&, OUtils::UVWSample*) override { return 0; }
    int evalUVWTransform(const OUtils::OmbrixContext&, OUtils::Transform*) override { return 0; }

    int valid = 1;
    bool generates = true;
    bool refuses = false;
};

struct UVWGenToTextureTest : testing::Test {
    GeneratorInput generator;
    TestNode node{descriptor("TexUVWGenToTexture")};
};

TEST_F(UVWGenToTextureTest, NothingConnectedIsBlack)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(UVWGenToTextureTest, ShowsTheCoordinates)
{
    node.connect("input", generator);
    EXPECT_SAME_COLOR(node.color(), {0.25f, -1.5f, 3.0f, 1.0f});
    generator.valid = 2;
    EXPECT_SAME_COLOR(node.color(), {0.25f, -1.5f, 3.0f, 1.0f});
}

TEST_F(UVWGenToTextureTest, IsBlackWhereThereAreNoCoordinates)
{
    generator.valid = 0;
    node.connect("input", generator);
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(UVWGenToTextureTest, APluginThatGeneratesNothingCountsAsNone)
{
    generator.generates = false;
    node.connect("input", generator);
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    generator.generates = true;
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f}); // found when a frame begins, not before
    node.life()->frameBegin(&node.renderer);
    EXPECT_SAME_COLOR(node.color(), {0.25f, -1.5f, 3.0f, 1.0f});
}

TEST_F(UVWGenToTextureTest, ForgetsAGeneratorThatIsTakenAway)
{
    node.connect("input", generator);
    node.set("input", static_cast<OUtils::PluginBase*>(nullptr));
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_EQ(sourceOf(node.rtTexture()).answer, 0);
}

TEST_F(UVWGenToTextureTest, BoundsAreOpenInAllChannels)
{
    for (int connected : {0, 1}) {
        if (connected) node.connect("input", generator);
        const ColorBounds bounds = colorBounds(node);
        EXPECT_SAME_COLOR(bounds.lower, {-1e18f, -1e18f, -1e18f, -1e18f});
        EXPECT_SAME_COLOR(bounds.upper, {1e18f, 1e18f, 1e18f, 1e18f});
    }
}

TEST_F(UVWGenToTextureTest, GradientIsZero)
{
    node.connect("input", generator);
    expectZeroGradient(node);
}

TEST_F(UVWGenToTextureTest, WritesItsOperatorThenTheGenerator)
{
    node.connect("input", generator);
    WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "bitmap -972\n" + sourceLine("generator"));
    generator.refuses = true;
    written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "bitmap -972\n");
}

TEST_F(UVWGenToTextureTest, WritesAPluginThatGeneratesNothingAllTheSame)
{
    generator.generates = false;
    node.connect("input", generator);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "bitmap -972\n" + sourceLine("generator"));
}

TEST_F(UVWGenToTextureTest, WritesNothingWithoutAGpuForm)
{
    WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
    generator.hasSource = false;
    node.connect("input", generator);
    written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
}

} // namespace
