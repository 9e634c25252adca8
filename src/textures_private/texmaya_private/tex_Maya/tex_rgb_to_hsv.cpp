// TexRGBToHSV: gives hue in degrees, saturation and value as red, green and blue. Alpha passes.

#include "kernels/color/hsv.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/conversion_source.h"

namespace nezaiva {

namespace {

constexpr AColor kUnsetColor{0.0f, 0.0f, 0.0f, 0.0f};
constexpr int kRgbToHsvOperator = -987; // consumes the input's slot

AColor converted(const AColor& c)
{
    const Hsv hsv = rgbToHsv(rgbOf(c));
    return {hsv.h, hsv.s, hsv.v, c.a};
}

class TexRGBToHSVParams : public OmbrixParameterListDesc {
public:
    TexRGBToHSVParams()
    {
        addParamTexture("inRgb", -1, nullptr, nullptr);
        addOutputParamTexture("color", nullptr, nullptr);
    }
};

class TexRGBToHSV final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexRGBToHSV(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("inRgb", &inRgb);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        if (!inRgb) {
            *result = kUnsetColor;
            return result;
        }
        inRgb->evalColor(result, context);
        *result = converted(*result);
        return result;
    }

    // Kept as is: each bound is converted by itself, although the conversion keeps no order.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!inRgb) {
            *lower = *upper = kUnsetColor;
            return;
        }
        inRgb->evalColorBounds(lower, upper);
        *lower = converted(*lower);
        *upper = converted(*upper);
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        return writeConversionSource(inRgb, kRgbToHsvOperator, name, tag, descriptor, source, data);
    }

private:
    TextureInterface* inRgb = nullptr;
};

class TexRGBToHSVDesc : public DescOf<TexRGBToHSV, TexRGBToHSVParams> {
public:
    TexRGBToHSVDesc()
        : DescOf({2008061301,
                  "TexRGBToHSV",
                  "Converts the input texture from RGB to HSV color space [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexRGBToHSVDesc texRGBToHSVDesc;

} // namespace

} // namespace nezaiva
