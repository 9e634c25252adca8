// TexColorConstant: passes a colour on with an alpha of its own. The alpha that the input colour carries
// is dropped, also when no alpha is connected.

#include "plugin_frame/fallbacks.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures/expr/gpu_source_helper.h"

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr AColor kDefaultColor{1.0f, 1.0f, 1.0f, 1.0f};
constexpr float kDefaultAlpha = 1.0f;

class TexColorConstantParams : public OmbrixParameterListDesc {
public:
    TexColorConstantParams()
    {
        addParamTexture("color", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("alpha", kDefaultAlpha, -1, nullptr, nullptr);
    }
};

class TexColorConstant final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexColorConstant(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("color", &color);
        paramList->setParamCache("alpha", &alpha);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        writeColorOr(result, color, kDefaultColor, context);
        result->a = floatOr(alpha, kDefaultAlpha, context);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (color)
            color->evalColorBounds(lower, upper);
        else
            *lower = *upper = kDefaultColor;
        if (alpha)
            alpha->evalFloatBounds(&lower->a, &upper->a);
        else
            lower->a = upper->a = kDefaultAlpha;
    }

    // The alpha input does not reach the GPU.
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        GPUSourceHelper helper(name, tag, descriptor, source, data);
        helper.addPluginVariable("inputColor", color);
        helper.evaluate("inputColor");
        return 1;
    }

private:
    TextureInterface* color = nullptr;
    TextureFloatInterface* alpha = nullptr;
};

class TexColorConstantDesc : public DescOf<TexColorConstant, TexColorConstantParams> {
public:
    TexColorConstantDesc()
        : DescOf({2015101513,
                  "TexColorConstant",
                  "Yield a constant color [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexColorConstantDesc texColorConstantDesc;

} // namespace

} // namespace nezaiva
