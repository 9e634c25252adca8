// ColorToFloat and FloatsToColor: the ways between color textures and float textures.

#include "host/plugins/registry.h"

#include <ombrix/plugin.h>

namespace ombrix {

namespace {

using OUtils::AColor;
using OUtils::OmbrixContext;
using OUtils::TextureFloatInterface;

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

class ColorToFloatParams : public OUtils::OmbrixParameterListDesc {
public:
    ColorToFloatParams()
    {
        addParamTexture("input", -1, "The color; unset, 0", nullptr);
        addParamInt("channel", kIntensity, -1,
                    "What of the color: a channel, the mean of red, green and blue (intensity), or 0.3 red + "
                    "0.59 green + 0.11 blue (luminance)",
                    "enum=(0:red; 1:green; 2:blue; 3:alpha; 4:intensity; 5:luminance)");
    }
};

class ColorToFloat : public OUtils::OmbrixTextureFloat {
public:
    explicit ColorToFloat(OUtils::OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("input", &input);
        paramList->setParamCache("channel", &channel);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        AColor color;
        if (input) input->evalColor(&color, context);
        return channelOf(color, channel);
    }
    void evalFloatBounds(float* lower, float* upper) override
    {
        AColor lowest, highest;
        if (input) input->evalColorBounds(&lowest, &highest);
        *lower = channelOf(lowest, channel);
        *upper = channelOf(highest, channel);
    }
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = AColor();
        if (input) input->evalColorGradient(result, context);
        return result;
    }

private:
    OUtils::TextureInterface* input = nullptr;
    int channel = kIntensity;
};

class FloatsToColorParams : public OUtils::OmbrixParameterListDesc {
public:
    FloatsToColorParams()
    {
        addParamTextureFloat("red", 0.0f, -1, nullptr, nullptr);
        addParamTextureFloat("green", 0.0f, -1, nullptr, nullptr);
        addParamTextureFloat("blue", 0.0f, -1, nullptr, nullptr);
        addParamTextureFloat("alpha", 1.0f, -1, nullptr, nullptr);
    }
};

class FloatsToColor : public OUtils::OmbrixTexture {
public:
    explicit FloatsToColor(OUtils::OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("red", &red);
        paramList->setParamCache("green", &green);
        paramList->setParamCache("blue", &blue);
        paramList->setParamCache("alpha", &alpha);
    }

    // The inputs are asked in this order, all with the one context.
    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const float r = red ? red->evalFloat(context) : 0.0f;
        const float g = green ? green->evalFloat(context) : 0.0f;
        const float b = blue ? blue->evalFloat(context) : 0.0f;
        const float a = alpha ? alpha->evalFloat(context) : 1.0f;
        *result = {r, g, b, a};
        return result;
    }
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = *upper = {0.0f, 0.0f, 0.0f, 1.0f};
        if (red) red->evalFloatBounds(&lower->r, &upper->r);
        if (green) green->evalFloatBounds(&lower->g, &upper->g);
        if (blue) blue->evalFloatBounds(&lower->b, &upper->b);
        if (alpha) alpha->evalFloatBounds(&lower->a, &upper->a);
    }

private:
    TextureFloatInterface* red = nullptr;
    TextureFloatInterface* green = nullptr;
    TextureFloatInterface* blue = nullptr;
    TextureFloatInterface* alpha = nullptr;
};

BuiltinDesc<ColorToFloat, ColorToFloatParams>
    colorToFloatDesc({2019030108,
                      "ColorToFloat",
                      "Gives a channel, the mean or the luminance of a color texture [gpuSupport=(none)]",
                      {OUtils::EXT_TEXTURE_FLOAT}});
BuiltinDesc<FloatsToColor, FloatsToColorParams>
    floatsToColorDesc({2019030109,
                       "FloatsToColor",
                       "Puts a color together from four float textures [gpuSupport=(none)]",
                       {OUtils::EXT_TEXTURE}});

} // namespace

} // namespace ombrix
