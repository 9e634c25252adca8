// MayaGamma: raises each channel to the power of one over its gamma, which is a texture of its own.

#include "kernels/color/gamma_power.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

class Gamma final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    // Kept as is: the description ends in the middle of its tag.
    static constexpr Identity kIdentity{
        2006072903,
        "MayaGamma",
        "Applies gamma to the input texture. Gamma is textured unlike TexMaxGamma. Doable with "
        "TexAColorOp::power. [gpuSupport=(f",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &Gamma::input, AColor{0.0f, 0.0f, 0.0f, 1.0f}, "The input color");
        p("gamma", &Gamma::gamma, kWhite, "Gamma values");
        p.output("color", itself, "The resulting color");
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const AColor x = input(context);
        const AColor g = gamma(context);
        *result = withAlpha(eachChannel(gammaPower, x, g), 1.0f);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange x = input.bounds();
        const ColorRange g = gamma.bounds();
        *lower = withAlpha(leastOfPairs(gammaPower, x, g), 1.0f);
        *upper = withAlpha(greatestOfPairs(gammaPower, x, g), 1.0f);
    }

    // Kept as is: the GPU takes one gamma for all channels, the middle of the texture's bounds.
    int writeSource(SourceText& text) override
    {
        text.input(input);
        if (gamma)
            text.source.printf("gamma %f\n", static_cast<double>(1.0f / middleIntensity(gamma.bounds())));
        return 1;
    }

private:
    ColorInput input, gamma;
};

using GammaParams = KindParams<Gamma>;
using GammaDesc = KindDesc<Gamma, GammaParams>;
GammaDesc gammaDesc;

} // namespace

} // namespace nezaiva
