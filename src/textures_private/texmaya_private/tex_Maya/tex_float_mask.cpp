// TexFloatMask: takes a mask away from a float, below 0 too. It has no GPU form.

#include "kernels/color/mask.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr float kDefaultInFloat = 1.0f; // also what it reads as when unset
constexpr float kDeclaredMask = 1.0f;
constexpr float kUnsetMask = 0.0f; // Kept as is: an unset mask takes nothing away.

constexpr FloatRange kUnsetInRange{1.0f, 1.0f};
constexpr FloatRange kUnsetMaskRange{0.0f, 0.0f};

class TexFloatMaskParams : public OmbrixParameterListDesc {
public:
    TexFloatMaskParams()
    {
        addParamTextureFloat("in_float", kDefaultInFloat, -1, nullptr, nullptr);
        addParamTextureFloat("mask", kDeclaredMask, -1, nullptr, nullptr);
    }
};

class TexFloatMask final : public OmbrixTextureFloat {
public:
    explicit TexFloatMask(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("in_float", &in_float);
        paramList->setParamCache("mask", &mask);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const float v = floatOr(in_float, kDefaultInFloat, context);
        const float k = floatOr(mask, kUnsetMask, context);
        return k > kNoMask ? v - k : v;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        const FloatRange in = rangeOr(in_float, kUnsetInRange);
        const FloatRange taken = rangeOr(mask, kUnsetMaskRange);
        *lower = in.lower - taken.upper;
        *upper = in.upper - taken.lower;
    }

private:
    TextureFloatInterface* in_float = nullptr;
    TextureFloatInterface* mask = nullptr;
};

class TexFloatMaskDesc : public DescOf<TexFloatMask, TexFloatMaskParams> {
public:
    TexFloatMaskDesc()
        : DescOf({2017022615,
                  "TexFloatMask",
                  "Mask a number [gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexFloatMaskDesc texFloatMaskDesc;

} // namespace

} // namespace nezaiva
