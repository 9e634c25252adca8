// FloatToTex: passes a float on, as a texture that an output parameter can be connected to.

#include "plugin_frame/fallbacks.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr float kDefaultInput = 0.0f; // also what an unset input reads as

class FloatToTexParams : public OmbrixParameterListDesc {
public:
    FloatToTexParams() { addParamTextureFloat("input", kDefaultInput, -1, nullptr, nullptr); }
};

class FloatToTex final : public OmbrixTextureFloat, public RTTexInterface {
public:
    explicit FloatToTex(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("input", &input);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTextureFloat::getInterface(id);
    }

    float evalFloat(const OmbrixContext& context) override { return floatOr(input, kDefaultInput, context); }

    void evalFloatBounds(float* lower, float* upper) override
    {
        if (input)
            input->evalFloatBounds(lower, upper);
        else
            *lower = *upper = kDefaultInput;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        return RTTexInterface::getRTTexSource(input, name, tag, descriptor, source, data);
    }

private:
    TextureFloatInterface* input = nullptr;
};

class FloatToTexDesc : public DescOf<FloatToTex, FloatToTexParams> {
public:
    // Kept as is: declared as a colour texture, while an instance is a float texture. The description ends
    // in the middle of a word.
    FloatToTexDesc()
        : DescOf({2009021002,
                  "FloatToTex",
                  "Converts a single scalar or scalar output parameter to a scalar texture. For passing to "
                  "parameters that won't work other",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
FloatToTexDesc floatToTexDesc;

} // namespace

} // namespace nezaiva
