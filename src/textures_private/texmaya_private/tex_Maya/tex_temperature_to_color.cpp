// TexTemperatureToColor: the colour that a black body glows in, at the temperature that the input's
// intensity scales.

#include "kernels/color/black_body.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr AColor kDefaultInput{0.0f, 0.0f, 0.0f, 1.0f};
// Kept as is: nothing connected is black, while a connected black glows at 1000 kelvin.
constexpr AColor kUnsetResult{0.0f, 0.0f, 0.0f, 1.0f};
constexpr float kDefaultTemperature = 1.0f;

class TexTemperatureToColorParams : public OmbrixParameterListDesc {
public:
    TexTemperatureToColorParams()
    {
        addParamTexture("input", kDefaultInput, -1, nullptr, nullptr);
        addParamFloat("temperature", kDefaultTemperature, -1, nullptr, nullptr);
        addOutputParamTexture("color", nullptr, nullptr);
    }
};

class TexTemperatureToColor final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexTemperatureToColor(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("input", &input);
        paramList->setParamCache("temperature", &temperature);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        auto* settings = static_cast<ColorSpaceSettings*>(renderer->getInterface(kColorSpaceSettingsId));
        colorSpaceIndex = settings ? settings->getColorSpace() : kColorSpace1;
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        if (!input) {
            *result = kUnsetResult;
            return result;
        }
        AColor scale;
        input->evalColor(&scale, context);
        *result = glowOf(scale);
        return result;
    }

    // Kept as is: each bound is the colour of one bound of the input. A hotter input may have less red, so
    // that a lower result may lie above its upper one.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (!input) {
            *lower = *upper = kUnsetResult;
            return;
        }
        const ColorRange scale = rangeOr(input, ColorRange{});
        *lower = glowOf(scale.lower);
        *upper = glowOf(scale.upper);
    }

    // Kept as is: the gradient of the input, not of the colour that is made of it.
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override
    {
        if (input)
            input->evalColorGradient(result, context);
        else
            *result = AColor{};
        return result;
    }

    // The GPU has one colour for the whole texture, that of the middle of the input's bounds.
    int getSource(const char* /*name*/, const char* /*tag*/, const char* descriptor, ShaderSource& source,
                  OCLData& /*data*/) override
    {
        if (!isMaterialDescriptor(descriptor) || !input) return 0;
        const ColorRange scale = rangeOr(input, ColorRange{});
        const Color c = temperatureColor(middleIntensity(scale) * temperature, colorSpaceIndex);
        source.printf("color_value %f %f %f %f\n", static_cast<double>(c.r), static_cast<double>(c.g),
                      static_cast<double>(c.b), static_cast<double>((scale.lower.a + scale.upper.a) * 0.5f));
        return 1;
    }

private:
    AColor glowOf(const AColor& scale) const
    {
        return withAlpha(temperatureColor(intensity(scale) * temperature, colorSpaceIndex), scale.a);
    }

    TextureInterface* input = nullptr;
    float temperature = 0.0f;
    int colorSpaceIndex = kColorSpace1;
};

class TexTemperatureToColorDesc : public DescOf<TexTemperatureToColor, TexTemperatureToColorParams> {
public:
    TexTemperatureToColorDesc()
        : DescOf({2010101101,
                  "TexTemperatureToColor",
                  "Multiplies the temperature by the input texture intensity and converts that to a black "
                  "body radiation color [gpuSupport=",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexTemperatureToColorDesc texTemperatureToColorDesc;

} // namespace

} // namespace nezaiva
