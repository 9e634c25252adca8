// TexVectorToColor: a vector's components as red, green and blue of an opaque colour.

#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr Vector kDefaultInput; // zero; also what an unset input reads as

AColor opaque(const Vector& v)
{
    return {v.x, v.y, v.z, 1.0f};
}

class TexVectorToColorParams : public OmbrixParameterListDesc {
public:
    TexVectorToColorParams()
    {
        addParamTextureVector("input", kDefaultInput, -1, nullptr, nullptr);
        addOutputParamTexture("color", nullptr, nullptr);
    }
};

class TexVectorToColor final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexVectorToColor(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("input", &input);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        Vector v = kDefaultInput;
        if (input) input->evalVector(&v, context);
        *result = opaque(v);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        Vector low = kDefaultInput;
        Vector high = kDefaultInput;
        if (input) {
            // What the input leaves unwritten is 0 below and 1 above.
            low = {0.0f, 0.0f, 0.0f};
            high = {1.0f, 1.0f, 1.0f};
            input->evalVectorBounds(&low, &high);
        }
        *lower = opaque(low);
        *upper = opaque(high);
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        return RTTexInterface::getRTTexSource(input, name, tag, descriptor, source, data);
    }

private:
    TextureVectorInterface* input = nullptr;
};

class TexVectorToColorDesc : public DescOf<TexVectorToColor, TexVectorToColorParams> {
public:
    TexVectorToColorDesc()
        : DescOf({2008082703,
                  "TexVectorToColor",
                  "Converts a vector texture to color texture [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexVectorToColorDesc texVectorToColorDesc;

} // namespace

} // namespace nezaiva
