// TexMayaConversion: a float times a constant. It has no GPU form.

#include "plugin_frame/kind_desc.h"

namespace nezaiva {

using namespace OUtils;

namespace {

constexpr float kUnsetResult = 0.0f; // whatever the factor is, also where it is not finite

class TexMayaConversion final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    static constexpr Identity kIdentity{2010041401,
                                        "TexMayaConversion",
                                        "Multiplies a scalar texture with a scalar factor. Doable with "
                                        "TexAColorOp. [gpuSupport=(none)]",
                                        {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &TexMayaConversion::input, 0.0f);
        p("conversion_factor", &TexMayaConversion::conversion_factor, 1.0f);
        p.output("output", itself);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        return input ? input(context) * conversion_factor : kUnsetResult;
    }

    // Kept as is: a negative factor leaves the bounds in the wrong order.
    void evalFloatBounds(float* lower, float* upper) override
    {
        if (!input) {
            *lower = *upper = kUnsetResult;
            return;
        }
        const FloatRange in = input.bounds();
        *lower = in.lower * conversion_factor;
        *upper = in.upper * conversion_factor;
    }

private:
    FloatInput input;
    float conversion_factor = 0.0f;
};

using TexMayaConversionParams = KindParams<TexMayaConversion>;
using TexMayaConversionDesc = KindDesc<TexMayaConversion, TexMayaConversionParams>;
TexMayaConversionDesc texMayaConversionDesc;

} // namespace

} // namespace nezaiva
