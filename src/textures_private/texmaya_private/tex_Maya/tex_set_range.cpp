// TexSetRange: moves each channel of a colour from an old range to a new one.

#include "kernels/color/channels.h"
#include "kernels/color/set_range.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

constexpr const char* kUnsetSlot = "color 0 0 0 0\n";

class TexSetRange final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2008082701,
        "TexSetRange",
        "Remaps the input texture from some old range to a new range of values. The ranges can be "
        "textured. [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &TexSetRange::value, noDefault);
        p("oldMin", &TexSetRange::oldMin, noDefault);
        p("oldMax", &TexSetRange::oldMax, noDefault);
        p("newMin", &TexSetRange::newMin, noDefault);
        p("newMax", &TexSetRange::newMax, noDefault);
        p.output("color", itself);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const Color v = value.rgb(context);
        const Color fromMin = oldMin.rgb(context);
        const Color fromMax = oldMax.rgb(context);
        const Color toMin = newMin.rgb(context);
        const Color toMax = newMax.rgb(context);
        *result = withAlpha(eachChannel(setRange, v, fromMin, fromMax, toMin, toMax), 1.0f);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange v = value.bounds();
        const ColorRange fromMin = oldMin.bounds();
        const ColorRange fromMax = oldMax.bounds();
        const ColorRange toMin = newMin.bounds();
        const ColorRange toMax = newMax.bounds();
        for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b})
            setRangeBounds({v.lower.*channel, v.upper.*channel},
                           {fromMin.lower.*channel, fromMin.upper.*channel},
                           {fromMax.lower.*channel, fromMax.upper.*channel},
                           {toMin.lower.*channel, toMin.upper.*channel},
                           {toMax.lower.*channel, toMax.upper.*channel}, lower->*channel, upper->*channel);
        lower->a = upper->a = 1.0f;
    }

    int writeSource(SourceText& text) override
    {
        text.slotOr(value, kUnsetSlot);
        text.slotOr(oldMin, kUnsetSlot);
        text.slotOr(oldMax, kUnsetSlot);
        text.slotOr(newMin, kUnsetSlot);
        text.slotOr(newMax, kUnsetSlot);
        text.op(GpuOperator::SetRange);
        return 1;
    }

private:
    ColorInput value, oldMin, oldMax, newMin, newMax; // unset they are black
};

using TexSetRangeParams = KindParams<TexSetRange>;
using TexSetRangeDesc = KindDesc<TexSetRange, TexSetRangeParams>;
TexSetRangeDesc texSetRangeDesc;

} // namespace

} // namespace nezaiva
