// TexCondition2: one of two colours, chosen by comparing two floats. The colour that is not taken is not
// evaluated.

#include "kernels/color/condition2.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"
#include "textures_private/texmaya_private/tex_Maya/operator_source.h"

#include <algorithm>

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr float kDefaultTerm = 0.0f;
constexpr AColor kDefaultIfTrue{0.0f, 0.0f, 0.0f, 1.0f};
constexpr AColor kDefaultIfFalse{1.0f, 1.0f, 1.0f, 1.0f};

constexpr int kComparingOperator = -947; // consumes four slots

class TexCondition2Params : public OmbrixParameterListDesc {
public:
    TexCondition2Params()
    {
        addParamInt("operation", kTermsEqual, -1,
                    "0 : Equal; 1 : Not equal; 2 : Greater than; 3 : Greater or equal; 4 : Less than; 5 : "
                    "Less or equal",
                    "enum=(0:Equal; 1:Not equal; 2:Greater than; 3:Greater or equal; 4:Less than; 5:Less or "
                    "equal)");
        addParamTextureFloat("first_term", kDefaultTerm, -1, nullptr, nullptr);
        addParamTextureFloat("second_term", kDefaultTerm, -1, nullptr, nullptr);
        addParamTexture("color_if_true", kDefaultIfTrue, -1, nullptr, nullptr);
        addParamTexture("color_if_false", kDefaultIfFalse, -1, nullptr, nullptr);
    }
};

class TexCondition2 final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexCondition2(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("operation", &operation);
        paramList->setParamCache("first_term", &first_term);
        paramList->setParamCache("second_term", &second_term);
        paramList->setParamCache("color_if_true", &color_if_true);
        paramList->setParamCache("color_if_false", &color_if_false);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const float a = floatOr(first_term, kDefaultTerm, context);
        const float b = floatOr(second_term, kDefaultTerm, context);
        if (conditionHolds(a, b, operation))
            writeColorOr(result, color_if_true, kDefaultIfTrue, context);
        else
            writeColorOr(result, color_if_false, kDefaultIfFalse, context);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange a = rangeOr(color_if_true, {kDefaultIfTrue, kDefaultIfTrue});
        const ColorRange b = rangeOr(color_if_false, {kDefaultIfFalse, kDefaultIfFalse});
        for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b, &AColor::a}) {
            lower->*channel = std::min(a.lower.*channel, b.lower.*channel);
            upper->*channel = std::max(a.upper.*channel, b.upper.*channel);
        }
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        OperatorSource text(name, tag, descriptor, source, data);
        text.inputSlot(first_term);
        text.inputSlot(second_term);
        text.inputSlot(color_if_true);
        text.inputSlot(color_if_false);
        text.builtin(kComparingOperator);
        text.operands(static_cast<float>(gpuComparison(operation)), 1.0f);
        return 1;
    }

private:
    int operation = 0;
    TextureFloatInterface* first_term = nullptr;
    TextureFloatInterface* second_term = nullptr;
    TextureInterface* color_if_true = nullptr;
    TextureInterface* color_if_false = nullptr;
};

class TexCondition2Desc : public DescOf<TexCondition2, TexCondition2Params> {
public:
    TexCondition2Desc()
        : DescOf({2009021201,
                  "TexCondition2",
                  "Same as TexCondition, but supported by Ombrix GPU [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexCondition2Desc texCondition2Desc;

} // namespace

} // namespace nezaiva
