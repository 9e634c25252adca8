// TexColorAndAlpha: passes a colour on with an alpha of its own. It has no GPU form.

#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr AColor kUnsetColor{0.0f, 0.0f, 0.0f, 0.0f}; // the colour input declares no default
constexpr float kDefaultAlpha = 1.0f;                 // also what an unset alpha reads as

class TexColorAndAlphaParams : public OmbrixParameterListDesc {
public:
    TexColorAndAlphaParams()
    {
        addParamTexture("color_input", -1, nullptr, nullptr);
        addParamTextureFloat("alpha_input", kDefaultAlpha, -1, nullptr, nullptr);
    }
};

class TexColorAndAlpha final : public OmbrixTexture {
public:
    explicit TexColorAndAlpha(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("color_input", &color_input);
        paramList->setParamCache("alpha_input", &alpha_input);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        writeColorOr(result, color_input, kUnsetColor, context);
        result->a = floatOr(alpha_input, kDefaultAlpha, context);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange color = rangeOr(color_input, {kUnsetColor, kUnsetColor});
        const FloatRange alpha = rangeOr(alpha_input, {kDefaultAlpha, kDefaultAlpha});
        *lower = withAlpha(rgbOf(color.lower), alpha.lower);
        *upper = withAlpha(rgbOf(color.upper), alpha.upper);
    }

private:
    TextureInterface* color_input = nullptr;
    TextureFloatInterface* alpha_input = nullptr;
};

class TexColorAndAlphaDesc : public DescOf<TexColorAndAlpha, TexColorAndAlphaParams> {
public:
    TexColorAndAlphaDesc()
        : DescOf({2009101501,
                  "TexColorAndAlpha",
                  "Wraps a color texture and overrides its alpha channel with a float texture "
                  "[gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexColorAndAlphaDesc texColorAndAlphaDesc;

} // namespace

} // namespace nezaiva
