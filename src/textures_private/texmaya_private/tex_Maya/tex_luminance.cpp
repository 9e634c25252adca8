// TexLuminance: the luminance of a colour as a float.

#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr int kLuminanceOperator = -936; // consumes the input's slot

class TexLuminanceParams : public OmbrixParameterListDesc {
public:
    TexLuminanceParams()
    {
        addParamTexture("input", -1, nullptr, nullptr);
        addOutputParamTextureFloat("luminance", nullptr, nullptr);
    }
};

class TexLuminance final : public OmbrixTextureFloat, public RTTexInterface {
public:
    explicit TexLuminance(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("input", &input);
        paramList->setOutputParamCache("luminance", static_cast<TextureFloatInterface*>(this));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTextureFloat::getInterface(id);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        return input ? luminance(colorOr(input, {}, context)) : 0.0f;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        const ColorRange in = rangeOr(input, {});
        *lower = luminance(in.lower);
        *upper = luminance(in.upper);
    }

    // Kept as is: the input's own gradient, not weighed as its colour is.
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override
    {
        if (!input) return OmbrixTextureFloat::evalFloatGradient(result, context);
        input->evalColorGradient(result, context);
        return result;
    }

    int getSource(const char* /*name*/, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        if (!RTTexInterface::getRTTexSource(input, "color", tag, descriptor, source, data))
            source.printf("color %f %f %f %f\n", 0.0, 0.0, 0.0, 0.0);
        source.printf("subtex\n");
        source.printf("uvw_transform %g, %g, %g, %g, %g, %g, %g, %g, %g, %g, %g, %g\n", 0.0, -1.0, -1.0, -1.0,
                      -1.0, -1.0, -1.0, -1.0, -1.0, -1.0, -1.0, -1.0);
        source.printf("bitmap %i\n", kLuminanceOperator);
        return 1;
    }

private:
    TextureInterface* input = nullptr;
};

class TexLuminanceDesc : public DescOf<TexLuminance, TexLuminanceParams> {
public:
    // Kept as is: declared as a colour texture, while an instance is a float texture.
    TexLuminanceDesc()
        : DescOf({2009052801,
                  "TexLuminance",
                  "Wraps a color texture and outputs its luminance [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexLuminanceDesc texLuminanceDesc;

} // namespace

} // namespace nezaiva
