// TexFloatMask: takes a mask away from a float, below 0 too. It has no GPU form.

#include "kernels/color/mask.h"
#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

class TexFloatMask final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    static constexpr Identity kIdentity{
        2017022615, "TexFloatMask", "Mask a number [gpuSupport=(none)]", {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("in_float", &TexFloatMask::in_float, 1.0f);
        // Kept as is: an unset mask takes nothing away.
        p("mask", &TexFloatMask::mask, 1.0f, unsetReads(0.0f));
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const float v = in_float(context);
        const float k = mask(context);
        return k > kNoMask ? v - k : v;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        const FloatRange in = in_float.bounds();
        const FloatRange taken = mask.bounds();
        *lower = in.lower - taken.upper;
        *upper = in.upper - taken.lower;
    }

private:
    FloatInput in_float, mask;
};

using TexFloatMaskParams = KindParams<TexFloatMask>;
using TexFloatMaskDesc = KindDesc<TexFloatMask, TexFloatMaskParams>;
TexFloatMaskDesc texFloatMaskDesc;

} // namespace

} // namespace nezaiva
