// TexLuminance: the luminance of a colour as a float.

#include "kernels/color/brightness.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

class TexLuminance final : public Offers<OmbrixTextureFloat, GpuTexture> {
public:
    using Offers::Offers;

    // Kept as is: declared as a colour texture, while an instance is a float texture.
    static constexpr Identity kIdentity{2009052801,
                                        "TexLuminance",
                                        "Wraps a color texture and outputs its luminance [gpuSupport=(full)]",
                                        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &TexLuminance::input, noDefault);
        p.output("luminance", itself);
    }

    float evalFloat(const OmbrixContext& context) override { return luminance(input(context)); }

    void evalFloatBounds(float* lower, float* upper) override
    {
        const ColorRange in = input.bounds();
        *lower = luminance(in.lower);
        *upper = luminance(in.upper);
    }

    // Kept as is: the input's own gradient, not weighed as its colour is.
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = input.gradient(context);
        return result;
    }

    // The input is asked under the name "color"; the operands stand before the operator.
    int writeSource(SourceText& text) override
    {
        if (!text.input(input, "color", text.tag)) text.color(input.unset);
        text.endSlot();
        text.source.printf("uvw_transform %g, %g, %g, %g, %g, %g, %g, %g, %g, %g, %g, %g\n", 0.0, -1.0, -1.0,
                           -1.0, -1.0, -1.0, -1.0, -1.0, -1.0, -1.0, -1.0, -1.0);
        text.op(GpuOperator::Luminance);
        return 1;
    }

private:
    ColorInput input; // unset it is black
};

using TexLuminanceParams = KindParams<TexLuminance>;
using TexLuminanceDesc = KindDesc<TexLuminance, TexLuminanceParams>;
TexLuminanceDesc texLuminanceDesc;

} // namespace

} // namespace nezaiva
