// TexCondition2: one of two colours, chosen by comparing two floats. The colour that is not taken is not
// evaluated.

#include "kernels/color/condition2.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

class TexCondition2 final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2009021201,
        "TexCondition2",
        "Same as TexCondition, but supported by Ombrix GPU [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("operation", &TexCondition2::operation, kTermsEqual,
          "0 : Equal; 1 : Not equal; 2 : Greater than; 3 : Greater or equal; 4 : Less than; 5 : Less or "
          "equal",
          "enum=(0:Equal; 1:Not equal; 2:Greater than; 3:Greater or equal; 4:Less than; 5:Less or equal)");
        p("first_term", &TexCondition2::first_term, 0.0f);
        p("second_term", &TexCondition2::second_term, 0.0f);
        p("color_if_true", &TexCondition2::color_if_true, AColor{0.0f, 0.0f, 0.0f, 1.0f});
        p("color_if_false", &TexCondition2::color_if_false, kWhite);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const float a = first_term(context);
        const float b = second_term(context);
        return (conditionHolds(a, b, operation) ? color_if_true : color_if_false).evalColor(result, context);
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange a = color_if_true.bounds();
        const ColorRange b = color_if_false.bounds();
        *lower = lesserChannels(a.lower, b.lower);
        *upper = greaterChannels(a.upper, b.upper);
    }

    int writeSource(SourceText& text) override
    {
        text.slot(first_term);
        text.slot(second_term);
        text.slot(color_if_true);
        text.slot(color_if_false);
        text.op(GpuOperator::Compare);
        text.operands({static_cast<float>(gpuComparison(operation)), 1.0f});
        return 1;
    }

private:
    int operation = 0;
    FloatInput first_term, second_term;
    ColorInput color_if_true, color_if_false;
};

using TexCondition2Params = KindParams<TexCondition2>;
using TexCondition2Desc = KindDesc<TexCondition2, TexCondition2Params>;
TexCondition2Desc texCondition2Desc;

} // namespace

} // namespace nezaiva
