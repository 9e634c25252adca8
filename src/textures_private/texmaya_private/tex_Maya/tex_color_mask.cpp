// TexColorMask: cuts a colour down by a mask. The stronger the mask, the more of its own colour shows and
// the more alpha is taken away, below 0 too.

#include "kernels/color/mask.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_expressions.h"

#include <algorithm>

namespace nezaiva {

namespace {

class TexColorMask final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{2015101614,
                                        "TexColorMask",
                                        "Mask a color. In-efficient GPU implementation, use any of the other "
                                        "texture-mask plugins instead [gpuSupport=(full)]",
                                        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("in_color", &TexColorMask::in_color, Color{1.0f, 1.0f, 1.0f});
        p("in_alpha", &TexColorMask::in_alpha, 1.0f);
        p("preserve_color", &TexColorMask::preserve_color, 0.0f);
        p("mask", &TexColorMask::mask, Color{1.0f, 1.0f, 1.0f});
        p("mask_alpha", &TexColorMask::mask_alpha, 1.0f);
        p("mask_alpha_is_luminance", &TexColorMask::mask_alpha_is_luminance, 0.0f);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        Color c = in_color.rgb(context);
        float a = in_alpha(context);
        const Color m = mask.rgb(context);
        const float k = mask_alpha_is_luminance == 0.0f ? std::max(0.0f, mask_alpha(context)) : luminance(m);
        // A strength that is not a number masks and passes on.
        if (!(k <= kNoMask)) {
            if (!preserve_color.isOn(context))
                c = eachChannel([k](float x, float own) { return masked(x, own, k); }, c, m);
            a -= k;
        }
        *result = withAlpha(c, a);
        return result;
    }

    // Kept as is: the mask counts by its alpha and by its luminance at once, the alpha comes from in_color,
    // and the bounds of in_alpha are asked for and dropped.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange in = in_color.bounds();
        const ColorRange m = mask.bounds();
        const FloatRange strength = mask_alpha.bounds();
        in_alpha.bounds();
        const float weak = std::min(strength.lower, luminance(m.lower));
        const float strong = std::max(strength.upper, luminance(m.upper));
        const auto smaller = [=](float x, float own) {
            return std::min(masked(x, own, weak), masked(x, own, strong));
        };
        const auto larger = [=](float x, float own) {
            return std::max(masked(x, own, weak), masked(x, own, strong));
        };
        *lower = withAlpha(eachChannel(smaller, in.lower, m.lower), in.lower.a - std::max(0.0f, strong));
        *upper = withAlpha(eachChannel(larger, in.upper, m.upper), in.upper.a);
    }

    // The alphas do not reach the GPU.
    int writeSource(SourceText& text) override
    {
        SourceExpressions helper(text);
        helper.addPluginVariable("inColor", in_color);
        helper.addPluginVariable("mask", mask);
        helper.addPluginVariable("maskAlpha", mask_alpha);
        helper.addColorVariable("maskAlphaIsLuminance", mask_alpha_is_luminance);
        helper.addPluginVariable("preserveColor", preserve_color);
        helper.addExpressionVariable("alpha", "(if maskAlphaIsLuminance (luminance mask) maskAlpha)");
        helper.evaluate("(if preserveColor inColor (+ (* inColor (- 1 alpha)) (* mask alpha)))");
        return 1;
    }

private:
    ColorInput in_color;
    FloatInput in_alpha, preserve_color;
    ColorInput mask;
    FloatInput mask_alpha;
    float mask_alpha_is_luminance = 0.0f;
};

using TexColorMaskParams = KindParams<TexColorMask>;
using TexColorMaskDesc = KindDesc<TexColorMask, TexColorMaskParams>;
TexColorMaskDesc texColorMaskDesc;

} // namespace

} // namespace nezaiva
