// TexColorLogic: 1 where a comparison of two colours holds, else 0. In spite of its name it is a float
// texture.

#include "kernels/color/compare.h"
#include "plugin_frame/fallbacks.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/logic_source.h"

namespace nezaiva {

namespace {

// Kept as is: neither white nor black. Also what unset inputs read as.
constexpr AColor kDefaultInput{1.0f, 0.0f, 0.5f, 1.0f};
constexpr int kDefaultOperation = kEqual;

class TexColorLogicParams : public OmbrixParameterListDesc {
public:
    TexColorLogicParams()
    {
        addParamTexture("color_a", kDefaultInput, -1, nullptr, nullptr);
        addParamTexture("color_b", kDefaultInput, -1, nullptr, nullptr);
        addParamInt("operation", kDefaultOperation, -1, nullptr, nullptr);
    }
};

class TexColorLogic final : public OmbrixTextureFloat, public RTTexInterface {
public:
    explicit TexColorLogic(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("color_a", &color_a);
        paramList->setParamCache("color_b", &color_b);
        paramList->setParamCache("operation", &operation);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTextureFloat::getInterface(id);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const AColor a = colorOr(color_a, kDefaultInput, context);
        const AColor b = colorOr(color_b, kDefaultInput, context);
        return compareColors(a, b, operation) ? 1.0f : 0.0f;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = 0.0f;
        *upper = 1.0f;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        return writeLogicSource(color_a, color_b, operation, name, tag, descriptor, source, data);
    }

private:
    TextureInterface* color_a = nullptr;
    TextureInterface* color_b = nullptr;
    int operation = 0;
};

class TexColorLogicDesc : public DescOf<TexColorLogic, TexColorLogicParams> {
public:
    TexColorLogicDesc()
        : DescOf({2015101517,
                  "TexColorLogic",
                  "Compare colors [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexColorLogicDesc texColorLogicDesc;

} // namespace

} // namespace nezaiva
