// TexComposite: composes two colours, alpha included, by one of nine operations and a factor.

#include "kernels/color/composite.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures/expr/gpu_source_helper.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr AColor kDefaultColor{1.0f, 1.0f, 1.0f, 1.0f};
constexpr float kDefaultAlpha = 1.0f;
constexpr float kDefaultFactor = 0.0f;
constexpr int kDefaultOperation = kAdd;

constexpr AColor kUnknownOperationColor{1.0f, 1.0f, 1.0f, 1.0f};
constexpr ColorRange kUnknownOperationRange{{0.0f, 0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f, 1.0f}};

constexpr ColorRange kUnsetColorRange{kDefaultColor, kDefaultColor};
constexpr FloatRange kUnsetAlphaRange{kDefaultAlpha, kDefaultAlpha};
// Kept as is: in the bounds an unset factor is 1, not the 0 that it evaluates to.
constexpr FloatRange kUnsetFactorRange{1.0f, 1.0f};

// The operations' GPU forms.
constexpr const char* kExpressions[kCompositeOperationCount] = {
    "(+ a (* b f))",
    "(+ a (* (- b 1) f))",
    "(lerp a b f)",
    "(* a (+ (* b f) (- 1 f)))",
    "(- (+ a (* b f)) (* a (* b f)))",
    "(overlay a b f)",
    "(abs (- a (* b f)))",
    "(clamp (lerp a (/ a (max (- 1 b) 0.00001)) f) a b)",
    "(clamp (lerp a (- 1 (/ a (max (- 1 b) 0.00001))) f) a b)",
};

class TexCompositeParams : public OmbrixParameterListDesc {
public:
    TexCompositeParams()
    {
        addParamTexture("color_a", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_a", kDefaultAlpha, -1, nullptr, nullptr);
        addParamTexture("color_b", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_b", kDefaultAlpha, -1, nullptr, nullptr);
        addParamInt("operation", kDefaultOperation, -1, nullptr, nullptr);
        addParamTextureFloat("factor", kDefaultFactor, -1, nullptr, nullptr);
    }
};

class TexComposite final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexComposite(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("color_a", &color_a);
        paramList->setParamCache("alpha_a", &alpha_a);
        paramList->setParamCache("color_b", &color_b);
        paramList->setParamCache("alpha_b", &alpha_b);
        paramList->setParamCache("operation", &operation);
        paramList->setParamCache("factor", &factor);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const float aAlpha = floatOr(alpha_a, kDefaultAlpha, context);
        const float bAlpha = floatOr(alpha_b, kDefaultAlpha, context);
        float f = floatOr(factor, kDefaultFactor, context);
        const AColor a = colorOr(color_a, kDefaultColor, context);
        const AColor b = colorOr(color_b, kDefaultColor, context);
        f = f < 1.0f ? f : 1.0f; // a factor that is not a number counts as 1
        if (f <= 0.0f) {
            *result = {a.r, a.g, a.b, aAlpha};
        } else if (isCompositeOperation(operation)) {
            const auto composed = [this, f](float x, float y) { return composite(x, y, f, operation); };
            *result = withAlpha(eachChannel(composed, a, b), composed(aAlpha, bAlpha));
        } else {
            *result = kUnknownOperationColor;
        }
        return result;
    }

    // The factor's bounds are not limited to 1.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!isCompositeOperation(operation)) {
            *lower = kUnknownOperationRange.lower;
            *upper = kUnknownOperationRange.upper;
            return;
        }
        const ColorRange a = rangeOr(color_a, kUnsetColorRange);
        const FloatRange aAlpha = rangeOr(alpha_a, kUnsetAlphaRange);
        const ColorRange b = rangeOr(color_b, kUnsetColorRange);
        const FloatRange bAlpha = rangeOr(alpha_b, kUnsetAlphaRange);
        const FloatRange f = rangeOr(factor, kUnsetFactorRange);
        const auto smaller = [this, f](float x, float y) {
            return lowerComposite(x, y, f.lower, f.upper, operation);
        };
        const auto larger = [this, f](float x, float y) {
            return upperComposite(x, y, f.lower, f.upper, operation);
        };
        *lower = withAlpha(eachChannel(smaller, a.lower, b.lower), smaller(aAlpha.lower, bAlpha.lower));
        *upper = withAlpha(eachChannel(larger, a.upper, b.upper), larger(aAlpha.upper, bAlpha.upper));
    }

    // The alphas do not reach the GPU. An unknown operation writes nothing.
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        GPUSourceHelper helper(name, tag, descriptor, source, data);
        helper.addPluginVariable("a", color_a);
        helper.addPluginVariable("b", color_b);
        helper.addPluginVariable("f", factor);
        // On the GPU an unset factor is 0, as in the evaluation.
        if (rangeOr(factor, {kDefaultFactor, kDefaultFactor}).upper <= 0.0f)
            helper.evaluate("a");
        else if (isCompositeOperation(operation))
            helper.evaluate(kExpressions[operation]);
        return 1;
    }

private:
    TextureInterface* color_a = nullptr;
    TextureFloatInterface* alpha_a = nullptr;
    TextureInterface* color_b = nullptr;
    TextureFloatInterface* alpha_b = nullptr;
    int operation = 0;
    TextureFloatInterface* factor = nullptr;
};

class TexCompositeDesc : public DescOf<TexComposite, TexCompositeParams> {
public:
    TexCompositeDesc()
        : DescOf({2015101214,
                  "TexComposite",
                  "Compose two textures. In-efficient GPU implementation, use any of the Color-correction "
                  "related textures for Ombrix GPU instead. [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexCompositeDesc texCompositeDesc;

} // namespace

} // namespace nezaiva
