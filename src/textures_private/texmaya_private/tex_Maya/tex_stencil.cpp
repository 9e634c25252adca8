// TexStencil: a texture over a background, through a mask or a colour key, with a soft edge.
//
// It finds its coordinates itself and has a post-processing of its own, which the background alone and the
// colour without coordinates do not go through.

#include "kernels/placement/stencil.h"
#include "plugin_frame/common_texture.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = 0;
constexpr int kLowestChannel = -1;

// Also what unset inputs read as.
constexpr AColor kDefaultImage{1.0f, 1.0f, 1.0f, 1.0f};
constexpr AColor kDefaultKey{1.0f, 1.0f, 1.0f, 1.0f};
constexpr AColor kDefaultBackground{0.0f, 0.0f, 0.0f, 1.0f};
constexpr float kDefaultMask = 0.0f;
constexpr float kDefaultRange = 0.0f;
constexpr float kDefaultEdgeBlend = 0.0f;

class TexStencilParams : public CommonTextureParams {
public:
    TexStencilParams()
    {
        addParamTexture("image", kDefaultImage, -1, "The texture that is used as a stencil", nullptr);
        addParamTextureFloat("mask", kDefaultMask, -1, "Represents the Stencil's transparency", nullptr);
        addParamBool("key_masking", false, -1,
                     "If true, selects the areas in the texture similar to or equal to the Color Key and "
                     "masks them out",
                     nullptr);
        addParamBool("positive_key", false, -1,
                     "If true, inverts the Chroma Key mask(only the colors specified in the Color Key and "
                     "HSV Range are displayed)",
                     nullptr);
        addParamTexture("color_key", kDefaultKey, -1, "The color to be masked in the texture", nullptr);
        addParamTextureFloat("hue_range", kDefaultRange, -1,
                             "The range of hues centered on the Color Key color which are also masked",
                             nullptr);
        addParamTextureFloat("sat_range", kDefaultRange, -1,
                             "The range of saturations centered on the Color Key color which are also masked",
                             nullptr);
        addParamTextureFloat("val_range", kDefaultRange, -1,
                             "The range of values centered on the Color Key color which are also masked",
                             nullptr);
        addParamTexture("default_color", kDefaultBackground, -1, "Represents the texture that is underneath",
                        nullptr);
        addParamFloat("edge_blend", kDefaultEdgeBlend, -1, "Controls the sharpness of the texture edges.",
                      nullptr);
        addParamPlugin("uvwgen", EXT_UVWGEN, -1, "UVWGen from which the uvw coordinates will be taken",
                       nullptr);
    }
};

float smaller(float bound, float limit)
{
    return limit < bound ? limit : bound;
}
AColor smaller(const AColor& bound, const AColor& limit)
{
    return {smaller(bound.r, limit.r), smaller(bound.g, limit.g), smaller(bound.b, limit.b),
            smaller(bound.a, limit.a)};
}

float inverted(float channel)
{
    const float value = 1.0f - channel;
    return value > 0.0f ? value : 0.0f;
}

AColor weighted(const AColor& color, float weight)
{
    return {color.r * weight, color.g * weight, color.b * weight, color.a * weight};
}
AColor sum(const AColor& a, const AColor& b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a + b.a};
}

class TexStencil final : public CommonTexture {
public:
    explicit TexStencil(OmbrixPluginDesc* desc) : CommonTexture(desc, kBaseFlags)
    {
        paramList->setParamCache("image", &image);
        paramList->setParamCache("mask", &mask);
        paramList->setParamCache("key_masking", &key_masking);
        paramList->setParamCache("positive_key", &positive_key);
        paramList->setParamCache("color_key", &color_key);
        paramList->setParamCache("hue_range", &hue_range);
        paramList->setParamCache("sat_range", &sat_range);
        paramList->setParamCache("val_range", &val_range);
        paramList->setParamCache("default_color", &default_color);
        paramList->setParamCache("edge_blend", &edge_blend);
        paramList->setParamCache("uvwgen", &uvwgen);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        CommonTexture::frameBegin(renderer);
        uvwgenInterface = uvwgen ? static_cast<UVWGenInterface*>(uvwgen->getInterface(EXT_UVWGEN)) : nullptr;
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        TexCacheEntry* entry = memo.entryFor(context, noTexCache);
        if (entry && entry->sampleStamp == context.sampleStamp) {
            *result = entry->color;
            return result;
        }
        // Kept as is: every path ends in the memo, a colour without coordinates and a raw look-up too.
        *result = stencilColor(context);
        if (entry) {
            entry->sampleStamp = context.sampleStamp;
            entry->color = *result;
        }
        return result;
    }

    // Kept as is: the background limits the upper bound too.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        CommonTexture::evalColorBounds(lower, upper);
        limitByBackground(lower, upper);
    }

    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = AColor{};
        UVWSample sample;
        if (!findCoordinates(context, sample)) return result;
        const float weight = weightAt(sample, context);
        if (weight < kStencilNothing) {
            *result = gradientOf(default_color, context);
            return result;
        }
        AColor gradient = gradientOf(image, context);
        if (weight < kStencilAll)
            gradient =
                sum(weighted(gradientOf(default_color, context), 1.0f - weight), weighted(gradient, weight));
        if (invert) gradient = {-gradient.r, -gradient.g, -gradient.b, -gradient.a};
        if (color_mult) {
            // Kept as is: the colour of the stencil, where it is blended with the background too.
            const float color = intensity(colorOr(image, kDefaultImage, context));
            const float factor = intensity(colorOr(color_mult, AColor{}, context));
            gradient = sum(weighted(gradient, factor), weighted(gradientOf(color_mult, context), color));
        }
        *result = gradient;
        return result;
    }

    // Nothing is raw here: evalColor does all the work.
    AColor* evalRawColor(AColor* result, const OmbrixContext& /*context*/, bool* /*valid*/) override
    {
        *result = {0.0f, 0.0f, 0.0f, 1.0f};
        return result;
    }
    void getRawBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange range = rangeOr(image, {kDefaultImage, kDefaultImage});
        *lower = range.lower;
        *upper = range.upper;
        limitByBackground(lower, upper);
    }
    AColor* evalRawGradient(AColor* result, const OmbrixContext& /*context*/, bool* /*valid*/) override
    {
        *result = AColor{};
        return result;
    }

private:
    static AColor gradientOf(TextureInterface* input, const OmbrixContext& context)
    {
        AColor gradient;
        if (input) input->evalColorGradient(&gradient, context);
        return gradient;
    }

    void limitByBackground(AColor* lower, AColor* upper) const
    {
        const ColorRange background = rangeOr(default_color, {kDefaultBackground, kDefaultBackground});
        *lower = smaller(*lower, background.lower);
        *upper = smaller(*upper, background.upper);
    }

    // Kept as is: what a surface answers counts, also when it refuses.
    bool findCoordinates(const OmbrixContext& context, UVWSample& sample) const
    {
        if (uvwgenInterface) return uvwgenInterface->evalUVW(context, &sample) != 0;
        auto* surface =
            context.surfaceObject
                ? static_cast<MappedSurface*>(context.surfaceObject->getInterface(EXT_MAPPED_SURFACE))
                : nullptr;
        if (!surface) return false;
        surface->getLocalUVW(context, kLowestChannel, &sample);
        return true;
    }

    // How much of the stencil shows: its edge, less the key or the mask. May be negative.
    float weightAt(const UVWSample& sample, const OmbrixContext& context) const
    {
        const float edge = stencilEdge(sample.uvw.x, sample.uvw.y, edge_blend);
        // A point that the key takes out does not ask for the mask.
        if (key_masking && isTakenByKey(context)) return edge - 1.0f;
        const float masked = floatOr(mask, kDefaultMask, context);
        return masked >= kStencilNothing ? edge - masked : edge;
    }

    bool isTakenByKey(const OmbrixContext& context) const
    {
        KeyRanges ranges;
        ranges.hue = floatOr(hue_range, kDefaultRange, context);
        ranges.saturation = floatOr(sat_range, kDefaultRange, context);
        ranges.value = floatOr(val_range, kDefaultRange, context);
        const AColor color = colorOr(image, kDefaultImage, context);
        const AColor key = colorOr(color_key, kDefaultKey, context);
        return isOutsideKey(rgbOf(color), rgbOf(key), ranges) == (positive_key != 0);
    }

    AColor stencilColor(const OmbrixContext& context) const
    {
        UVWSample sample;
        if (!findCoordinates(context, sample)) return noUVWColor(context);
        const float weight = weightAt(sample, context);
        if (weight < kStencilNothing) return colorOr(default_color, kDefaultBackground, context);
        AColor color = colorOr(image, kDefaultImage, context);
        // Not a number blends too.
        if (!(weight >= kStencilAll))
            color = stencilBlend(color, colorOr(default_color, kDefaultBackground, context), weight);
        return finished(color, context);
    }

    // Maya's order of post-processing, whatever compatibility_with says.
    AColor finished(AColor color, const OmbrixContext& context) const
    {
        if (context.shadeFlags & rawTextureLookup)
            return invert ? AColor{-color.r, -color.g, -color.b, color.a} : color;
        if (invert) {
            color = {inverted(color.r), inverted(color.g), inverted(color.b),
                     invert_alpha ? inverted(color.a) : color.a};
        }
        // Kept as is: any mode but 0 takes the luminance.
        if (alpha_from_intensity) color.a = luminance(color);
        if (color_mult) {
            const AColor factor = colorOr(color_mult, AColor{}, context);
            color = {color.r * factor.r, color.g * factor.g, color.b * factor.b, color.a};
        }
        if (color_offset) {
            const AColor offset = colorOr(color_offset, AColor{}, context);
            color = {color.r + offset.r, color.g + offset.g, color.b + offset.b, color.a};
        }
        if (alpha_mult) color.a *= alpha_mult->evalFloat(context);
        if (alpha_offset) color.a += alpha_offset->evalFloat(context);
        return color;
    }

    TextureInterface* image = nullptr;
    TextureFloatInterface* mask = nullptr;
    int key_masking = 0;
    int positive_key = 0;
    TextureInterface* color_key = nullptr;
    TextureFloatInterface* hue_range = nullptr;
    TextureFloatInterface* sat_range = nullptr;
    TextureFloatInterface* val_range = nullptr;
    TextureInterface* default_color = nullptr;
    float edge_blend = 0.0f;
    PluginBase* uvwgen = nullptr;
    UVWGenInterface* uvwgenInterface = nullptr; // of the frame
};

class TexStencilDesc : public DescOf<TexStencil, TexStencilParams> {
public:
    TexStencilDesc()
        : DescOf({2009110901,
                  "TexStencil",
                  "Masks parts of the input texture using the 'mask' texture or a color key "
                  "[gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexStencilDesc texStencilDesc;

} // namespace

} // namespace nezaiva
