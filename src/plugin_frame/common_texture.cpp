#include "plugin_frame/common_texture.h"

namespace nezaiva {

namespace {

// A raw alpha below this says that the texture has no value here.
constexpr float kNoValueAlpha = -5e+17f;

// Declared defaults. None of them is read while evaluating: an unset input has no effect.
constexpr AColor kDefaultColorMult{1.0f, 1.0f, 1.0f, 1.0f};
constexpr AColor kDefaultColorOffset{0.0f, 0.0f, 0.0f, 0.0f};

float inverted(float channel)
{
    const float value = 1.0f - channel;
    return value > 0.0f ? value : 0.0f;
}

struct Interval {
    float lower, upper;
};

Interval spanOf(float a, float b, float c, float d)
{
    Interval span{a, a};
    for (const float value : {b, c, d}) {
        if (value < span.lower) span.lower = value;
        if (value > span.upper) span.upper = value;
    }
    return span;
}

Interval product(Interval a, Interval b)
{
    return spanOf(a.lower * b.lower, a.lower * b.upper, a.upper * b.lower, a.upper * b.upper);
}

Interval sum(Interval a, Interval b)
{
    return spanOf(a.lower + b.lower, a.lower + b.upper, a.upper + b.lower, a.upper + b.upper);
}

using IntervalOperation = Interval (*)(Interval, Interval);

void combineColor(TextureInterface& input, IntervalOperation operation, AColor& lower, AColor& upper)
{
    // An input that leaves its bounds unwritten counts as anything from 0 to 1.
    AColor inputLower{0.0f, 0.0f, 0.0f, 0.0f};
    AColor inputUpper{1.0f, 1.0f, 1.0f, 1.0f};
    input.evalColorBounds(&inputLower, &inputUpper);
    for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b}) {
        const Interval result =
            operation({lower.*channel, upper.*channel}, {inputLower.*channel, inputUpper.*channel});
        lower.*channel = result.lower;
        upper.*channel = result.upper;
    }
}

void combineAlpha(TextureFloatInterface& input, IntervalOperation operation, AColor& lower, AColor& upper)
{
    float inputLower = 0.0f, inputUpper = 1.0f;
    input.evalFloatBounds(&inputLower, &inputUpper);
    const Interval result = operation({lower.a, upper.a}, {inputLower, inputUpper});
    lower.a = result.lower;
    upper.a = result.upper;
}

AColor negated(const AColor& color)
{
    return {-color.r, -color.g, -color.b, -color.a};
}

} // namespace

CommonTextureParams::CommonTextureParams()
{
    compatibility_with = addParamInt(
        "compatibility_with", 0, -1,
        "This is used to differentiate between textures exported from different applications. The value "
        "means : 0 - 3ds Max (this is also the default), 1 - Maya, ...",
        "enum=(0:Max;1:Maya); startRollout=(Common), gpuSupport=(full)");
    alpha_from_intensity = addParamInt(
        "alpha_from_intensity", 0, -1,
        "If 2 - the alpha is forced to 1.0f; 1 - the resulting alpha is the color intensity (if "
        "compatibility_with is 0) or the color luminance (if compatibility_with is 1); 0 - the alpha is "
        "taken from the bitmap alpha",
        "enum=(0:Bitmap alpha;1:Color intensity/luminance;2:Force opaque), gpuSupport=(full)");
    invert = addParamBool("invert", false, -1,
                          "If true, the resulting texture color will be inverted (complementary)",
                          "gpuSupport=(full)");
    invert_alpha = addParamBool("invert_alpha", true, -1,
                                "If true and invert is on, the resulting texture alpha will be inverted too. "
                                "If false, just the color will be inverted",
                                "enable=(::invert=1), gpuSupport=(none)");
    color_mult = addParamTexture("color_mult", kDefaultColorMult, -1, "A multiplier for the texture color",
                                 "gpuSupport=(full)");
    color_offset = addParamTexture("color_offset", kDefaultColorOffset, -1,
                                   "An additional offset for the texture color", "gpuSupport=(full)");
    alpha_mult = addParamTextureFloat("alpha_mult", 1.0f, -1, "A multiplier for the texture alpha",
                                      "gpuSupport=(full)");
    alpha_offset = addParamTextureFloat("alpha_offset", 0.0f, -1,
                                        "An additional offset for the texture alpha", "gpuSupport=(full)");
    nouvw_color =
        addParamTexture("nouvw_color", kNoUVWColor, -1, "The color when there are no valid uvw coordinates",
                        "displayName=(No UVs Color), gpuSupport=(partial)");
    addOutputParamTexture("color", "The resulting color", "gpuSupport=(none)");
    addOutputParamTexture("out_transparency", "The resulting transparency", "gpuSupport=(none)");
    addOutputParamTextureFloat("out_alpha", "The resulting alpha", "gpuSupport=(none)");
    addOutputParamTextureFloat("out_intensity", "The resulting intensity",
                               "startRollout=(<EndRollout>), gpuSupport=(none)");
}

CommonTexture::CommonTexture(OmbrixPluginDesc* desc, std::uint32_t flags)
    : OmbrixTexture(desc), baseFlags(flags)
{
    transparencyOutput.parent = this;
    alphaOutput.parent = this;
    intensityOutput.parent = this;

    const auto& params = static_cast<const CommonTextureParams&>(*desc->parameterDesc);
    paramList->setParamCacheByIndex(params.compatibility_with, &compatibility_with, 0);
    paramList->setParamCacheByIndex(params.alpha_from_intensity, &alpha_from_intensity, 0);
    paramList->setParamCacheByIndex(params.invert, &invert, 0);
    paramList->setParamCacheByIndex(params.invert_alpha, &invert_alpha, 0);
    paramList->setParamCacheByIndex(params.color_mult, &color_mult, 0);
    paramList->setParamCacheByIndex(params.color_offset, &color_offset, 0);
    paramList->setParamCacheByIndex(params.alpha_mult, &alpha_mult, 0);
    paramList->setParamCacheByIndex(params.alpha_offset, &alpha_offset, 0);
    paramList->setParamCacheByIndex(params.nouvw_color, &nouvw_color, 0);
    paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    paramList->setOutputParamCache("out_transparency", static_cast<TextureInterface*>(&transparencyOutput));
    paramList->setOutputParamCache("out_alpha", static_cast<TextureFloatInterface*>(&alphaOutput));
    paramList->setOutputParamCache("out_intensity", static_cast<TextureFloatInterface*>(&intensityOutput));
}

void CommonTexture::renderBegin(OmbrixRenderer* renderer)
{
    OmbrixTexture::renderBegin(renderer);
    memo.build(renderer->getThreadCount());
    sharedNoise = (baseFlags & kFetchesNoise) ? acquireSharedNoise(*renderer) : nullptr;
}

void CommonTexture::renderEnd(OmbrixRenderer* renderer)
{
    memo.clear();
    releaseSharedNoise(sharedNoise, *renderer);
    sharedNoise = nullptr;
    OmbrixTexture::renderEnd(renderer);
}

void CommonTexture::frameBegin(OmbrixRenderer* renderer)
{
    OmbrixTexture::frameBegin(renderer);
    if (memo.empty()) memo.build(renderer->getThreadCount());
    memo.reset();
    frameTime = renderer->getFrameData().time;
}

AColor CommonTexture::noUVWColor(const OmbrixContext& context) const
{
    if (!nouvw_color) return kNoUVWColor;
    AColor color;
    return *nouvw_color->evalColor(&color, context);
}

void CommonTexture::invertChannels(AColor& color) const
{
    if (!invert) return;
    color.r = inverted(color.r);
    color.g = inverted(color.g);
    color.b = inverted(color.b);
    if (invert_alpha) color.a = inverted(color.a);
}

bool CommonTexture::isAdjusted() const
{
    return color_mult || color_offset || alpha_mult || alpha_offset || alpha_from_intensity || invert;
}

// The two applications differ in the order: Maya's textures invert and take their alpha before gain and
// offset, those of Max after them.
void CommonTexture::postProcess(AColor& color, const OmbrixContext& context) const
{
    if (compatibility_with == kCompatibleWithMaya) {
        invertChannels(color);
        if (alpha_from_intensity == kAlphaFromIntensity) color.a = luminance(color);
        if (alpha_from_intensity == kAlphaOpaque) color.a = 1.0f;
    }
    if (color_mult) {
        AColor mult;
        color_mult->evalColor(&mult, context);
        color.r *= mult.r;
        color.g *= mult.g;
        color.b *= mult.b;
    }
    if (color_offset) {
        AColor offset;
        color_offset->evalColor(&offset, context);
        color.r += offset.r;
        color.g += offset.g;
        color.b += offset.b;
    }
    if (alpha_mult) color.a *= alpha_mult->evalFloat(context);
    if (alpha_offset) color.a += alpha_offset->evalFloat(context);
    if (compatibility_with == kCompatibleWithMax) {
        invertChannels(color);
        if (alpha_from_intensity == kAlphaFromIntensity) color.a = intensity(color);
        if (alpha_from_intensity == kAlphaOpaque) color.a = 1.0f;
    }
}

AColor* CommonTexture::evalColor(AColor* result, const OmbrixContext& context)
{
    TexCacheEntry* entry = memo.entryFor(context, noTexCache);
    if (entry && entry->sampleStamp == context.sampleStamp) {
        *result = entry->color;
        return result;
    }
    bool valid = true;
    evalRawColor(result, context, &valid);
    if (!valid) {
        *result = noUVWColor(context);
        // Kept as is: only a connected colour takes the luminance for its alpha.
        if (nouvw_color && compatibility_with == kCompatibleWithMaya) result->a = luminance(*result);
        return result;
    }
    if (result->a < kNoValueAlpha) {
        if (compatibility_with == kCompatibleWithMax) {
            *result = AColor{};
            return result;
        }
        result->a = 0.0f;
    }
    if (context.shadeFlags & rawTextureLookup) {
        if (invert) *result = {-result->r, -result->g, -result->b, result->a};
        return result;
    }
    if (isAdjusted()) postProcess(*result, context);
    if (entry) {
        entry->sampleStamp = context.sampleStamp;
        entry->color = *result;
    }
    return result;
}

void CommonTexture::evalColorBounds(AColor* lower, AColor* upper)
{
    getRawBounds(lower, upper);
    if (invert) {
        invertChannels(*lower);
        invertChannels(*upper);
        for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b, &AColor::a}) {
            const float a = lower->*channel;
            const float b = upper->*channel;
            lower->*channel = b < a ? b : a;
            upper->*channel = b > a ? b : a;
        }
    }
    // Kept as is: the mean, whatever compatibility_with says.
    if (alpha_from_intensity == kAlphaFromIntensity) {
        lower->a = intensity(*lower);
        upper->a = intensity(*upper);
    }
    if (alpha_from_intensity == kAlphaOpaque) lower->a = upper->a = 1.0f;
    if (color_mult) combineColor(*color_mult, product, *lower, *upper);
    if (color_offset) combineColor(*color_offset, sum, *lower, *upper);
    if (alpha_mult) combineAlpha(*alpha_mult, product, *lower, *upper);
    if (alpha_offset) combineAlpha(*alpha_offset, sum, *lower, *upper);
}

AColor* CommonTexture::evalColorGradient(AColor* result, const OmbrixContext& context)
{
    bool valid = true;
    AColor gradient;
    evalRawGradient(&gradient, context, &valid);
    if (!valid) {
        *result = AColor{};
        if (nouvw_color) nouvw_color->evalColorGradient(result, context);
        return result;
    }
    if (compatibility_with == kCompatibleWithMaya) {
        if (invert) gradient = negated(gradient);
        if (color_mult) {
            bool colorValid = true;
            AColor color, mult, multGradient;
            evalRawColor(&color, context, &colorValid);
            color_mult->evalColor(&mult, context);
            color_mult->evalColorGradient(&multGradient, context);
            const float c = intensity(color);
            const float m = intensity(mult);
            gradient = {c * multGradient.r + m * gradient.r, c * multGradient.g + m * gradient.g,
                        c * multGradient.b + m * gradient.b, c * multGradient.a + m * gradient.a};
        }
    } else if (compatibility_with == kCompatibleWithMax && invert) {
        gradient = negated(gradient);
    }
    *result = gradient;
    return result;
}

void OmbrixCachedTexture::renderBegin(OmbrixRenderer* renderer)
{
    OmbrixTexture::renderBegin(renderer);
    memo.build(renderer->getThreadCount());
}

void OmbrixCachedTexture::renderEnd(OmbrixRenderer* renderer)
{
    memo.clear();
    OmbrixTexture::renderEnd(renderer);
}

void OmbrixCachedTexture::frameBegin(OmbrixRenderer* renderer)
{
    OmbrixTexture::frameBegin(renderer);
    if (memo.empty()) memo.build(renderer->getThreadCount());
    memo.reset();
}

AColor* OmbrixCachedTexture::evalColor(AColor* result, const OmbrixContext& context)
{
    TexCacheEntry* entry = memo.entryFor(context, noTexCache);
    if (entry && entry->sampleStamp == context.sampleStamp) {
        *result = entry->color;
        return result;
    }
    evalColorUncached(result, context);
    if (entry) {
        entry->sampleStamp = context.sampleStamp;
        entry->color = *result;
    }
    return result;
}

} // namespace nezaiva
