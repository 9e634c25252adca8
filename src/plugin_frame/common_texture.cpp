#include "plugin_frame/common_texture.h"

namespace nezaiva {

namespace {

// A raw alpha below this says that the texture has no value here.
constexpr float kNoValueAlpha = -5e+17f;

FloatRange spanOf(float a, float b, float c, float d)
{
    FloatRange span{a, a};
    for (const float value : {b, c, d}) {
        if (value < span.lower) span.lower = value;
        if (value > span.upper) span.upper = value;
    }
    return span;
}

FloatRange product(FloatRange a, FloatRange b)
{
    return spanOf(a.lower * b.lower, a.lower * b.upper, a.upper * b.lower, a.upper * b.upper);
}

FloatRange sum(FloatRange a, FloatRange b)
{
    return spanOf(a.lower + b.lower, a.lower + b.upper, a.upper + b.lower, a.upper + b.upper);
}

using RangeOperation = FloatRange (*)(FloatRange, FloatRange);

void combineColor(const ColorInput& input, RangeOperation operation, AColor& lower, AColor& upper)
{
    const ColorRange range = input.bounds();
    for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b}) {
        const FloatRange result =
            operation({lower.*channel, upper.*channel}, {range.lower.*channel, range.upper.*channel});
        lower.*channel = result.lower;
        upper.*channel = result.upper;
    }
}

void combineAlpha(const FloatInput& input, RangeOperation operation, AColor& lower, AColor& upper)
{
    const FloatRange range = input.bounds();
    const FloatRange result = operation({lower.a, upper.a}, {range.lower, range.upper});
    lower.a = result.lower;
    upper.a = result.upper;
}

AColor negated(const AColor& color)
{
    return {-color.r, -color.g, -color.b, -color.a};
}

} // namespace

CommonTexture::CommonTexture(OmbrixPluginDesc* desc, std::uint32_t flags)
    : OmbrixTexture(desc), baseFlags(flags)
{
    transparencyOutput.parent = this;
    alphaOutput.parent = this;
    intensityOutput.parent = this;
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

bool CommonTexture::isAdjusted() const
{
    return color_mult || color_offset || alpha_mult || alpha_offset || alpha_from_intensity || invert;
}

ColorGains CommonTexture::gainsAt(const OmbrixContext& context, GainValues& values) const
{
    ColorGains gains;
    if (color_mult) gains.mult = color_mult.evalColor(&values.mult, context);
    if (color_offset) gains.offset = color_offset.evalColor(&values.offset, context);
    if (alpha_mult) gains.alphaMult = &(values.alphaMult = alpha_mult(context));
    if (alpha_offset) gains.alphaOffset = &(values.alphaOffset = alpha_offset(context));
    return gains;
}

AColor CommonTexture::finished(const AColor& color, const OmbrixContext& context) const
{
    if (!isAdjusted()) return color;
    GainValues values;
    const ColorGains gains = gainsAt(context, values);
    return postProcessed(color, {compatibility_with, alpha_from_intensity, invert != 0, invert_alpha != 0},
                         gains);
}

AColor* CommonTexture::evalColor(AColor* result, const OmbrixContext& context)
{
    TexCacheEntry* entry = memo.entryFor(context, noTexCache);
    if (entry && entry->sampleStamp == context.sampleStamp) {
        *result = entry->value;
        return result;
    }
    bool valid = true;
    evalRawColor(result, context, &valid);
    if (!valid) {
        *result = nouvw_color(context);
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
    *result = finished(*result, context);
    if (entry) {
        entry->sampleStamp = context.sampleStamp;
        entry->value = *result;
    }
    return result;
}

void CommonTexture::evalColorBounds(AColor* lower, AColor* upper)
{
    getRawBounds(lower, upper);
    if (invert) {
        *lower = inverted(*lower, invert_alpha != 0);
        *upper = inverted(*upper, invert_alpha != 0);
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
    if (color_mult) combineColor(color_mult, product, *lower, *upper);
    if (color_offset) combineColor(color_offset, sum, *lower, *upper);
    if (alpha_mult) combineAlpha(alpha_mult, product, *lower, *upper);
    if (alpha_offset) combineAlpha(alpha_offset, sum, *lower, *upper);
}

AColor* CommonTexture::evalColorGradient(AColor* result, const OmbrixContext& context)
{
    bool valid = true;
    AColor gradient;
    evalRawGradient(&gradient, context, &valid);
    if (!valid) {
        *result = nouvw_color.gradient(context);
        return result;
    }
    if (compatibility_with == kCompatibleWithMaya) {
        if (invert) gradient = negated(gradient);
        if (color_mult) {
            bool colorValid = true;
            AColor color;
            evalRawColor(&color, context, &colorValid);
            const float c = intensity(color);
            const float m = intensity(color_mult(context));
            const AColor multGradient = color_mult.gradient(context);
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
    AColor own;
    *result = memo.getOr(context, noTexCache, own, [&] {
        AColor color;
        evalColorUncached(&color, context);
        return color;
    });
    return result;
}

} // namespace nezaiva
