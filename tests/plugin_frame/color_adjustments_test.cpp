// The GPU text that closes the source of a mapped texture, byte for byte.

#include "plugin_frame/probe_textures.h"

namespace {

using namespace support;
using OUtils::AColor;
using OUtils::Color;

class Adjustments : public LivingRaw {
public:
    Adjustments() : LivingRaw(0) {}
    std::string text()
    {
        TextSink sink;
        NoData data;
        nezaiva::SourceText source("name", "tag", "MaterialDescriptor", sink, data);
        EXPECT_EQ(texture.writeColorAdjustments(source), 1);
        return sink.text;
    }
};

const std::string kGrey = "color 0.500000 0.500000 0.500000 1.000000\n";

std::string gain(const char* label, int operation)
{
    return "subtex\n" + std::string(label) + "   MaterialDescriptor\nsubtex\nbitmap " +
           std::to_string(operation) + "\n";
}

TEST(ColorAdjustments, DefaultsInvertTheAlphaFlagAlone)
{
    Adjustments adjustments; // invert_alpha is on by default, and its line follows its own flag
    EXPECT_EQ(adjustments.text(), kGrey + "invert_alpha\n");
    adjustments.set("invert_alpha", false);
    EXPECT_EQ(adjustments.text(), kGrey);
}

TEST(ColorAdjustments, FallbackIsThePlainNoUVWColor)
{
    Adjustments adjustments;
    adjustments.set("invert_alpha", false);
    adjustments.set("nouvw_color", Color{0.25f, 0.5f, 0.75f});
    EXPECT_EQ(adjustments.text(), "color 0.250000 0.500000 0.750000 1.000000\n");
    adjustments.set("nouvw_color", AColor{0.25f, 0.5f, 0.75f, 0.125f});
    EXPECT_EQ(adjustments.text(), "color 0.250000 0.500000 0.750000 0.125000\n");
}

TEST(ColorAdjustments, FallbackIsTheMiddleOfATexturesBounds)
{
    TestColor texture;
    texture.lowerBound = {0.0f, 0.25f, 0.5f, 0.25f};
    texture.upperBound = {0.5f, 0.75f, 1.0f, 0.75f};
    Adjustments adjustments;
    adjustments.set("invert_alpha", false).connect("nouvw_color", texture);
    EXPECT_EQ(adjustments.text(), "color 0.250000 0.500000 0.750000 0.500000\n");
}

class SilentBounds final : public TestColor {
public:
    void evalColorBounds(AColor*, AColor*) override {}
};

TEST(ColorAdjustments, UnwrittenBoundsOfTheFallbackAreBlackToOpaqueWhite)
{
    SilentBounds texture;
    Adjustments adjustments;
    adjustments.set("invert_alpha", false).connect("nouvw_color", texture);
    EXPECT_EQ(adjustments.text(), kGrey);
}

TEST(ColorAdjustments, AnimatedFallbackIsReadAtTheFrame)
{
    Adjustments adjustments;
    adjustments.set("invert_alpha", false);
    write(adjustments.texture, "nouvw_color",
          ombrix::ParameterValue{{0.0, 4.0}, {{Color{0.0f, 0.0f, 0.0f}}, {Color{1.0f, 1.0f, 1.0f}}}});
    adjustments.renderer.frame.time = 3.0;
    adjustments.nextFrame();
    EXPECT_EQ(adjustments.text(), "color 0.750000 0.750000 0.750000 1.000000\n");
}

TEST(ColorAdjustments, InversionFollowsTheGainsInMaxAndPrecedesThemInMaya)
{
    TestColor mult, offset;
    TestFloat alphaMult, alphaOffset;
    mult.label = "colorMult";
    offset.label = "colorOffset";
    alphaMult.label = "alphaMult";
    alphaOffset.label = "alphaOffset";
    Adjustments adjustments;
    adjustments.connect("color_mult", mult).connect("color_offset", offset);
    adjustments.connect("alpha_mult", alphaMult).connect("alpha_offset", alphaOffset);
    adjustments.set("invert", true).set("alpha_from_intensity", 2);
    const std::string gains = gain("colorMult", -980) + gain("colorOffset", -979) + gain("alphaMult", -982) +
                              gain("alphaOffset", -981);
    const std::string flags = "invert_color\ninvert_alpha\nalpha_from_intensity 2\n";
    EXPECT_EQ(adjustments.text(), kGrey + gains + flags);
    adjustments.set("compatibility_with", 1);
    EXPECT_EQ(adjustments.text(), kGrey + "compatibility_with 1\n" + flags + gains);
    adjustments.set("compatibility_with", 2);
    EXPECT_EQ(adjustments.text(), kGrey + gains);
}

TEST(ColorAdjustments, FlagsAreWrittenEachByItself)
{
    Adjustments adjustments;
    adjustments.set("compatibility_with", 1);
    EXPECT_EQ(adjustments.text(), kGrey + "compatibility_with 1\ninvert_alpha\n");
    adjustments.set("invert", true).set("invert_alpha", false);
    EXPECT_EQ(adjustments.text(), kGrey + "compatibility_with 1\ninvert_color\n");
    adjustments.set("invert", false).set("alpha_from_intensity", -1);
    EXPECT_EQ(adjustments.text(), kGrey + "compatibility_with 1\nalpha_from_intensity -1\n");
    adjustments.set("alpha_from_intensity", 0);
    EXPECT_EQ(adjustments.text(), kGrey + "compatibility_with 1\n");
}

TEST(ColorAdjustments, PlainGainsHaveNoEffect)
{
    Adjustments adjustments;
    adjustments.set("invert_alpha", false);
    adjustments.set("color_mult", Color{2.0f, 2.0f, 2.0f})
        .set("color_offset", AColor{1.0f, 1.0f, 1.0f, 1.0f});
    adjustments.set("alpha_mult", 3.0f).set("alpha_offset", 0.5f);
    EXPECT_EQ(adjustments.text(), kGrey);
    adjustments.set("color_mult", Color{1.0f, 1.0f, 1.0f}).set("alpha_mult", 1.0f);
    EXPECT_EQ(adjustments.text(), kGrey);
}

TEST(ColorAdjustments, TexturesWithoutGpuFormHaveNoEffect)
{
    TestColor mult;
    TestFloat alphaOffset;
    mult.hasSource = false;
    alphaOffset.hasSource = false;
    Adjustments adjustments;
    adjustments.set("invert_alpha", false);
    adjustments.connect("color_mult", mult).connect("alpha_offset", alphaOffset);
    EXPECT_EQ(adjustments.text(), kGrey);
}

} // namespace
