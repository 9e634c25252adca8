// TexFloatComposite: composes two floats by one of nine operations and a factor. It has no GPU form.

#include "kernels/color/composite.h"
#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

class TexFloatComposite final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    static constexpr Identity kIdentity{
        2017022718, "TexFloatComposite", "Compose two numbers [gpuSupport=(none)]", {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("float_a", &TexFloatComposite::float_a, 1.0f);
        p("float_b", &TexFloatComposite::float_b, 1.0f);
        p("operation", &TexFloatComposite::operation, kAdd);
        p("factor", &TexFloatComposite::factor, 0.0f);
    }

    // Kept as is: unlike a colour's factor, a float's is not limited to 1, and an unknown operation gives
    // the first input.
    float evalFloat(const OmbrixContext& context) override
    {
        const float f = factor(context);
        const float a = float_a(context);
        if (f <= 0.0f) return a;
        return composite(a, float_b(context), f, operation);
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        const FloatRange a = float_a.bounds();
        const FloatRange b = float_b.bounds();
        const FloatRange f = factor.bounds();
        *lower = lowerComposite(a.lower, b.lower, f.lower, f.upper, operation);
        *upper = upperComposite(a.upper, b.upper, f.lower, f.upper, operation);
    }

private:
    FloatInput float_a, float_b, factor;
    int operation = 0;
};

using TexFloatCompositeParams = KindParams<TexFloatComposite>;
using TexFloatCompositeDesc = KindDesc<TexFloatComposite, TexFloatCompositeParams>;
TexFloatCompositeDesc texFloatCompositeDesc;

} // namespace

} // namespace nezaiva
