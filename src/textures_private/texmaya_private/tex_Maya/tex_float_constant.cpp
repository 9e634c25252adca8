// TexFloatConstant: passes a float on. It has no GPU form.

#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

class TexFloatConstant final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    static constexpr Identity kIdentity{2017022517,
                                        "TexFloatConstant",
                                        "Yield a constant float value [gpuSupport=(none)]",
                                        {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("in_float", &TexFloatConstant::in_float, 1.0f);
    }

    float evalFloat(const OmbrixContext& context) override { return in_float(context); }

    void evalFloatBounds(float* lower, float* upper) override
    {
        if (in_float)
            in_float->evalFloatBounds(lower, upper);
        else
            *lower = *upper = in_float.unset;
    }

private:
    FloatInput in_float;
};

using TexFloatConstantParams = KindParams<TexFloatConstant>;
using TexFloatConstantDesc = KindDesc<TexFloatConstant, TexFloatConstantParams>;
TexFloatConstantDesc texFloatConstantDesc;

} // namespace

} // namespace nezaiva
