// TexFloatLogic: 1 where a comparison of two floats holds, else 0.

#include "kernels/color/compare.h"
#include "plugin_frame/fallbacks.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/logic_source.h"

namespace nezaiva {

namespace {

constexpr float kDefaultInput = 1.0f; // also what unset inputs read as
constexpr int kDefaultOperation = kEqual;

class TexFloatLogicParams : public OmbrixParameterListDesc {
public:
    TexFloatLogicParams()
    {
        addParamTextureFloat("float_a", kDefaultInput, -1, nullptr, nullptr);
        addParamTextureFloat("float_b", kDefaultInput, -1, nullptr, nullptr);
        addParamInt("operation", kDefaultOperation, -1, nullptr, nullptr);
    }
};

class TexFloatLogic final : public OmbrixTextureFloat, public RTTexInterface {
public:
    explicit TexFloatLogic(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("float_a", &float_a);
        paramList->setParamCache("float_b", &float_b);
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
        const float a = floatOr(float_a, kDefaultInput, context);
        const float b = floatOr(float_b, kDefaultInput, context);
        return compareFloats(a, b, operation) ? 1.0f : 0.0f;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = 0.0f;
        *upper = 1.0f;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        return writeLogicSource(float_a, float_b, operation, name, tag, descriptor, source, data);
    }

private:
    TextureFloatInterface* float_a = nullptr;
    TextureFloatInterface* float_b = nullptr;
    int operation = 0;
};

class TexFloatLogicDesc : public DescOf<TexFloatLogic, TexFloatLogicParams> {
public:
    TexFloatLogicDesc()
        : DescOf({2017022713,
                  "TexFloatLogic",
                  "Compare numbers [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexFloatLogicDesc texFloatLogicDesc;

} // namespace

} // namespace nezaiva
