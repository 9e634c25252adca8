// TexFloatCorrect: gain, offset, gamma and clamp of a float. It has no GPU form.

#include "kernels/color/correct.h"
#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

// Kept as is: what unset steps contribute to the bounds is neither declared nor what they read as.
constexpr FloatRange kUnsetStepRange{0.0f, 0.0f};

class TexFloatCorrect final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    static constexpr Identity kIdentity{
        2017032220,
        "TexFloatCorrect",
        "Correct a number by specifying gain, offset, gamma correction and clamping [gpuSupport=(none)]",
        {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("in_float", &TexFloatCorrect::in_float, 1.0f);
        p("gain", &TexFloatCorrect::gain, 0.0f, unsetReads(1.0f));
        p("offset", &TexFloatCorrect::offset, 0.0f, unsetReads(1.0f));
        p("gamma", &TexFloatCorrect::gamma, 0.0f);
        p("clamp", &TexFloatCorrect::clamp, 0);
        p("clamp_min", &TexFloatCorrect::clamp_min, 0.0f);
        p("clamp_max", &TexFloatCorrect::clamp_max, 1.0f);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const float in = in_float(context);
        const float factor = gain(context);
        float v = in * factor + offset(context);
        // Kept as is: the gain is read once more and acts as the gamma, which plays no part here.
        if (gain) v = gammaStep(v, gain(context));
        if (clamp != 0) v = clampStep(v, clamp_min, clamp_max);
        return v;
    }

    // Kept as is: here the gamma is the parameter of that name, and the clamp does not narrow the bounds.
    void evalFloatBounds(float* lower, float* upper) override
    {
        const FloatRange in = in_float.bounds();
        const FloatRange factor = gain.boundsOr(kUnsetStepRange);
        const FloatRange added = offset.boundsOr(kUnsetStepRange);
        const FloatRange exponent = gamma.boundsOr(kUnsetStepRange);
        *lower = lowerGamma(lowerGain(in.lower, factor.lower, added.lower), exponent.lower, exponent.upper);
        *upper = upperGamma(upperGain(in.upper, factor.upper, added.upper), exponent.lower, exponent.upper);
    }

private:
    FloatInput in_float, gain, offset, gamma;
    int clamp = 0;
    float clamp_min = 0.0f, clamp_max = 0.0f;
};

using TexFloatCorrectParams = KindParams<TexFloatCorrect>;
using TexFloatCorrectDesc = KindDesc<TexFloatCorrect, TexFloatCorrectParams>;
TexFloatCorrectDesc texFloatCorrectDesc;

} // namespace

} // namespace nezaiva
