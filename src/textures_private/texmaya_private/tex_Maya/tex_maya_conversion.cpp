// TexMayaConversion: a float times a constant. It has no GPU form.

#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr float kDefaultInput = 0.0f;
constexpr float kDefaultConversionFactor = 1.0f;
constexpr float kUnsetResult = 0.0f; // whatever the factor is, also where it is not finite

class TexMayaConversionParams : public OmbrixParameterListDesc {
public:
    TexMayaConversionParams()
    {
        addParamTextureFloat("input", kDefaultInput, -1, nullptr, nullptr);
        addParamFloat("conversion_factor", kDefaultConversionFactor, -1, nullptr, nullptr);
        addOutputParamTextureFloat("output", nullptr, nullptr);
    }
};

class TexMayaConversion final : public OmbrixTextureFloat {
public:
    explicit TexMayaConversion(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("input", &input);
        paramList->setParamCache("conversion_factor", &conversion_factor);
        paramList->setOutputParamCache("output", static_cast<TextureFloatInterface*>(this));
    }

    float evalFloat(const OmbrixContext& context) override
    {
        return input ? input->evalFloat(context) * conversion_factor : kUnsetResult;
    }

    // Kept as is: a negative factor leaves the bounds in the wrong order.
    void evalFloatBounds(float* lower, float* upper) override
    {
        if (!input) {
            *lower = *upper = kUnsetResult;
            return;
        }
        const FloatRange in = rangeOr(input, {});
        *lower = in.lower * conversion_factor;
        *upper = in.upper * conversion_factor;
    }

private:
    TextureFloatInterface* input = nullptr;
    float conversion_factor = 0.0f;
};

class TexMayaConversionDesc : public DescOf<TexMayaConversion, TexMayaConversionParams> {
public:
    TexMayaConversionDesc()
        : DescOf({2010041401,
                  "TexMayaConversion",
                  "Multiplies a scalar texture with a scalar factor. Doable with TexAColorOp. "
                  "[gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexMayaConversionDesc texMayaConversionDesc;

} // namespace

} // namespace nezaiva
