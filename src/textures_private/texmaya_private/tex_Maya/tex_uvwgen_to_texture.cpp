// TexUVWGenToTexture: shows the coordinates of a UVW generator as a colour.

#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr AColor kNoCoordinates{0.0f, 0.0f, 0.0f, 1.0f};
constexpr float kUnbounded = 1e18f;
constexpr int kCoordinatesOperator = -972;

class TexUVWGenToTextureParams : public OmbrixParameterListDesc {
public:
    TexUVWGenToTextureParams() { addParamPlugin("input", EXT_UVWGEN, -1, nullptr, nullptr); }
};

class TexUVWGenToTexture final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexUVWGenToTexture(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("input", &input);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        generator = input ? static_cast<UVWGenInterface*>(input->getInterface(EXT_UVWGEN)) : nullptr;
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        UVWSample sample;
        if (generator && generator->evalUVW(context, &sample))
            *result = {sample.uvw.x, sample.uvw.y, sample.uvw.z, 1.0f};
        else
            *result = kNoCoordinates;
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = {-kUnbounded, -kUnbounded, -kUnbounded, -kUnbounded};
        *upper = {kUnbounded, kUnbounded, kUnbounded, kUnbounded};
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        PluginInterface* gpuForm = input ? input->getInterface(EXT_RTTEX) : nullptr;
        if (!gpuForm) return 0;
        source.printf("bitmap %i\n", kCoordinatesOperator);
        return RTTexInterface::getRTTexSource(gpuForm, name, tag, descriptor, source, data);
    }

private:
    PluginBase* input = nullptr;
    UVWGenInterface* generator = nullptr; // that of the input, null when it has none
};

class TexUVWGenToTextureDesc : public DescOf<TexUVWGenToTexture, TexUVWGenToTextureParams> {
public:
    TexUVWGenToTextureDesc()
        : DescOf({2009021202,
                  "TexUVWGenToTexture",
                  "Converts UVW coordinates provided from a UVWGen plugin to color. Same as TexUVW. "
                  "[gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexUVWGenToTextureDesc texUVWGenToTextureDesc;

} // namespace

} // namespace nezaiva
