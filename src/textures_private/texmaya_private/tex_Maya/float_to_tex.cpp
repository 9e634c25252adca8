// FloatToTex: passes a float on, as a texture that an output parameter can be connected to.

#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

class FloatToTex final : public Offers<OmbrixTextureFloat, GpuTexture> {
public:
    using Offers::Offers;

    // Kept as is: declared as a colour texture, while an instance is a float texture. The description ends
    // in the middle of a word.
    static constexpr Identity kIdentity{
        2009021002,
        "FloatToTex",
        "Converts a single scalar or scalar output parameter to a scalar texture. For passing to "
        "parameters that won't work other",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &FloatToTex::input, 0.0f);
    }

    float evalFloat(const OmbrixContext& context) override { return input(context); }

    void evalFloatBounds(float* lower, float* upper) override
    {
        if (input)
            input->evalFloatBounds(lower, upper);
        else
            *lower = *upper = input.unset;
    }

    int writeSource(SourceText& text) override { return text.passOn(input); }

private:
    FloatInput input;
};

using FloatToTexParams = KindParams<FloatToTex>;
using FloatToTexDesc = KindDesc<FloatToTex, FloatToTexParams>;
FloatToTexDesc floatToTexDesc;

} // namespace

} // namespace nezaiva
