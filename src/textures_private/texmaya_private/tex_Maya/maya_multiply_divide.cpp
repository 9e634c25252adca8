// MayaMultiplyDivide: the product, the quotient or the power of two colours, channel by channel.

#include "kernels/color/multiply_divide.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/depth_memo.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"
#include "textures_private/texmaya_private/tex_Maya/operator_source.h"

namespace nezaiva {

namespace {

constexpr AColor kDefaultColor{1.0f, 1.0f, 1.0f, 1.0f};
constexpr Color kUnsetColor{1.0f, 1.0f, 1.0f};
constexpr ColorRange kUnsetRange{{1.0f, 1.0f, 1.0f, 1.0f}, {1.0f, 1.0f, 1.0f, 1.0f}};
// Kept as is: on the GPU an unset colour is black, not white.
constexpr const char* kUnsetSlot = "color 0.0 0.0 0.0 0.0\n";
constexpr int kMultiplyDivideOperator = -956; // consumes two slots

class MultiplyDivideParams : public OmbrixParameterListDesc {
public:
    MultiplyDivideParams()
    {
        addParamTexture("color1", kDefaultColor, -1, "First color", nullptr);
        addParamTexture("color2", kDefaultColor, -1, "Second color", nullptr);
        addParamInt("operation", kMultiply, -1, "Operation (1 - multiply, 2 - divide, 3 - power)",
                    "enum=(1:Multiply; 2:Divide; 3:Power)");
        addOutputParamTexture("color", "The resulting color", nullptr);
    }
};

// Does the work of the plugin, and answers its output parameter.
class MultiplyDivideTex : public PluginBase, public TextureInterface, public RTTexInterface {
public:
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        if (id == EXT_TEXTURE) return static_cast<TextureInterface*>(this);
        return PluginBase::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        if (const AColor* known = memo.find(context)) {
            *result = *known;
            return result;
        }
        const Color a = rgbOr(color1, kUnsetColor, context);
        const Color b = rgbOr(color2, kUnsetColor, context);
        *result = withAlpha(multiplyDivide(a, b, operation), 1.0f);
        memo.store(context, *result);
        return result;
    }

    // Kept as is: nothing guards the bounds against a division by zero, and an operation outside the
    // enumeration leaves red, green and blue unwritten.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (const ChannelFormula formula = multiplyDivideFormula(operation)) {
            const ColorRange a = rangeOr(color1, kUnsetRange);
            const ColorRange b = rangeOr(color2, kUnsetRange);
            *lower = withAlpha(leastOfPairs(formula, a, b), 1.0f);
            *upper = withAlpha(greatestOfPairs(formula, a, b), 1.0f);
        }
        lower->a = upper->a = 1.0f;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        OperatorSource text(name, tag, descriptor, source, data);
        text.inputSlotOr(color1, kUnsetSlot);
        text.inputSlotOr(color2, kUnsetSlot);
        text.builtin(kMultiplyDivideOperator);
        text.operands(static_cast<float>(operation), 0.0f);
        return 1;
    }

    TextureInterface* color1 = nullptr;
    TextureInterface* color2 = nullptr;
    int operation = 0;
    DepthMemo memo;
};

class MultiplyDivide final : public OmbrixTexture, public RTTexInterface {
public:
    explicit MultiplyDivide(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("color1", &tex.color1);
        paramList->setParamCache("color2", &tex.color2);
        paramList->setParamCache("operation", &tex.operation);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(&tex));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    void renderBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::renderBegin(renderer);
        tex.memo.build(renderer->getThreadCount());
    }
    void renderEnd(OmbrixRenderer* renderer) override
    {
        tex.memo.clear();
        OmbrixTexture::renderEnd(renderer);
    }
    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        tex.memo.reset();
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return tex.evalColor(result, context);
    }
    void evalColorBounds(AColor* lower, AColor* upper) override { tex.evalColorBounds(lower, upper); }
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        return tex.getSource(name, tag, descriptor, source, data);
    }

private:
    MultiplyDivideTex tex;
};

class MultiplyDivideDesc : public DescOf<MultiplyDivide, MultiplyDivideParams> {
public:
    MultiplyDivideDesc()
        : DescOf({2006072902,
                  "MayaMultiplyDivide",
                  "Provides multiplication/division of two input textures. Subset of TexAColorOp. "
                  "[gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
MultiplyDivideDesc multiplyDivideDesc;

} // namespace

} // namespace nezaiva
