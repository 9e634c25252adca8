// TexMayaContrast: pushes the channels of a colour away from a bias.

#include "kernels/color/maya_contrast.h"
#include "plugin_frame/common_texture.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"
#include "textures_private/texmaya_private/tex_Maya/operator_source.h"

namespace nezaiva {

namespace {

// Also what unset inputs read as, on the GPU too.
constexpr AColor kDefaultValue{0.0f, 0.0f, 0.0f, 1.0f};
constexpr AColor kDefaultContrast{2.0f, 2.0f, 2.0f, 1.0f};
constexpr AColor kDefaultBias{0.5f, 0.5f, 0.5f, 1.0f};

constexpr int kContrastOperator = -926; // consumes three slots

class TexMayaContrastParams : public OmbrixParameterListDesc {
public:
    TexMayaContrastParams()
    {
        addParamTexture("value", kDefaultValue, -1, nullptr, nullptr);
        addParamTexture("contrast", kDefaultContrast, -1, nullptr, nullptr);
        addParamTexture("bias", kDefaultBias, -1, nullptr, nullptr);
    }
};

class TexMayaContrast final : public OmbrixCachedTexture, public RTTexInterface {
public:
    explicit TexMayaContrast(OmbrixPluginDesc* desc) : OmbrixCachedTexture(desc)
    {
        paramList->setParamCache("value", &value);
        paramList->setParamCache("contrast", &contrast);
        paramList->setParamCache("bias", &bias);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixCachedTexture::getInterface(id);
    }

    AColor* evalColorUncached(AColor* result, const OmbrixContext& context) override
    {
        const AColor x = colorOr(value, kDefaultValue, context);
        const AColor c = colorOr(contrast, kDefaultContrast, context);
        const AColor b = colorOr(bias, kDefaultBias, context);
        *result = withAlpha(eachChannel(contrasted, x, c, b), x.a);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange x = rangeOr(value, {kDefaultValue, kDefaultValue});
        const ColorRange c = rangeOr(contrast, {kDefaultContrast, kDefaultContrast});
        const ColorRange b = rangeOr(bias, {kDefaultBias, kDefaultBias});
        *lower = withAlpha(eachChannel(leastContrasted, x.lower, c.lower, c.upper, b.upper), x.lower.a);
        *upper = withAlpha(eachChannel(greatestContrasted, x.upper, c.lower, c.upper, b.lower), x.upper.a);
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        OperatorSource text(name, tag, descriptor, source, data);
        text.inputSlotOr(value, kDefaultValue);
        text.inputSlotOr(bias, kDefaultBias);
        text.inputSlotOr(contrast, kDefaultContrast);
        text.builtin(kContrastOperator);
        return 1;
    }

private:
    TextureInterface* value = nullptr;
    TextureInterface* contrast = nullptr;
    TextureInterface* bias = nullptr;
};

class TexMayaContrastDesc : public DescOf<TexMayaContrast, TexMayaContrastParams> {
public:
    TexMayaContrastDesc()
        : DescOf({2009022001,
                  "TexMayaContrast",
                  "Applies contrast correction to the input texture [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexMayaContrastDesc texMayaContrastDesc;

} // namespace

} // namespace nezaiva
