// TexColorCorrect: grades a colour in a fixed chain: hue, saturation and value, gain, offset, gamma, clamp;
// then the alpha by a chain of its own. Steps that change nothing cost nothing.
//
// Kept as is: most unset inputs read as another value than their declared default, so that a node with
// nothing set passes its colour on. The two stand side by side in the table.

#include "kernels/color/correct.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_expressions.h"

namespace nezaiva {

namespace {

constexpr Color kBlack{0.0f, 0.0f, 0.0f};
constexpr UnsetReads<Color> kUnsetReadsWhite{{1.0f, 1.0f, 1.0f}};

// What every unset input contributes to the bounds, the gains too.
constexpr ColorRange kUnsetRange{{0.0f, 0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f}};

class TexColorCorrect final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{2015101613,
                                        "TexColorCorrect",
                                        "Correct a color by specifying HSV and RGB gains, offset, gamma "
                                        "correction and clamping [gpuSupport=(none)]",
                                        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("in_color", &TexColorCorrect::in_color, kBlack);
        p("in_alpha", &TexColorCorrect::in_alpha, 1.0f);
        p("unpremultiply_input", &TexColorCorrect::unpremultiply_input, 0.0f);
        p("premultiply_result", &TexColorCorrect::premultiply_result, 0.0f);
        p("hue_shift", &TexColorCorrect::hue_shift, 0.0f);
        p("sat_gain", &TexColorCorrect::sat_gain, 0.0f, unsetReads(1.0f));
        p("val_gain", &TexColorCorrect::val_gain, 0.0f, unsetReads(1.0f));
        p("col_gain", &TexColorCorrect::col_gain, kBlack, kUnsetReadsWhite);
        p("col_offset", &TexColorCorrect::col_offset, kBlack);
        p("col_gamma", &TexColorCorrect::col_gamma, kBlack, kUnsetReadsWhite);
        p("col_clamp", &TexColorCorrect::col_clamp, 0.0f);
        p("col_clamp_min", &TexColorCorrect::col_clamp_min, kBlack);
        p("col_clamp_max", &TexColorCorrect::col_clamp_max, kBlack, kUnsetReadsWhite);
        p("alpha_gain", &TexColorCorrect::alpha_gain, 0.0f, unsetReads(1.0f));
        p("alpha_offset", &TexColorCorrect::alpha_offset, 0.0f, unsetReads(1.0f));
        p("alpha_gamma", &TexColorCorrect::alpha_gamma, 0.0f);
        p("alpha_clamp", &TexColorCorrect::alpha_clamp, 0.0f);
        p("alpha_clamp_min", &TexColorCorrect::alpha_clamp_min, 0.0f);
        p("alpha_clamp_max", &TexColorCorrect::alpha_clamp_max, 0.0f, unsetReads(1.0f));
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        Color c = in_color.rgb(context);
        float a = in_alpha(context);
        // An alpha of 0 gives infinities, which pass on.
        if (unpremultiply_input.isOn(context)) c = scaled(c, 1.0f / a);
        c = correctedColor(c, context);
        a = correctedAlpha(a, context);
        if (premultiply_result.isOn(context)) c = scaled(c, a);
        *result = withAlpha(c, a);
        return result;
    }

    // Kept as is: the bounds take the input colour's own alpha and leave in_alpha, the steps of hue,
    // saturation and value, and the clamps out.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange in = in_color.boundsOr(kUnsetRange);
        const ColorRange gain = col_gain.boundsOr(kUnsetRange);
        const ColorRange offset = col_offset.boundsOr(kUnsetRange);
        const ColorRange gamma = col_gamma.boundsOr(kUnsetRange);
        const Color low = eachChannel(lowerGain, in.lower, gain.lower, offset.lower);
        const Color high = eachChannel(upperGain, in.upper, gain.upper, offset.upper);
        *lower = withAlpha(eachChannel(lowerGamma, low, gamma.lower, gamma.upper),
                           lowerGain(in.lower.a, gain.lower.a, offset.lower.a));
        *upper = withAlpha(eachChannel(upperGamma, high, gamma.lower, gamma.upper),
                           upperGain(in.upper.a, gain.upper.a, offset.upper.a));
    }

    // Neither gamma nor the alpha's chain reaches the GPU.
    int writeSource(SourceText& text) override
    {
        SourceExpressions helper(text);
        helper.addPluginVariable("a", in_alpha);
        helper.addPluginVariable("clampMax", col_clamp_max);
        helper.addPluginVariable("clampMin", col_clamp_min);
        helper.addPluginVariable("colGain", col_gain);
        helper.addPluginVariable("colGamma", col_gamma);
        helper.addPluginVariable("colOffset", col_offset);
        helper.addPluginVariable("hueShift", hue_shift);
        helper.addPluginVariable("in", in_color);
        helper.addPluginVariable("satGain", sat_gain);
        helper.addPluginVariable("shouldClamp", col_clamp);
        helper.addPluginVariable("shouldPremultiply", premultiply_result);
        helper.addPluginVariable("shouldUnpremultiply", unpremultiply_input);
        helper.addPluginVariable("valGain", val_gain);
        helper.addExpressionVariable("unpr", "(if shouldUnpremultiply (manip in a / / / 1 x x x x) in)");
        helper.addExpressionVariable("hsv0", "(rgb2hsv unpr)");
        helper.addExpressionVariable("hsv1", "(manip hsv0 hueShift + 0 0 0)");
        helper.addExpressionVariable("hsv2", "(manip hsv1 satGain  0 * 0 0)");
        helper.addExpressionVariable("hsv3", "(manip hsv2 valGain  0 0 * 0)");
        helper.addExpressionVariable("rgb0", "(hsv2rgb hsv3)");
        helper.addExpressionVariable("rgb1", "(* rgb0 colGain)");
        helper.addExpressionVariable("rgb2", "(+ rgb1 colOffset)");
        helper.addExpressionVariable("clamped", "(if shouldClamp (clamp rgb2 clampMin clampMax) rgb2)");
        helper.evaluate("(if shouldPremultiply (manip clamped a * * * 1 x x x x) clamped)");
        return 1;
    }

private:
    Color correctedColor(Color c, const OmbrixContext& context) const
    {
        const float shift = hue_shift(context);
        const float saturation = sat_gain(context);
        const float value = val_gain(context);
        if (shift != 0.0f || saturation != 1.0f || value != 1.0f) c = hsvStep(c, shift, saturation, value);

        const Color gain = col_gain.rgb(context);
        const Color offset = col_offset.rgb(context);
        c = eachChannel([](float x, float g, float o) { return x * g + o; }, c, gain, offset);

        c = eachChannel(gammaStep, c, col_gamma.rgb(context));

        if (col_clamp.isOn(context)) {
            const Color lower = col_clamp_min.rgb(context);
            const Color upper = col_clamp_max.rgb(context);
            c = eachChannel(clampStep, c, lower, upper);
        }
        return c;
    }

    float correctedAlpha(float a, const OmbrixContext& context) const
    {
        a *= alpha_gain(context);
        // Kept as is: an offset of exactly 1 adds nothing, whether it is connected or what unset reads as.
        const float offset = alpha_offset(context);
        if (offset != 1.0f) a += offset;
        // Kept as is: the gain is read once more and acts as the gamma; alpha_gamma is never read.
        a = gammaStep(a, alpha_gain(context));
        if (alpha_clamp.isOn(context)) {
            const float lower = alpha_clamp_min(context);
            const float upper = alpha_clamp_max(context);
            a = clampStep(a, lower, upper);
        }
        return a;
    }

    ColorInput in_color, col_gain, col_offset, col_gamma, col_clamp_min, col_clamp_max;
    FloatInput in_alpha, unpremultiply_input, premultiply_result, hue_shift, sat_gain, val_gain, col_clamp;
    FloatInput alpha_gain, alpha_offset, alpha_gamma, alpha_clamp, alpha_clamp_min, alpha_clamp_max;
};

using TexColorCorrectParams = KindParams<TexColorCorrect>;
using TexColorCorrectDesc = KindDesc<TexColorCorrect, TexColorCorrectParams>;
TexColorCorrectDesc texColorCorrectDesc;

} // namespace

} // namespace nezaiva
