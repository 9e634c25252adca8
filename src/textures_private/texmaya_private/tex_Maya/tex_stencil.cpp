// TexStencil: a texture over a background, through a mask or a colour key, with a soft edge.
//
// It finds its coordinates itself and has a post-processing of its own, which the background alone and the
// colour without coordinates do not go through.

#include "kernels/color/channels.h"
#include "kernels/placement/stencil.h"
#include "plugin_frame/common_texture.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/mapped_surface.h"

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = 0;
constexpr int kLowestChannel = -1;

constexpr AColor kBlack{0.0f, 0.0f, 0.0f, 1.0f};

float smaller(float bound, float limit)
{
    return limit < bound ? limit : bound;
}
AColor smaller(const AColor& bound, const AColor& limit)
{
    return {smaller(bound.r, limit.r), smaller(bound.g, limit.g), smaller(bound.b, limit.b),
            smaller(bound.a, limit.a)};
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
    explicit TexStencil(OmbrixPluginDesc* desc) : CommonTexture(desc, kBaseFlags) {}

    static constexpr Identity kIdentity{
        2009110901,
        "TexStencil",
        "Masks parts of the input texture using the 'mask' texture or a color key [gpuSupport=(none)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        CommonTexture::parameters(p);
        p("image", &TexStencil::image, kWhite, "The texture that is used as a stencil");
        p("mask", &TexStencil::mask, 0.0f, "Represents the Stencil's transparency");
        p("key_masking", &TexStencil::key_masking, false,
          "If true, selects the areas in the texture similar to or equal to the Color Key and masks them "
          "out");
        p("positive_key", &TexStencil::positive_key, false,
          "If true, inverts the Chroma Key mask(only the colors specified in the Color Key and HSV Range are "
          "displayed)");
        p("color_key", &TexStencil::color_key, kWhite, "The color to be masked in the texture");
        p("hue_range", &TexStencil::hue_range, 0.0f,
          "The range of hues centered on the Color Key color which are also masked");
        p("sat_range", &TexStencil::sat_range, 0.0f,
          "The range of saturations centered on the Color Key color which are also masked");
        p("val_range", &TexStencil::val_range, 0.0f,
          "The range of values centered on the Color Key color which are also masked");
        p("default_color", &TexStencil::default_color, kBlack, "Represents the texture that is underneath");
        p("edge_blend", &TexStencil::edge_blend, 0.0f, "Controls the sharpness of the texture edges.");
        p("uvwgen", &TexStencil::uvwgen, noDefault, "UVWGen from which the uvw coordinates will be taken");
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        CommonTexture::frameBegin(renderer);
        uvwgen.resolve();
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        // Kept as is: every path ends in the memo, a colour without coordinates and a raw look-up too.
        AColor own;
        *result = memo.getOr(context, noTexCache, own, [&] { return stencilColor(context); });
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
            *result = default_color.gradient(context);
            return result;
        }
        AColor gradient = image.gradient(context);
        if (weight < kStencilAll)
            gradient =
                sum(weighted(default_color.gradient(context), 1.0f - weight), weighted(gradient, weight));
        if (invert) gradient = {-gradient.r, -gradient.g, -gradient.b, -gradient.a};
        if (color_mult) {
            // Kept as is: the colour of the stencil, where it is blended with the background too.
            const float color = intensity(image(context));
            const float factor = intensity(color_mult(context));
            gradient = sum(weighted(gradient, factor), weighted(color_mult.gradient(context), color));
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
        const ColorRange range = image.bounds();
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
    void limitByBackground(AColor* lower, AColor* upper) const
    {
        const ColorRange background = default_color.bounds();
        *lower = smaller(*lower, background.lower);
        *upper = smaller(*upper, background.upper);
    }

    // Kept as is: what a surface answers counts, also when it refuses.
    bool findCoordinates(const OmbrixContext& context, UVWSample& sample) const
    {
        if (uvwgen) return uvwgen->evalUVW(context, &sample) != 0;
        MappedSurface* surface = mappedSurface(context);
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
        const float masked = mask(context);
        return masked >= kStencilNothing ? edge - masked : edge;
    }

    bool isTakenByKey(const OmbrixContext& context) const
    {
        KeyRanges ranges;
        ranges.hue = hue_range(context);
        ranges.saturation = sat_range(context);
        ranges.value = val_range(context);
        const AColor color = image(context);
        const AColor key = color_key(context);
        return isOutsideKey(rgbOf(color), rgbOf(key), ranges) == (positive_key != 0);
    }

    AColor stencilColor(const OmbrixContext& context) const
    {
        UVWSample sample;
        if (!findCoordinates(context, sample)) return nouvw_color(context);
        const float weight = weightAt(sample, context);
        if (weight < kStencilNothing) return default_color(context);
        AColor color = image(context);
        // Not a number blends too.
        if (!(weight >= kStencilAll)) color = stencilBlend(color, default_color(context), weight);
        return finished(color, context);
    }

    // Maya's order of post-processing, whatever compatibility_with says.
    AColor finished(AColor color, const OmbrixContext& context) const
    {
        if (context.shadeFlags & rawTextureLookup)
            return invert ? AColor{-color.r, -color.g, -color.b, color.a} : color;
        if (invert) color = inverted(color, invert_alpha != 0);
        // Kept as is: any mode but 0 takes the luminance.
        if (alpha_from_intensity) color.a = luminance(color);
        GainValues values;
        return withGains(color, gainsAt(context, values));
    }

    ColorInput image, color_key, default_color;
    FloatInput mask, hue_range, sat_range, val_range;
    int key_masking = 0, positive_key = 0;
    float edge_blend = 0.0f;
    UVWGenInput uvwgen;
};

using TexStencilParams = KindParams<TexStencil>;
using TexStencilDesc = KindDesc<TexStencil, TexStencilParams>;
TexStencilDesc texStencilDesc;

} // namespace

} // namespace nezaiva
