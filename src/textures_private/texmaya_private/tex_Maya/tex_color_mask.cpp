// TexColorMask: cuts a colour down by a mask. The stronger the mask, the more of its own colour shows and
// the more alpha is taken away, below 0 too.

#include "kernels/color/mask.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures/expr/gpu_source_helper.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

#include <algorithm>

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr Color kDefaultColor{1.0f, 1.0f, 1.0f};
constexpr float kDefaultAlpha = 1.0f;
constexpr float kDefaultPreserveColor = 0.0f;
constexpr float kDefaultMaskAlphaIsLuminance = 0.0f;

constexpr ColorRange kUnsetColorRange{{1.0f, 1.0f, 1.0f, 1.0f}, {1.0f, 1.0f, 1.0f, 1.0f}};
constexpr FloatRange kUnsetAlphaRange{1.0f, 1.0f};

class TexColorMaskParams : public OmbrixParameterListDesc {
public:
    TexColorMaskParams()
    {
        addParamTexture("in_color", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("in_alpha", kDefaultAlpha, -1, nullptr, nullptr);
        addParamTextureFloat("preserve_color", kDefaultPreserveColor, -1, nullptr, nullptr);
        addParamTexture("mask", kDefaultColor, -1, nullptr, nullptr);
        addParamTextureFloat("mask_alpha", kDefaultAlpha, -1, nullptr, nullptr);
        addParamFloat("mask_alpha_is_luminance", kDefaultMaskAlphaIsLuminance, -1, nullptr, nullptr);
    }
};

class TexColorMask final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexColorMask(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("in_color", &in_color);
        paramList->setParamCache("in_alpha", &in_alpha);
        paramList->setParamCache("preserve_color", &preserve_color);
        paramList->setParamCache("mask", &mask);
        paramList->setParamCache("mask_alpha", &mask_alpha);
        paramList->setParamCache("mask_alpha_is_luminance", &mask_alpha_is_luminance);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        Color c = rgbOr(in_color, kDefaultColor, context);
        float a = floatOr(in_alpha, kDefaultAlpha, context);
        const Color m = rgbOr(mask, kDefaultColor, context);
        const float k = mask_alpha_is_luminance == 0.0f
                            ? std::max(0.0f, floatOr(mask_alpha, kDefaultAlpha, context))
                            : luminance(m);
        // A strength that is not a number masks and passes on.
        if (!(k <= kNoMask)) {
            if (!isOn(preserve_color, context))
                c = eachChannel([k](float x, float own) { return masked(x, own, k); }, c, m);
            a -= k;
        }
        *result = withAlpha(c, a);
        return result;
    }

    // Kept as is: the mask counts by its alpha and by its luminance at once, the alpha comes from in_color,
    // and the bounds of in_alpha are asked for and dropped.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange in = rangeOr(in_color, kUnsetColorRange);
        const ColorRange m = rangeOr(mask, kUnsetColorRange);
        const FloatRange strength = rangeOr(mask_alpha, kUnsetAlphaRange);
        rangeOr(in_alpha, kUnsetAlphaRange);
        const float weak = std::min(strength.lower, luminance(m.lower));
        const float strong = std::max(strength.upper, luminance(m.upper));
        const auto smaller = [=](float x, float own) {
            return std::min(masked(x, own, weak), masked(x, own, strong));
        };
        const auto larger = [=](float x, float own) {
            return std::max(masked(x, own, weak), masked(x, own, strong));
        };
        *lower = withAlpha(eachChannel(smaller, in.lower, m.lower), in.lower.a - std::max(0.0f, strong));
        *upper = withAlpha(eachChannel(larger, in.upper, m.upper), in.upper.a);
    }

    // The alphas do not reach the GPU.
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        GPUSourceHelper helper(name, tag, descriptor, source, data);
        helper.addPluginVariable("inColor", in_color);
        helper.addPluginVariable("mask", mask);
        helper.addPluginVariable("maskAlpha", mask_alpha);
        helper.addColorVariable("maskAlphaIsLuminance", mask_alpha_is_luminance);
        helper.addPluginVariable("preserveColor", preserve_color);
        helper.addExpressionVariable("alpha", "(if maskAlphaIsLuminance (luminance mask) maskAlpha)");
        helper.evaluate("(if preserveColor inColor (+ (* inColor (- 1 alpha)) (* mask alpha)))");
        return 1;
    }

private:
    TextureInterface* in_color = nullptr;
    TextureFloatInterface* in_alpha = nullptr;
    TextureFloatInterface* preserve_color = nullptr;
    TextureInterface* mask = nullptr;
    TextureFloatInterface* mask_alpha = nullptr;
    float mask_alpha_is_luminance = 0.0f;
};

class TexColorMaskDesc : public DescOf<TexColorMask, TexColorMaskParams> {
public:
    TexColorMaskDesc()
        : DescOf({2015101614,
                  "TexColorMask",
                  "Mask a color. In-efficient GPU implementation, use any of the other texture-mask plugins "
                  "instead [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexColorMaskDesc texColorMaskDesc;

} // namespace

} // namespace nezaiva
