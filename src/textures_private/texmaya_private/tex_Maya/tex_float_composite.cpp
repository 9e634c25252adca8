// TexFloatComposite: composes two floats by one of nine operations and a factor. It has no GPU form.

#include "kernels/color/composite.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr float kDefaultFloat = 1.0f;
constexpr float kDefaultFactor = 0.0f;
constexpr int kDefaultOperation = kAdd;

class TexFloatCompositeParams : public OmbrixParameterListDesc {
public:
    TexFloatCompositeParams()
    {
        addParamTextureFloat("float_a", kDefaultFloat, -1, nullptr, nullptr);
        addParamTextureFloat("float_b", kDefaultFloat, -1, nullptr, nullptr);
        addParamInt("operation", kDefaultOperation, -1, nullptr, nullptr);
        addParamTextureFloat("factor", kDefaultFactor, -1, nullptr, nullptr);
    }
};

class TexFloatComposite final : public OmbrixTextureFloat {
public:
    explicit TexFloatComposite(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("float_a", &float_a);
        paramList->setParamCache("float_b", &float_b);
        paramList->setParamCache("operation", &operation);
        paramList->setParamCache("factor", &factor);
    }

    // Kept as is: unlike a colour's factor, a float's is not limited to 1, and an unknown operation gives
    // the first input.
    float evalFloat(const OmbrixContext& context) override
    {
        const float f = floatOr(factor, kDefaultFactor, context);
        const float a = floatOr(float_a, kDefaultFloat, context);
        if (f <= 0.0f) return a;
        return composite(a, floatOr(float_b, kDefaultFloat, context), f, operation);
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        const FloatRange a = rangeOr(float_a, {kDefaultFloat, kDefaultFloat});
        const FloatRange b = rangeOr(float_b, {kDefaultFloat, kDefaultFloat});
        const FloatRange f = rangeOr(factor, {kDefaultFactor, kDefaultFactor});
        *lower = lowerComposite(a.lower, b.lower, f.lower, f.upper, operation);
        *upper = upperComposite(a.upper, b.upper, f.lower, f.upper, operation);
    }

private:
    TextureFloatInterface* float_a = nullptr;
    TextureFloatInterface* float_b = nullptr;
    int operation = 0;
    TextureFloatInterface* factor = nullptr;
};

class TexFloatCompositeDesc : public DescOf<TexFloatComposite, TexFloatCompositeParams> {
public:
    TexFloatCompositeDesc()
        : DescOf({2017022718,
                  "TexFloatComposite",
                  "Compose two numbers [gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexFloatCompositeDesc texFloatCompositeDesc;

} // namespace

} // namespace nezaiva
