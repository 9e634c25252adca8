// TexComposite: composes two colours, alpha included, by one of nine operations and a factor.

#include "kernels/color/channels.h"
#include "kernels/color/composite.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_expressions.h"

namespace nezaiva {

namespace {

constexpr AColor kUnknownOperationColor = kWhite;
constexpr ColorRange kUnknownOperationRange{kZero, kWhite};

// Kept as is: in the bounds an unset factor is 1, not the 0 that it evaluates to.
constexpr FloatRange kUnsetFactorRange{1.0f, 1.0f};

// The operations' GPU forms.
constexpr const char* kExpressions[kCompositeOperationCount] = {
    "(+ a (* b f))",
    "(+ a (* (- b 1) f))",
    "(lerp a b f)",
    "(* a (+ (* b f) (- 1 f)))",
    "(- (+ a (* b f)) (* a (* b f)))",
    "(overlay a b f)",
    "(abs (- a (* b f)))",
    "(clamp (lerp a (/ a (max (- 1 b) 0.00001)) f) a b)",
    "(clamp (lerp a (- 1 (/ a (max (- 1 b) 0.00001))) f) a b)",
};

class TexComposite final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2015101214,
        "TexComposite",
        "Compose two textures. In-efficient GPU implementation, use any of the Color-correction related "
        "textures for Ombrix GPU instead. [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("color_a", &TexComposite::color_a, kWhite);
        p("alpha_a", &TexComposite::alpha_a, 1.0f);
        p("color_b", &TexComposite::color_b, kWhite);
        p("alpha_b", &TexComposite::alpha_b, 1.0f);
        p("operation", &TexComposite::operation, kAdd);
        p("factor", &TexComposite::factor, 0.0f);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const float aAlpha = alpha_a(context);
        const float bAlpha = alpha_b(context);
        float f = factor(context);
        const AColor a = color_a(context);
        const AColor b = color_b(context);
        f = f < 1.0f ? f : 1.0f; // a factor that is not a number counts as 1
        if (f <= 0.0f) {
            *result = {a.r, a.g, a.b, aAlpha};
        } else if (isCompositeOperation(operation)) {
            const auto composed = [this, f](float x, float y) { return composite(x, y, f, operation); };
            *result = withAlpha(eachChannel(composed, a, b), composed(aAlpha, bAlpha));
        } else {
            *result = kUnknownOperationColor;
        }
        return result;
    }

    // The factor's bounds are not limited to 1.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!isCompositeOperation(operation)) {
            *lower = kUnknownOperationRange.lower;
            *upper = kUnknownOperationRange.upper;
            return;
        }
        const ColorRange a = color_a.bounds();
        const FloatRange aAlpha = alpha_a.bounds();
        const ColorRange b = color_b.bounds();
        const FloatRange bAlpha = alpha_b.bounds();
        const FloatRange f = factor.boundsOr(kUnsetFactorRange);
        const auto smaller = [this, f](float x, float y) {
            return lowerComposite(x, y, f.lower, f.upper, operation);
        };
        const auto larger = [this, f](float x, float y) {
            return upperComposite(x, y, f.lower, f.upper, operation);
        };
        *lower = withAlpha(eachChannel(smaller, a.lower, b.lower), smaller(aAlpha.lower, bAlpha.lower));
        *upper = withAlpha(eachChannel(larger, a.upper, b.upper), larger(aAlpha.upper, bAlpha.upper));
    }

    // The alphas do not reach the GPU. An unknown operation writes nothing.
    int writeSource(SourceText& text) override
    {
        SourceExpressions helper(text);
        helper.addPluginVariable("a", color_a);
        helper.addPluginVariable("b", color_b);
        helper.addPluginVariable("f", factor);
        // On the GPU an unset factor is 0, as in the evaluation.
        if (factor.bounds().upper <= 0.0f)
            helper.evaluate("a");
        else if (isCompositeOperation(operation))
            helper.evaluate(kExpressions[operation]);
        return 1;
    }

private:
    ColorInput color_a, color_b;
    FloatInput alpha_a, alpha_b, factor;
    int operation = 0;
};

using TexCompositeParams = KindParams<TexComposite>;
using TexCompositeDesc = KindDesc<TexComposite, TexCompositeParams>;
TexCompositeDesc texCompositeDesc;

} // namespace

} // namespace nezaiva
