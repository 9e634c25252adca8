#include "support/mapped_inputs.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using OUtils::AColor;
using OUtils::OmbrixPluginInterface;
using Messages = std::vector<std::pair<OUtils::LogLevel, std::string>>;

// The plugin object behind the output out_transparency.
OUtils::PluginBase* transparencyOutputOf(const TestNode& node)
{
    return ombrix::boundOutput(*node.life()->paramList, "out_transparency")->getPlugin();
}

// An instance in a renderer with a log, with its second output at hand.
struct ProjectionTest : testing::Test {
    ProjectionTest()
    {
        base.value = {0.2f, 0.4f, 0.6f, 0.75f};
        static_cast<OUtils::Plugin*>(node.base())->setPluginName("slide");
        node.connect("uvwgen", generator);
    }
    OUtils::TextureInterface* transparencyOutput() const
    {
        return interfaceOf<OUtils::TextureInterface>(outputHolder(), OUtils::EXT_TEXTURE);
    }
    OUtils::PluginBase* outputHolder() const { return transparencyOutputOf(node); }
    AColor transparency()
    {
        AColor result = kUnwrittenColor;
        EXPECT_EQ(transparencyOutput()->evalColor(&result, node.context), &result);
        return result;
    }
    AColor color()
    {
        ++node.context.sampleStamp;
        return node.color();
    }
    // What a frame logs.
    Messages loggedInAFrame()
    {
        RecordingRenderer renderer;
        node.life()->frameEnd(&renderer);
        node.life()->frameBegin(&renderer);
        return renderer.logger.messages;
    }

    CallLog log;
    TestColor base{"base", &log}, noUVWTransparency{"none", &log}, factor{"mult", &log},
        offset{"offset", &log};
    TestGenerator generator;
    TestNode node{descriptor("MayaProjectionTex")};
};

TEST_F(ProjectionTest, ProjectionWithNothingConnectedIsGrey)
{
    TestNode bare(descriptor("MayaProjectionTex"));
    EXPECT_SAME_COLOR(bare.color(), {0.5f, 0.5f, 0.5f, 1.0f});
}

TEST_F(ProjectionTest, ProjectionPassesItsBaseOnWithTheContextAlone)
{
    node.connect("base_texture", base);
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.75f});
    node.context.filtering = 1;
    EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.75f});
    EXPECT_EQ(log, (CallLog{"base.evalColor", "base.evalColor"}));
}

TEST_F(ProjectionTest, ProjectionWithoutCoordinatesDoesNotAskItsBase)
{
    TestColor noUVW({0.1f, 0.2f, 0.3f, 0.4f});
    generator.valid = 0;
    node.connect("base_texture", base);
    EXPECT_SAME_COLOR(color(), {0.5f, 0.5f, 0.5f, 1.0f});
    node.connect("nouvw_color", noUVW);
    EXPECT_SAME_COLOR(color(), {0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_TRUE(log.empty());
}

TEST_F(ProjectionTest, ProjectionWithoutWrapEndsBeyondOne)
{
    node.connect("base_texture", base);
    for (float coordinate : {1.5f, -1.5f}) {
        generator.sample.uvw = {coordinate, 0.0f, 0.0f, 0.0f};
        node.set("wrap", 1);
        EXPECT_SAME_COLOR(color(), {0.2f, 0.4f, 0.6f, 0.75f});
        node.set("wrap", 0);
        EXPECT_SAME_COLOR(color(), {0.5f, 0.5f, 0.5f, 1.0f});
    }
}

TEST_F(ProjectionTest, ProjectionWithoutBaseShowsItsNoUVWColorOrGrey)
{
    TestColor noUVW({0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_SAME_COLOR(color(), {0.5f, 0.5f, 0.5f, 1.0f});
    node.connect("nouvw_color", noUVW).set("invert", 1);
    // At valid coordinates it is a colour like any other, so it is inverted.
    EXPECT_SAME_COLOR(color(), {1.0f - 0.1f, 1.0f - 0.2f, 1.0f - 0.3f, 1.0f - 0.4f});
}

TEST_F(ProjectionTest, ProjectionWithoutBaseWarnsOnceAFrame)
{
    const Messages expected{
        {OUtils::LogLevel::Warning, "MayaProjectionTex slide is missing its base texture parameter !"}};
    EXPECT_EQ(loggedInAFrame(), expected);
    EXPECT_EQ(loggedInAFrame(), expected);
    node.connect("base_texture", base);
    EXPECT_TRUE(loggedInAFrame().empty());
}

TEST_F(ProjectionTest, ProjectionWithoutGeneratorWarnsOfThatFirst)
{
    generator.generates = false;
    const Messages messages = loggedInAFrame();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].second, "[CommonMappedTexture] No uvw generator specified. Plugin name 'slide'.\n");
    EXPECT_EQ(messages[1].second, "MayaProjectionTex slide is missing its base texture parameter !");
}

TEST_F(ProjectionTest, ProjectionTakesNoAlphaFromIntensityWhateverTheSceneSays)
{
    node.connect("base_texture", base);
    for (int mode : {0, 1, 2, 3}) {
        node.set("alpha_from_intensity", mode);
        EXPECT_SAME_BITS(color().a, 0.75f);
    }
}

TEST_F(ProjectionTest, ProjectionPassesNaNOn)
{
    base.value = {kNaN, 0.0f, 1.0f, kNaN};
    node.connect("base_texture", base);
    EXPECT_SAME_COLOR(color(), {kNaN, 0.0f, 1.0f, kNaN});
    EXPECT_SAME_COLOR(transparency(), {kNaN, kNaN, kNaN, 1.0f});
}

TEST_F(ProjectionTest, ProjectionBoundsAreThoseOfTheBase)
{
    base.lowerBound = {0.1f, 0.2f, 0.3f, 0.4f};
    base.upperBound = {1.1f, 1.2f, 1.3f, 1.4f};
    node.connect("base_texture", base);
    const ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, base.lowerBound);
    EXPECT_SAME_COLOR(bounds.upper, base.upperBound);
}

TEST_F(ProjectionTest, ProjectionBoundsWithoutBaseAreThoseOfItsNoUVWColorOrGrey)
{
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.5f, 0.5f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.5f, 0.5f, 1.0f});
    TestColor noUVW;
    noUVW.lowerBound = {0.1f, 0.2f, 0.3f, 0.4f};
    noUVW.upperBound = {1.1f, 1.2f, 1.3f, 1.4f};
    node.connect("nouvw_color", noUVW);
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, noUVW.lowerBound);
    EXPECT_SAME_COLOR(bounds.upper, noUVW.upperBound);
}

TEST_F(ProjectionTest, ProjectionGradientIsZero)
{
    node.connect("base_texture", base);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, AColor{});
}

TEST_F(ProjectionTest, ProjectionTransparencyWithoutCoordinatesIsWhiteOrWhatTheInputSays)
{
    generator.valid = 0;
    node.connect("base_texture", base).connect("transparency_mult", factor);
    node.connect("transparency_offset", offset);
    EXPECT_SAME_COLOR(transparency(), {1.0f, 1.0f, 1.0f, 1.0f});
    noUVWTransparency.value = {0.1f, 0.2f, 0.3f, 0.4f};
    node.connect("nouvw_transparency", noUVWTransparency);
    EXPECT_SAME_COLOR(transparency(), {0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_EQ(log, CallLog{"none.evalColor"});
}

TEST_F(ProjectionTest, ProjectionTransparencyIsOneLessAlphaThenGainThenOffset)
{
    node.connect("base_texture", base);
    EXPECT_SAME_COLOR(transparency(), {0.25f, 0.25f, 0.25f, 1.0f});
    factor.value = {2.0f, 4.0f, -8.0f, 9.0f};
    node.connect("transparency_mult", factor);
    EXPECT_SAME_COLOR(transparency(), {0.5f, 1.0f, -2.0f, 1.0f});
    offset.value = {0.5f, 1.0f, 2.0f, 9.0f};
    node.connect("transparency_offset", offset);
    EXPECT_SAME_COLOR(transparency(), {1.0f, 2.0f, 0.0f, 1.0f});
}

TEST_F(ProjectionTest, ProjectionTransparencyAtAlphaOneIsTheOffset)
{
    base.value.a = 1.0f;
    node.connect("base_texture", base);
    EXPECT_SAME_COLOR(transparency(), {0.0f, 0.0f, 0.0f, 1.0f});
    offset.value = {0.1f, 0.2f, 0.3f, 0.4f};
    node.connect("transparency_offset", offset);
    EXPECT_SAME_COLOR(transparency(), {0.1f, 0.2f, 0.3f, 1.0f});
}

TEST_F(ProjectionTest, ProjectionTransparencyKnowsNeitherMemoNorPostProcessing)
{
    TestFloat alphaFactor(4.0f);
    node.connect("base_texture", base).connect("alpha_mult", alphaFactor).set("invert", 1);
    EXPECT_SAME_BITS(node.color().a, 0.0f);
    EXPECT_SAME_COLOR(transparency(), {0.25f, 0.25f, 0.25f, 1.0f});
    base.value.a = 0.5f;
    EXPECT_SAME_BITS(node.color().a, 0.0f);
    EXPECT_SAME_COLOR(transparency(), {0.5f, 0.5f, 0.5f, 1.0f});
}

TEST_F(ProjectionTest, ProjectionTransparencyBoundsAndGradientAreThoseOfTheProjection)
{
    TestColor noUVW;
    base.lowerBound = {0.1f, 0.2f, 0.3f, 0.4f};
    base.upperBound = {1.1f, 1.2f, 1.3f, 1.4f};
    node.connect("base_texture", base).connect("nouvw_color", noUVW);
    ColorBounds bounds;
    transparencyOutput()->evalColorBounds(&bounds.lower, &bounds.upper);
    EXPECT_SAME_COLOR(bounds.lower, base.lowerBound);
    EXPECT_SAME_COLOR(bounds.upper, base.upperBound);

    // Without coordinates the projection's gradient is that of its colour there.
    generator.valid = 0;
    noUVW.gradient = {1.0f, -2.0f, 3.0f, 4.0f};
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(transparencyOutput()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {-1.0f, 2.0f, -3.0f, -4.0f});
}

TEST_F(ProjectionTest, ProjectionTransparencyAnswersItsTwoInterfaces)
{
    OUtils::PluginBase* output = outputHolder();
    EXPECT_NE(output, node.base());
    for (OUtils::InterfaceId id : {OUtils::EXT_TEXTURE, OUtils::EXT_RTTEX}) {
        ASSERT_NE(output->getInterface(id), nullptr);
        EXPECT_EQ(output->getInterface(id)->getInterfaceID(), id);
        EXPECT_EQ(output->getInterface(id)->getPlugin(), output);
    }
    EXPECT_EQ(output->getInterface(OUtils::EXT_TEXTURE_FLOAT), nullptr);
    EXPECT_EQ(output->getInterface(OUtils::EXT_OMBRIX_PLUGIN), nullptr);
}

TEST_F(ProjectionTest, ProjectionOfAConstantBaseWritesItsSourceAlone)
{
    base.lowerBound = base.upperBound = {0.5f, 0.25f, 0.125f, 1.0f};
    node.connect("base_texture", base).connect("transparency_mult", factor);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "base  theTag MaterialDescriptor\n");
    base.hasSource = false;
    node.connect("base_texture", base);
    EXPECT_EQ(sourceOf(node.rtTexture()).answer, 0);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "");
}

TEST_F(ProjectionTest, ProjectionOfAVaryingBaseWritesTheTypicalTransparency)
{
    // Different in alpha alone. ((0 + 1) (0 + 1) 0.5 + 0 + 0) 0.5 = 0.25.
    base.upperBound = {0.0f, 0.0f, 0.0f, 1.0f};
    node.connect("base_texture", base);
    WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "base  theTag MaterialDescriptor\n"
                            "color 0.250000 0.250000 0.250000 0.250000\n"
                            "tex_projection_wrap\n");
    node.set("wrap", 0);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "base  theTag MaterialDescriptor\n"
                                               "color 0.250000 0.250000 0.250000 0.250000\n");
}

TEST_F(ProjectionTest, ProjectionWritesTheTypicalTransparencyOfItsInputs)
{
    base.upperBound = {1.0f, 0.0f, 0.0f, 0.0f};
    noUVWTransparency.lowerBound = {0.5f, 0.0f, 1.0f, 0.0f};
    noUVWTransparency.upperBound = {1.0f, 0.5f, 1.0f, 0.0f};
    factor.lowerBound = {1.0f, 0.0f, 0.0f, 0.0f};
    factor.upperBound = {1.0f, 2.0f, 0.0f, 0.0f};
    offset.lowerBound = {0.25f, -0.5f, 0.0f, 0.0f};
    offset.upperBound = {0.75f, 1.0f, 3.0f, 0.0f};
    node.connect("base_texture", base).connect("nouvw_transparency", noUVWTransparency);
    node.connect("transparency_mult", factor).connect("transparency_offset", offset).set("wrap", 0);
    // Red (1.5 x 2 x 0.5 + 1) 0.5 = 1.25, green (0.5 x 2 x 0.5 + 0.5) 0.5 = 0.5, blue (0 + 3) 0.5 = 1.5;
    // a third of 3.25.
    EXPECT_EQ(sourceOf(node.rtTexture()).text, "base  theTag MaterialDescriptor\n"
                                               "color 1.250000 0.500000 1.500000 1.083333\n");
}

TEST_F(ProjectionTest, ProjectionWithoutBaseWritesItsConstantAndRefuses)
{
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "color 0.250000 0.250000 0.250000 0.250000\n"
                            "tex_projection_wrap\n");
}

TEST_F(ProjectionTest, ProjectionRefusesOtherDescriptors)
{
    node.connect("base_texture", base);
    auto* output = interfaceOf<OUtils::RTTexInterface>(outputHolder(), OUtils::EXT_RTTEX);
    for (OUtils::RTTexInterface* texture : {node.rtTexture(), output})
        for (const char* other : {"", "materialdescriptor", "MaterialDescriptor2"}) {
            const WrittenSource written = sourceOf(texture, other);
            EXPECT_EQ(written.answer, 0);
            EXPECT_EQ(written.text, "");
        }
    EXPECT_TRUE(log.empty());
}

TEST_F(ProjectionTest, ProjectionTransparencyWritesItsMarkers)
{
    base.lowerBound = base.upperBound;
    node.connect("base_texture", base);
    auto* output = interfaceOf<OUtils::RTTexInterface>(outputHolder(), OUtils::EXT_RTTEX);
    WrittenSource written = sourceOf(output);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "base   MaterialDescriptor\n"
                            "subtex\n"
                            "bitmap -974\n"
                            "subtex\n"
                            "bitmap -999\n");
    // The answer of the projection does not matter.
    TestNode bare(descriptor("MayaProjectionTex"));
    output = interfaceOf<OUtils::RTTexInterface>(transparencyOutputOf(bare), OUtils::EXT_RTTEX);
    written = sourceOf(output);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.250000 0.250000 0.250000 0.250000\n"
                            "tex_projection_wrap\n"
                            "subtex\n"
                            "bitmap -974\n"
                            "subtex\n"
                            "bitmap -999\n");
}

} // namespace
