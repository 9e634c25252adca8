// ColorToFloat and FloatsToColor: the ways between color textures and float textures.

#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

enum ColorChannel : int {
    kRed = 0,
    kGreen = 1,
    kBlue = 2,
    kAlpha = 3,
    kIntensity = 4,
    kLuminance = 5,
};

float channelOf(const AColor& color, int channel)
{
    switch (channel) {
    case kRed:
        return color.r;
    case kGreen:
        return color.g;
    case kBlue:
        return color.b;
    case kAlpha:
        return color.a;
    case kLuminance:
        return 0.3f * color.r + 0.59f * color.g + 0.11f * color.b;
    default:
        return (color.r + color.g + color.b) / 3.0f;
    }
}

class ColorToFloat final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    static constexpr Identity kIdentity{
        2019030108,
        "ColorToFloat",
        "Gives a channel, the mean or the luminance of a color texture [gpuSupport=(none)]",
        {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &ColorToFloat::input, noDefault, "The color; unset, 0");
        p("channel", &ColorToFloat::channel, kIntensity,
          "What of the color: a channel, the mean of red, green and blue (intensity), or 0.3 red + "
          "0.59 green + 0.11 blue (luminance)",
          "enum=(0:red; 1:green; 2:blue; 3:alpha; 4:intensity; 5:luminance)");
    }

    float evalFloat(const OmbrixContext& context) override { return channelOf(input(context), channel); }
    void evalFloatBounds(float* lower, float* upper) override
    {
        AColor lowest, highest;
        if (input) input->evalColorBounds(&lowest, &highest);
        *lower = channelOf(lowest, channel);
        *upper = channelOf(highest, channel);
    }
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = input.gradient(context);
        return result;
    }

private:
    ColorInput input;
    int channel = 0;
};

class FloatsToColor final : public OmbrixTexture {
public:
    using OmbrixTexture::OmbrixTexture;

    static constexpr Identity kIdentity{2019030109,
                                        "FloatsToColor",
                                        "Puts a color together from four float textures [gpuSupport=(none)]",
                                        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("red", &FloatsToColor::red, 0.0f);
        p("green", &FloatsToColor::green, 0.0f);
        p("blue", &FloatsToColor::blue, 0.0f);
        p("alpha", &FloatsToColor::alpha, 1.0f);
    }

    // The inputs are asked in this order, all with the one context.
    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        *result = {red(context), green(context), blue(context), alpha(context)};
        return result;
    }
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = *upper = {red.unset, green.unset, blue.unset, alpha.unset};
        if (red) red->evalFloatBounds(&lower->r, &upper->r);
        if (green) green->evalFloatBounds(&lower->g, &upper->g);
        if (blue) blue->evalFloatBounds(&lower->b, &upper->b);
        if (alpha) alpha->evalFloatBounds(&lower->a, &upper->a);
    }

private:
    FloatInput red, green, blue, alpha;
};

BuiltinDesc<ColorToFloat> colorToFloatDesc;
BuiltinDesc<FloatsToColor> floatsToColorDesc;

} // namespace

} // namespace ombrix
