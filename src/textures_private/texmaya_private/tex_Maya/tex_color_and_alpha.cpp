// TexColorAndAlpha: passes a colour on with an alpha of its own. It has no GPU form.

#include "kernels/color/channels.h"
#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

class TexColorAndAlpha final : public OmbrixTexture {
public:
    using OmbrixTexture::OmbrixTexture;

    static constexpr Identity kIdentity{
        2009101501,
        "TexColorAndAlpha",
        "Wraps a color texture and overrides its alpha channel with a float texture [gpuSupport=(none)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("color_input", &TexColorAndAlpha::color_input, noDefault);
        p("alpha_input", &TexColorAndAlpha::alpha_input, 1.0f);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return evalColorWithAlpha(result, color_input, alpha_input, context);
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange color = color_input.bounds();
        const FloatRange alpha = alpha_input.bounds();
        *lower = withAlpha(rgbOf(color.lower), alpha.lower);
        *upper = withAlpha(rgbOf(color.upper), alpha.upper);
    }

private:
    ColorInput color_input;
    FloatInput alpha_input;
};

using TexColorAndAlphaParams = KindParams<TexColorAndAlpha>;
using TexColorAndAlphaDesc = KindDesc<TexColorAndAlpha, TexColorAndAlphaParams>;
TexColorAndAlphaDesc texColorAndAlphaDesc;

} // namespace

} // namespace nezaiva
