// TexMayaContrast: pushes the channels of a colour away from a bias. Alpha is the colour's own.

#include "kernels/color/channels.h"
#include "kernels/color/maya_contrast.h"
#include "plugin_frame/common_texture.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

class TexMayaContrast final : public Offers<OmbrixCachedTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2009022001,
        "TexMayaContrast",
        "Applies contrast correction to the input texture [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &TexMayaContrast::value, AColor{0.0f, 0.0f, 0.0f, 1.0f});
        p("contrast", &TexMayaContrast::contrast, AColor{2.0f, 2.0f, 2.0f, 1.0f});
        p("bias", &TexMayaContrast::bias, AColor{0.5f, 0.5f, 0.5f, 1.0f});
    }

    AColor* evalColorUncached(AColor* result, const OmbrixContext& context) override
    {
        const AColor x = value(context);
        const AColor c = contrast(context);
        const AColor b = bias(context);
        *result = withAlpha(eachChannel(contrasted, x, c, b), x.a);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange x = value.bounds();
        const ColorRange c = contrast.bounds();
        const ColorRange b = bias.bounds();
        *lower = withAlpha(eachChannel(leastContrasted, x.lower, c.lower, c.upper, b.upper), x.lower.a);
        *upper = withAlpha(eachChannel(greatestContrasted, x.upper, c.lower, c.upper, b.lower), x.upper.a);
    }

    int writeSource(SourceText& text) override
    {
        text.slotOr(value, value.unset);
        text.slotOr(bias, bias.unset);
        text.slotOr(contrast, contrast.unset);
        text.op(GpuOperator::Contrast);
        return 1;
    }

private:
    ColorInput value, contrast, bias;
};

using TexMayaContrastParams = KindParams<TexMayaContrast>;
using TexMayaContrastDesc = KindDesc<TexMayaContrast, TexMayaContrastParams>;
TexMayaContrastDesc texMayaContrastDesc;

} // namespace

} // namespace nezaiva
