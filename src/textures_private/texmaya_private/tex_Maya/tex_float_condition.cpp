// TexFloatCondition: one of two floats, chosen by a third. The input that is not taken is not evaluated.

#include "kernels/color/channels.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

class TexFloatCondition final : public Offers<OmbrixTextureFloat, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2017022418,
        "TexFloatCondition",
        "Output either float A or B depending on condition [gpuSupport=(full)]",
        {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("float_a", &TexFloatCondition::float_a, 1.0f);
        p("float_b", &TexFloatCondition::float_b, 1.0f);
        p("condition", &TexFloatCondition::condition, 0.0f);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        return (condition.isOn(context) ? float_a : float_b)(context);
    }

    // Kept as is: with both inputs connected their bounds are asked for and dropped, and neither result
    // is written.
    void evalFloatBounds(float* lower, float* upper) override
    {
        if (!float_a || !float_b) {
            *lower = 0.0f;
            *upper = 1.0f;
            return;
        }
        float_a.bounds();
        float_b.bounds();
    }

    int writeSource(SourceText& text) override
    {
        text.slotOrUnset(condition, kZero);
        text.slotOrUnset(float_b, kWhite);
        text.slot(kWhite);
        text.slotOrUnset(float_a, kWhite);
        text.slot(kWhite);
        text.op(GpuOperator::Condition);
        return 1;
    }

private:
    FloatInput float_a, float_b, condition;
};

using TexFloatConditionParams = KindParams<TexFloatCondition>;
using TexFloatConditionDesc = KindDesc<TexFloatCondition, TexFloatConditionParams>;
TexFloatConditionDesc texFloatConditionDesc;

} // namespace

} // namespace nezaiva
