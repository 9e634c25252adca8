// What TexRGBToHSV and TexHSVToRGB share: all but the parameter's name, the conversion and the operator
// that repeats it on the GPU.
#pragma once

#include "plugin_frame/source_text.h"

#include <ombrix/plugin_kind.h>

namespace nezaiva {

// convert maps (0, 0, 0, 0), which an unset input reads as, to itself.
template <AColor (*convert)(const AColor&), GpuOperator operation>
class HueConversion : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        input.evalColor(result, context);
        *result = convert(*result);
        return result;
    }

    // Kept as is: each bound is converted by itself, although the conversions keep no order.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (input)
            input->evalColorBounds(lower, upper);
        else
            *lower = *upper = input.unset;
        *lower = convert(*lower);
        *upper = convert(*upper);
    }

    int writeSource(SourceText& text) override
    {
        if (!input) text.line("color 0.0 0.0 0.0 0.0\n");
        text.slot(input);
        text.op(operation);
        return 1;
    }

protected:
    ColorInput input;
};

} // namespace nezaiva
