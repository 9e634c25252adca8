// TexColorCondition: one of two colours, chosen by a float. The input that is not taken is not evaluated.

#include "kernels/color/channels.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

#include <algorithm>

namespace nezaiva {

namespace {

class TexColorCondition final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2015101514,
        "TexColorCondition",
        "Output either color A or B depending on condition [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("color_a", &TexColorCondition::color_a, kWhite);
        p("alpha_a", &TexColorCondition::alpha_a, 1.0f);
        p("color_b", &TexColorCondition::color_b, kWhite);
        p("alpha_b", &TexColorCondition::alpha_b, 1.0f);
        p("condition", &TexColorCondition::condition, 0.0f);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return condition.isOn(context) ? evalColorWithAlpha(result, color_a, alpha_a, context)
                                       : evalColorWithAlpha(result, color_b, alpha_b, context);
    }

    // Kept as is: the lower result takes what the upper bounds are, and the upper result is written only
    // when a colour is unset.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!color_a || !color_b) {
            *lower = kZero;
            *upper = kWhite;
        } else {
            const AColor a = color_a.bounds().upper;
            const AColor b = color_b.bounds().upper;
            lower->r = std::max(a.r, b.r);
            lower->g = std::max(a.g, b.g);
            lower->b = std::max(a.b, b.b);
        }
        lower->a = alpha_a && alpha_b ? std::max(alpha_a.bounds().upper, alpha_b.bounds().upper) : 1.0f;
    }

    int writeSource(SourceText& text) override
    {
        text.slotOrUnset(condition, kZero);
        text.slotOrUnset(color_b, kWhite);
        text.slotOrUnset(alpha_b, kWhite);
        text.slotOrUnset(color_a, kWhite);
        text.slotOrUnset(alpha_a, kWhite);
        text.op(GpuOperator::Condition);
        return 1;
    }

private:
    ColorInput color_a, color_b;
    FloatInput alpha_a, alpha_b, condition;
};

using TexColorConditionParams = KindParams<TexColorCondition>;
using TexColorConditionDesc = KindDesc<TexColorCondition, TexColorConditionParams>;
TexColorConditionDesc texColorConditionDesc;

} // namespace

} // namespace nezaiva
