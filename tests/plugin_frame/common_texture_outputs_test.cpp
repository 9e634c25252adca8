// The outputs of CommonTexture: transparency, alpha and intensity of the texture that they live in.

#include "plugin_frame/probe_textures.h"

namespace {

using namespace support;
using namespace OUtils;

template <class Interface>
Interface* output(LivingRaw& living, const char* name)
{
    return dynamic_cast<Interface*>(ombrix::boundOutput(*living.texture.paramList, name));
}

TEST(CommonTextureOutputs, ColorIsTheTextureItself)
{
    LivingRaw living(0);
    EXPECT_EQ(ombrix::boundOutput(*living.texture.paramList, "color"),
              static_cast<TextureInterface*>(&living.texture));
}

TEST(CommonTextureOutputs, AnswerTheirInterfaces)
{
    LivingRaw living(0);
    const struct {
        const char* name;
        InterfaceId id;
        InterfaceId absent;
    } outputs[] = {{"out_transparency", EXT_TEXTURE, EXT_TEXTURE_FLOAT},
                   {"out_alpha", EXT_TEXTURE_FLOAT, EXT_TEXTURE},
                   {"out_intensity", EXT_TEXTURE_FLOAT, EXT_TEXTURE}};
    for (const auto& row : outputs) {
        PluginInterface* bound = ombrix::boundOutput(*living.texture.paramList, row.name);
        ASSERT_NE(bound, nullptr) << row.name;
        EXPECT_EQ(bound->getInterfaceID(), row.id) << row.name;
        PluginBase* holder = bound->getPlugin();
        ASSERT_NE(holder, nullptr) << row.name;
        EXPECT_NE(holder, &living.texture) << row.name;
        EXPECT_EQ(holder->getInterface(row.id), bound) << row.name;
        EXPECT_NE(holder->getInterface(EXT_RTTEX), nullptr) << row.name;
        EXPECT_EQ(holder->getInterface(row.absent), nullptr) << row.name;
        EXPECT_EQ(holder->getInterface(EXT_OMBRIX_PLUGIN), nullptr) << row.name;
        // What is added at run time is found as well.
        nezaiva::NoiseInterface added;
        holder->addInterface(&added, 0);
        EXPECT_EQ(holder->getInterface(EXT_COMMON_TEXTURE_NOISE), &added) << row.name;
        holder->removeInterface(&added);
    }
}

TEST(CommonTextureOutputs, TransparencyIsOneMinusAlphaAsOpaqueGrey)
{
    LivingRaw living(0);
    auto* transparency = output<TextureInterface>(living, "out_transparency");
    AColor result = kUnwrittenColor;
    EXPECT_EQ(transparency->evalColor(&result, living.context), &result);
    EXPECT_SAME_COLOR(result, {0.875f, 0.875f, 0.875f, 1.0f});
    living.texture.raw.a = 3.0f;
    ++living.context.sampleStamp;
    transparency->evalColor(&result, living.context);
    EXPECT_SAME_COLOR(result, {-2.0f, -2.0f, -2.0f, 1.0f});
    transparency->evalColorGradient(&result, living.context);
    EXPECT_SAME_COLOR(result, {-1.0f, -2.0f, -3.0f, -4.0f});
}

TEST(CommonTextureOutputs, TransparencyHasTheBoundsOfTheColor)
{
    LivingRaw living(0);
    ColorBounds bounds;
    output<TextureInterface>(living, "out_transparency")->evalColorBounds(&bounds.lower, &bounds.upper);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.25f, 0.5f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {0.5f, 0.75f, 1.0f, 0.75f});
}

TEST(CommonTextureOutputs, AlphaIsTheFinishedAlpha)
{
    LivingRaw living(0);
    living.set("alpha_mult", 4.0f);
    auto* alpha = output<TextureFloatInterface>(living, "out_alpha");
    EXPECT_SAME_BITS(alpha->evalFloat(living.context), 0.5f);
    FloatBounds bounds;
    alpha->evalFloatBounds(&bounds.lower, &bounds.upper);
    EXPECT_SAME_BITS(bounds.lower, 1.0f);
    EXPECT_SAME_BITS(bounds.upper, 3.0f);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(alpha->evalFloatGradient(&gradient, living.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST(CommonTextureOutputs, IntensityIsTheMeanOfTheFinishedColor)
{
    LivingRaw living(0);
    living.set("color_mult", AColor{2.0f, 2.0f, 2.0f, 1.0f});
    auto* intensity = output<TextureFloatInterface>(living, "out_intensity");
    EXPECT_SAME_BITS(intensity->evalFloat(living.context), 1.0f);
    FloatBounds bounds;
    intensity->evalFloatBounds(&bounds.lower, &bounds.upper);
    EXPECT_SAME_BITS(bounds.lower, 0.5f);
    EXPECT_SAME_BITS(bounds.upper, 1.5f);
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(intensity->evalFloatGradient(&gradient, living.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {1.0f, 2.0f, 3.0f, 4.0f});
}

// A parent that writes its own text, and one that leaves its bounds unwritten.
class SilentBounds final : public TestColor {
public:
    using TestColor::TestColor;
    void evalColorBounds(AColor*, AColor*) override {}
};

TEST(CommonTextureOutputs, BoundsThatAreLeftUnwrittenRunFromZeroToOne)
{
    SilentBounds parent;
    nezaiva::CommonAlphaTex alpha;
    nezaiva::CommonIntensTex intensity;
    alpha.parent = &parent;
    intensity.parent = &parent;
    FloatBounds bounds;
    alpha.evalFloatBounds(&bounds.lower, &bounds.upper);
    EXPECT_SAME_BITS(bounds.lower, 0.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
    intensity.evalFloatBounds(&bounds.lower, &bounds.upper);
    EXPECT_SAME_BITS(bounds.lower, 0.0f);
    EXPECT_SAME_BITS(bounds.upper, 1.0f);
}

TEST(CommonTextureOutputs, WriteTheTextureBehindTheirOperators)
{
    TestColor parent;
    parent.label = "parent";
    nezaiva::CommonTransparencyTex transparency;
    nezaiva::CommonAlphaTex alpha;
    nezaiva::CommonIntensTex intensity;
    transparency.parent = &parent;
    alpha.parent = &parent;
    intensity.parent = &parent;

    WrittenSource written = sourceOf(&transparency);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text,
              "parent theName theTag MaterialDescriptor\nsubtex\nbitmap -974\nsubtex\n"
              "1.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
              "0.000000,0.000000\nbitmap -999\n");
    written = sourceOf(&alpha);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "parent theName theTag MaterialDescriptor\nsubtex\nbitmap -974\n");
    written = sourceOf(&intensity);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "parent theName theTag MaterialDescriptor\nintens2AColor\n");
}

TEST(CommonTextureOutputs, WriteWhatTheyCanForAParentWithoutText)
{
    TestColor parent;
    parent.hasSource = false;
    nezaiva::CommonAlphaTex alpha;
    nezaiva::CommonIntensTex intensity;
    alpha.parent = &parent;
    intensity.parent = &parent;
    EXPECT_EQ(sourceOf(&alpha).text, "subtex\nbitmap -974\n");
    EXPECT_EQ(sourceOf(&intensity).text, "intens2AColor\n");
    alpha.parent = nullptr;
    intensity.parent = nullptr;
    WrittenSource written = sourceOf(&alpha);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "color 0.0 0.0 0.0 1.0\nsubtex\nbitmap -974\n");
    written = sourceOf(&intensity);
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "");
}

TEST(CommonTextureOutputs, RefuseOtherDescriptors)
{
    TestColor parent;
    nezaiva::CommonTransparencyTex transparency;
    nezaiva::CommonAlphaTex alpha;
    nezaiva::CommonIntensTex intensity;
    transparency.parent = &parent;
    for (RTTexInterface* texture :
         {static_cast<RTTexInterface*>(&transparency), static_cast<RTTexInterface*>(&alpha),
          static_cast<RTTexInterface*>(&intensity)}) {
        const WrittenSource written = sourceOf(texture, "materialDescriptor");
        EXPECT_EQ(written.answer, 0);
        EXPECT_EQ(written.text, "");
    }
}

} // namespace
