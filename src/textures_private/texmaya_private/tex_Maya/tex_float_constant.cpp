// TexFloatConstant: passes a float on. It has no GPU form.

#include "plugin_frame/fallbacks.h"
#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr float kDefaultFloat = 1.0f; // also what an unset input reads as

class TexFloatConstantParams : public OmbrixParameterListDesc {
public:
    TexFloatConstantParams() { addParamTextureFloat("in_float", kDefaultFloat, -1, nullptr, nullptr); }
};

class TexFloatConstant final : public OmbrixTextureFloat {
public:
    explicit TexFloatConstant(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("in_float", &in_float);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        return floatOr(in_float, kDefaultFloat, context);
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        if (in_float)
            in_float->evalFloatBounds(lower, upper);
        else
            *lower = *upper = kDefaultFloat;
    }

private:
    TextureFloatInterface* in_float = nullptr;
};

class TexFloatConstantDesc : public DescOf<TexFloatConstant, TexFloatConstantParams> {
public:
    TexFloatConstantDesc()
        : DescOf({2017022517,
                  "TexFloatConstant",
                  "Yield a constant float value [gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexFloatConstantDesc texFloatConstantDesc;

} // namespace

} // namespace nezaiva
