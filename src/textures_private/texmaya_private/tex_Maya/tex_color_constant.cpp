// TexColorConstant: passes a colour on with an alpha of its own. The alpha that the input colour carries
// is dropped, also when no alpha is connected.

#include "kernels/color/channels.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_expressions.h"

namespace nezaiva {

namespace {

class TexColorConstant final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2015101513, "TexColorConstant", "Yield a constant color [gpuSupport=(full)]", {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("color", &TexColorConstant::color, kWhite);
        p("alpha", &TexColorConstant::alpha, 1.0f);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return evalColorWithAlpha(result, color, alpha, context);
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (color)
            color->evalColorBounds(lower, upper);
        else
            *lower = *upper = color.unset;
        if (alpha)
            alpha->evalFloatBounds(&lower->a, &upper->a);
        else
            lower->a = upper->a = alpha.unset;
    }

    // The alpha input does not reach the GPU.
    int writeSource(SourceText& text) override
    {
        SourceExpressions helper(text);
        helper.addPluginVariable("inputColor", color);
        helper.evaluate("inputColor");
        return 1;
    }

private:
    ColorInput color;
    FloatInput alpha;
};

using TexColorConstantParams = KindParams<TexColorConstant>;
using TexColorConstantDesc = KindDesc<TexColorConstant, TexColorConstantParams>;
TexColorConstantDesc texColorConstantDesc;

} // namespace

} // namespace nezaiva
