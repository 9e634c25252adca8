// TexColorCondition: one of two colours, chosen by a float. The input that is not taken is not evaluated.

#include "plugin_frame/fallbacks.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/condition.h"

#include <algorithm>

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr AColor kDefaultColor{1.0f, 1.0f, 1.0f, 1.0f};
constexpr float kDefaultAlpha = 1.0f;
constexpr float kDefaultCondition = 0.0f;

class TexColorConditionParams : public OmbrixParameterListDesc {
public:
    TexColorConditionParams()
    {
        addParamTexture("color_a", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_a", kDefaultAlpha, -1, nullptr, nullptr);
        addParamTexture("color_b", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_b", kDefaultAlpha, -1, nullptr, nullptr);
        addParamTextureFloat("condition", kDefaultCondition, -1, nullptr, nullptr);
    }
};

class TexColorCondition final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexColorCondition(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("color_a", &color_a);
        paramList->setParamCache("alpha_a", &alpha_a);
        paramList->setParamCache("color_b", &color_b);
        paramList->setParamCache("alpha_b", &alpha_b);
        paramList->setParamCache("condition", &condition);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const bool takeA = choosesA(condition, context);
        writeColorOr(result, takeA ? color_a : color_b, kDefaultColor, context);
        result->a = floatOr(takeA ? alpha_a : alpha_b, kDefaultAlpha, context);
        return result;
    }

    // Kept as is: the lower result takes what the upper bounds are, and the upper result is written only
    // when a colour is unset.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!color_a || !color_b) {
            *lower = {0.0f, 0.0f, 0.0f, 0.0f};
            *upper = {1.0f, 1.0f, 1.0f, 1.0f};
        } else {
            AColor lowerA, lowerB;
            AColor upperA{1.0f, 1.0f, 1.0f, 1.0f}, upperB{1.0f, 1.0f, 1.0f, 1.0f};
            color_a->evalColorBounds(&lowerA, &upperA);
            color_b->evalColorBounds(&lowerB, &upperB);
            lower->r = std::max(upperA.r, upperB.r);
            lower->g = std::max(upperA.g, upperB.g);
            lower->b = std::max(upperA.b, upperB.b);
        }
        lower->a = upperAlphaBound();
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        SlotText slots(name, tag, descriptor, source, data);
        slots.inputOr(condition, kUnsetConditionSlot);
        slots.inputOr(color_b, kUnsetInputSlot);
        slots.inputOr(alpha_b, kUnsetInputSlot);
        slots.inputOr(color_a, kUnsetInputSlot);
        slots.inputOr(alpha_a, kUnsetInputSlot);
        slots.builtin(kConditionOperator);
        return 1;
    }

private:
    // The larger upper bound of both alphas, 1 unless both are connected.
    float upperAlphaBound()
    {
        if (!alpha_a || !alpha_b) return 1.0f;
        float lowerA = 0.0f, upperA = 1.0f;
        float lowerB = 0.0f, upperB = 1.0f;
        alpha_a->evalFloatBounds(&lowerA, &upperA);
        alpha_b->evalFloatBounds(&lowerB, &upperB);
        return std::max(upperA, upperB);
    }

    TextureInterface* color_a = nullptr;
    TextureFloatInterface* alpha_a = nullptr;
    TextureInterface* color_b = nullptr;
    TextureFloatInterface* alpha_b = nullptr;
    TextureFloatInterface* condition = nullptr;
};

class TexColorConditionDesc : public DescOf<TexColorCondition, TexColorConditionParams> {
public:
    TexColorConditionDesc()
        : DescOf({2015101514,
                  "TexColorCondition",
                  "Output either color A or B depending on condition [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexColorConditionDesc texColorConditionDesc;

} // namespace

} // namespace nezaiva
