// TexFloatCorrect: gain, offset, gamma and clamp of a float. It has no GPU form.

#include "kernels/color/correct.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr float kDeclaredInFloat = 1.0f; // also what it reads as when unset
constexpr float kDeclaredStep = 0.0f;    // of gain, offset and gamma
constexpr int kDefaultClamp = 0;
constexpr float kDefaultClampMin = 0.0f;
constexpr float kDefaultClampMax = 1.0f;

// Kept as is: unset, these differ from their declared default, and once more in the bounds.
constexpr float kUnsetGain = 1.0f;
constexpr float kUnsetOffset = 1.0f;
constexpr FloatRange kUnsetInRange{1.0f, 1.0f};
constexpr FloatRange kUnsetStepRange{0.0f, 0.0f};

class TexFloatCorrectParams : public OmbrixParameterListDesc {
public:
    TexFloatCorrectParams()
    {
        addParamTextureFloat("in_float", kDeclaredInFloat, -1, nullptr, nullptr);
        addParamTextureFloat("gain", kDeclaredStep, -1, nullptr, nullptr);
        addParamTextureFloat("offset", kDeclaredStep, -1, nullptr, nullptr);
        addParamTextureFloat("gamma", kDeclaredStep, -1, nullptr, nullptr);
        addParamInt("clamp", kDefaultClamp, -1, nullptr, nullptr);
        addParamFloat("clamp_min", kDefaultClampMin, -1, nullptr, nullptr);
        addParamFloat("clamp_max", kDefaultClampMax, -1, nullptr, nullptr);
    }
};

class TexFloatCorrect final : public OmbrixTextureFloat {
public:
    explicit TexFloatCorrect(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("in_float", &in_float);
        paramList->setParamCache("gain", &gain);
        paramList->setParamCache("offset", &offset);
        paramList->setParamCache("gamma", &gamma);
        paramList->setParamCache("clamp", &clamp);
        paramList->setParamCache("clamp_min", &clamp_min);
        paramList->setParamCache("clamp_max", &clamp_max);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const float in = floatOr(in_float, kDeclaredInFloat, context);
        const float factor = floatOr(gain, kUnsetGain, context);
        float v = in * factor + floatOr(offset, kUnsetOffset, context);
        // Kept as is: the gain is read once more and acts as the gamma, which plays no part here.
        if (gain) v = gammaStep(v, gain->evalFloat(context));
        if (clamp != 0) v = clampStep(v, clamp_min, clamp_max);
        return v;
    }

    // Kept as is: here the gamma is the parameter of that name, and the clamp does not narrow the bounds.
    void evalFloatBounds(float* lower, float* upper) override
    {
        const FloatRange in = rangeOr(in_float, kUnsetInRange);
        const FloatRange factor = rangeOr(gain, kUnsetStepRange);
        const FloatRange added = rangeOr(offset, kUnsetStepRange);
        const FloatRange exponent = rangeOr(gamma, kUnsetStepRange);
        *lower = lowerGamma(lowerGain(in.lower, factor.lower, added.lower), exponent.lower, exponent.upper);
        *upper = upperGamma(upperGain(in.upper, factor.upper, added.upper), exponent.lower, exponent.upper);
    }

private:
    TextureFloatInterface* in_float = nullptr;
    TextureFloatInterface* gain = nullptr;
    TextureFloatInterface* offset = nullptr;
    TextureFloatInterface* gamma = nullptr;
    int clamp = 0;
    float clamp_min = 0.0f;
    float clamp_max = 0.0f;
};

class TexFloatCorrectDesc : public DescOf<TexFloatCorrect, TexFloatCorrectParams> {
public:
    TexFloatCorrectDesc()
        : DescOf({2017032220,
                  "TexFloatCorrect",
                  "Correct a number by specifying gain, offset, gamma correction and clamping "
                  "[gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexFloatCorrectDesc texFloatCorrectDesc;

} // namespace

} // namespace nezaiva
