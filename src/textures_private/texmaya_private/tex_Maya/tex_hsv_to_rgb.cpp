// TexHSVToRGB: takes red, green and blue as hue in degrees, saturation and value. Alpha passes.

#include "kernels/color/hsv.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/conversion_source.h"

namespace nezaiva {

namespace {

constexpr AColor kUnsetColor{0.0f, 0.0f, 0.0f, 0.0f};
constexpr int kHsvToRgbOperator = -965; // consumes the input's slot

AColor converted(const AColor& c)
{
    return withAlpha(hsvToRgbWithinCircle({c.r, c.g, c.b}), c.a);
}

class TexHSVToRGBParams : public OmbrixParameterListDesc {
public:
    TexHSVToRGBParams()
    {
        addParamTexture("inHsv", -1, nullptr, nullptr);
        addOutputParamTexture("color", nullptr, nullptr);
    }
};

class TexHSVToRGB final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexHSVToRGB(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("inHsv", &inHsv);
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
        if (!inHsv) {
            *result = kUnsetColor;
            return result;
        }
        inHsv->evalColor(result, context);
        *result = converted(*result);
        return result;
    }

    // Kept as is: each bound is converted by itself, although the conversion keeps no order.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!inHsv) {
            *lower = *upper = kUnsetColor;
            return;
        }
        inHsv->evalColorBounds(lower, upper);
        *lower = converted(*lower);
        *upper = converted(*upper);
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        return writeConversionSource(inHsv, kHsvToRgbOperator, name, tag, descriptor, source, data);
    }

private:
    TextureInterface* inHsv = nullptr;
};

class TexHSVToRGBDesc : public DescOf<TexHSVToRGB, TexHSVToRGBParams> {
public:
    TexHSVToRGBDesc()
        : DescOf({2008061302,
                  "TexHSVToRGB",
                  "Converts the input texture from HSV to RGB color space [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexHSVToRGBDesc texHSVToRGBDesc;

} // namespace

} // namespace nezaiva
