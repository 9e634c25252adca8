// TexFloatCondition: one of two floats, chosen by a third. The input that is not taken is not evaluated.

#include "plugin_frame/fallbacks.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/condition.h"

namespace nezaiva {

namespace {

constexpr float kDefaultFloat = 1.0f; // also what an unset input reads as
constexpr float kDefaultCondition = 0.0f;

class TexFloatConditionParams : public OmbrixParameterListDesc {
public:
    TexFloatConditionParams()
    {
        addParamTextureFloat("float_a", kDefaultFloat, -1, nullptr, nullptr);
        addParamTextureFloat("float_b", kDefaultFloat, -1, nullptr, nullptr);
        addParamTextureFloat("condition", kDefaultCondition, -1, nullptr, nullptr);
    }
};

class TexFloatCondition final : public OmbrixTextureFloat, public RTTexInterface {
public:
    explicit TexFloatCondition(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("float_a", &float_a);
        paramList->setParamCache("float_b", &float_b);
        paramList->setParamCache("condition", &condition);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTextureFloat::getInterface(id);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        return floatOr(choosesA(condition, context) ? float_a : float_b, kDefaultFloat, context);
    }

    // Kept as is: with both inputs connected their bounds are asked for and dropped, and neither result
    // is written.
    void evalFloatBounds(float* lower, float* upper) override
    {
        if (!float_a || !float_b) {
            *lower = 0.0f;
            *upper = 1.0f;
            return;
        }
        float droppedLower = 0.0f, droppedUpper = 1.0f;
        float_a->evalFloatBounds(&droppedLower, &droppedUpper);
        float_b->evalFloatBounds(&droppedLower, &droppedUpper);
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        SlotText slots(name, tag, descriptor, source, data);
        slots.inputOr(condition, kUnsetConditionSlot);
        slots.inputOr(float_b, kUnsetInputSlot);
        slots.constant(kUnsetInputSlot);
        slots.inputOr(float_a, kUnsetInputSlot);
        slots.constant(kUnsetInputSlot);
        slots.builtin(kConditionOperator);
        return 1;
    }

private:
    TextureFloatInterface* float_a = nullptr;
    TextureFloatInterface* float_b = nullptr;
    TextureFloatInterface* condition = nullptr;
};

class TexFloatConditionDesc : public DescOf<TexFloatCondition, TexFloatConditionParams> {
public:
    TexFloatConditionDesc()
        : DescOf({2017022418,
                  "TexFloatCondition",
                  "Output either float A or B depending on condition [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE_FLOAT}})
    {
    }
};
TexFloatConditionDesc texFloatConditionDesc;

} // namespace

} // namespace nezaiva
