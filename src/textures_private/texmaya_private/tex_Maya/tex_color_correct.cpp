// TexColorCorrect: grades a colour in a fixed chain: hue, saturation and value, gain, offset, gamma, clamp;
// then the alpha by a chain of its own. Steps that change nothing cost nothing.
//
// Kept as is: most unset inputs read as another value than their declared default, so that a node with
// nothing set passes its colour on. The two stand side by side below.

#include "kernels/color/correct.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures/expr/gpu_source_helper.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr float kDeclaredInAlpha = 1.0f;
constexpr float kDeclaredFloat = 0.0f; // of all other floats
constexpr Color kDeclaredColor{0.0f, 0.0f, 0.0f};

constexpr Color kUnsetInColor{0.0f, 0.0f, 0.0f};
constexpr float kUnsetInAlpha = 1.0f;
constexpr float kUnsetHueShift = 0.0f;
constexpr float kUnsetGain = 1.0f; // of saturation, value and alpha
constexpr Color kUnsetColGain{1.0f, 1.0f, 1.0f};
constexpr Color kUnsetColOffset{0.0f, 0.0f, 0.0f};
constexpr Color kUnsetColGamma{1.0f, 1.0f, 1.0f};
constexpr Color kUnsetClampMin{0.0f, 0.0f, 0.0f};
constexpr Color kUnsetClampMax{1.0f, 1.0f, 1.0f};
constexpr float kUnsetAlphaOffset = 1.0f;
constexpr float kUnsetAlphaClampMin = 0.0f;
constexpr float kUnsetAlphaClampMax = 1.0f;

// What every unset input contributes to the bounds, the gains too.
constexpr ColorRange kUnsetRange{{0.0f, 0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f}};

class TexColorCorrectParams : public OmbrixParameterListDesc {
public:
    TexColorCorrectParams()
    {
        addParamTexture("in_color", kDeclaredColor, -1, nullptr, nullptr);
        addParamTextureFloat("in_alpha", kDeclaredInAlpha, -1, nullptr, nullptr);
        addParamTextureFloat("unpremultiply_input", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("premultiply_result", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("hue_shift", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("sat_gain", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("val_gain", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTexture("col_gain", kDeclaredColor, -1, nullptr, nullptr);
        addParamTexture("col_offset", kDeclaredColor, -1, nullptr, nullptr);
        addParamTexture("col_gamma", kDeclaredColor, -1, nullptr, nullptr);
        addParamTextureFloat("col_clamp", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTexture("col_clamp_min", kDeclaredColor, -1, nullptr, nullptr);
        addParamTexture("col_clamp_max", kDeclaredColor, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_gain", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_offset", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_gamma", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_clamp", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_clamp_min", kDeclaredFloat, -1, nullptr, nullptr);
        addParamTextureFloat("alpha_clamp_max", kDeclaredFloat, -1, nullptr, nullptr);
    }
};

class TexColorCorrect final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexColorCorrect(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("in_color", &in_color);
        paramList->setParamCache("in_alpha", &in_alpha);
        paramList->setParamCache("unpremultiply_input", &unpremultiply_input);
        paramList->setParamCache("premultiply_result", &premultiply_result);
        paramList->setParamCache("hue_shift", &hue_shift);
        paramList->setParamCache("sat_gain", &sat_gain);
        paramList->setParamCache("val_gain", &val_gain);
        paramList->setParamCache("col_gain", &col_gain);
        paramList->setParamCache("col_offset", &col_offset);
        paramList->setParamCache("col_gamma", &col_gamma);
        paramList->setParamCache("col_clamp", &col_clamp);
        paramList->setParamCache("col_clamp_min", &col_clamp_min);
        paramList->setParamCache("col_clamp_max", &col_clamp_max);
        paramList->setParamCache("alpha_gain", &alpha_gain);
        paramList->setParamCache("alpha_offset", &alpha_offset);
        paramList->setParamCache("alpha_gamma", &alpha_gamma);
        paramList->setParamCache("alpha_clamp", &alpha_clamp);
        paramList->setParamCache("alpha_clamp_min", &alpha_clamp_min);
        paramList->setParamCache("alpha_clamp_max", &alpha_clamp_max);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        Color c = rgbOr(in_color, kUnsetInColor, context);
        float a = floatOr(in_alpha, kUnsetInAlpha, context);
        // An alpha of 0 gives infinities, which pass on.
        if (isOn(unpremultiply_input, context)) c = scaled(c, 1.0f / a);
        c = correctedColor(c, context);
        a = correctedAlpha(a, context);
        if (isOn(premultiply_result, context)) c = scaled(c, a);
        *result = withAlpha(c, a);
        return result;
    }

    // Kept as is: the bounds take the input colour's own alpha and leave in_alpha, the steps of hue,
    // saturation and value, and the clamps out.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange in = rangeOr(in_color, kUnsetRange);
        const ColorRange gain = rangeOr(col_gain, kUnsetRange);
        const ColorRange offset = rangeOr(col_offset, kUnsetRange);
        const ColorRange gamma = rangeOr(col_gamma, kUnsetRange);
        const Color low = eachChannel(lowerGain, in.lower, gain.lower, offset.lower);
        const Color high = eachChannel(upperGain, in.upper, gain.upper, offset.upper);
        *lower = withAlpha(eachChannel(lowerGamma, low, gamma.lower, gamma.upper),
                           lowerGain(in.lower.a, gain.lower.a, offset.lower.a));
        *upper = withAlpha(eachChannel(upperGamma, high, gamma.lower, gamma.upper),
                           upperGain(in.upper.a, gain.upper.a, offset.upper.a));
    }

    // Neither gamma nor the alpha's chain reaches the GPU.
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        GPUSourceHelper helper(name, tag, descriptor, source, data);
        helper.addPluginVariable("a", in_alpha);
        helper.addPluginVariable("clampMax", col_clamp_max);
        helper.addPluginVariable("clampMin", col_clamp_min);
        helper.addPluginVariable("colGain", col_gain);
        helper.addPluginVariable("colGamma", col_gamma);
        helper.addPluginVariable("colOffset", col_offset);
        helper.addPluginVariable("hueShift", hue_shift);
        helper.addPluginVariable("in", in_color);
        helper.addPluginVariable("satGain", sat_gain);
        helper.addPluginVariable("shouldClamp", col_clamp);
        helper.addPluginVariable("shouldPremultiply", premultiply_result);
        helper.addPluginVariable("shouldUnpremultiply", unpremultiply_input);
        helper.addPluginVariable("valGain", val_gain);
        helper.addExpressionVariable("unpr", "(if shouldUnpremultiply (manip in a / / / 1 x x x x) in)");
        helper.addExpressionVariable("hsv0", "(rgb2hsv unpr)");
        helper.addExpressionVariable("hsv1", "(manip hsv0 hueShift + 0 0 0)");
        helper.addExpressionVariable("hsv2", "(manip hsv1 satGain  0 * 0 0)");
        helper.addExpressionVariable("hsv3", "(manip hsv2 valGain  0 0 * 0)");
        helper.addExpressionVariable("rgb0", "(hsv2rgb hsv3)");
        helper.addExpressionVariable("rgb1", "(* rgb0 colGain)");
        helper.addExpressionVariable("rgb2", "(+ rgb1 colOffset)");
        helper.addExpressionVariable("clamped", "(if shouldClamp (clamp rgb2 clampMin clampMax) rgb2)");
        helper.evaluate("(if shouldPremultiply (manip clamped a * * * 1 x x x x) clamped)");
        return 1;
    }

private:
    Color correctedColor(Color c, const OmbrixContext& context) const
    {
        const float shift = floatOr(hue_shift, kUnsetHueShift, context);
        const float saturation = floatOr(sat_gain, kUnsetGain, context);
        const float value = floatOr(val_gain, kUnsetGain, context);
        if (shift != 0.0f || saturation != 1.0f || value != 1.0f) c = hsvStep(c, shift, saturation, value);

        const Color gain = rgbOr(col_gain, kUnsetColGain, context);
        const Color offset = rgbOr(col_offset, kUnsetColOffset, context);
        c = eachChannel([](float x, float g, float o) { return x * g + o; }, c, gain, offset);

        c = eachChannel(gammaStep, c, rgbOr(col_gamma, kUnsetColGamma, context));

        if (isOn(col_clamp, context)) {
            const Color lower = rgbOr(col_clamp_min, kUnsetClampMin, context);
            const Color upper = rgbOr(col_clamp_max, kUnsetClampMax, context);
            c = eachChannel(clampStep, c, lower, upper);
        }
        return c;
    }

    float correctedAlpha(float a, const OmbrixContext& context) const
    {
        a *= floatOr(alpha_gain, kUnsetGain, context);
        // Kept as is: an offset of exactly 1 adds nothing, whether it is connected or what unset reads as.
        const float offset = floatOr(alpha_offset, kUnsetAlphaOffset, context);
        if (offset != 1.0f) a += offset;
        // Kept as is: the gain is read once more and acts as the gamma; alpha_gamma is never read.
        a = gammaStep(a, floatOr(alpha_gain, kUnsetGain, context));
        if (isOn(alpha_clamp, context)) {
            const float lower = floatOr(alpha_clamp_min, kUnsetAlphaClampMin, context);
            const float upper = floatOr(alpha_clamp_max, kUnsetAlphaClampMax, context);
            a = clampStep(a, lower, upper);
        }
        return a;
    }

    TextureInterface* in_color = nullptr;
    TextureFloatInterface* in_alpha = nullptr;
    TextureFloatInterface* unpremultiply_input = nullptr;
    TextureFloatInterface* premultiply_result = nullptr;
    TextureFloatInterface* hue_shift = nullptr;
    TextureFloatInterface* sat_gain = nullptr;
    TextureFloatInterface* val_gain = nullptr;
    TextureInterface* col_gain = nullptr;
    TextureInterface* col_offset = nullptr;
    TextureInterface* col_gamma = nullptr;
    TextureFloatInterface* col_clamp = nullptr;
    TextureInterface* col_clamp_min = nullptr;
    TextureInterface* col_clamp_max = nullptr;
    TextureFloatInterface* alpha_gain = nullptr;
    TextureFloatInterface* alpha_offset = nullptr;
    TextureFloatInterface* alpha_gamma = nullptr;
    TextureFloatInterface* alpha_clamp = nullptr;
    TextureFloatInterface* alpha_clamp_min = nullptr;
    TextureFloatInterface* alpha_clamp_max = nullptr;
};

class TexColorCorrectDesc : public DescOf<TexColorCorrect, TexColorCorrectParams> {
public:
    TexColorCorrectDesc()
        : DescOf({2015101613,
                  "TexColorCorrect",
                  "Correct a color by specifying HSV and RGB gains, offset, gamma correction and clamping "
                  "[gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexColorCorrectDesc texColorCorrectDesc;

} // namespace

} // namespace nezaiva
