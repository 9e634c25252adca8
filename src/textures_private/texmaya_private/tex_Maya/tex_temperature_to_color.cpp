// TexTemperatureToColor: the colour that a black body glows in, at the temperature that the input's
// intensity scales. Alpha is the input's.

#include "kernels/color/black_body.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

// Kept as is: nothing connected is black, while a connected black glows at 1000 kelvin.
constexpr AColor kUnsetResult{0.0f, 0.0f, 0.0f, 1.0f};

class TexTemperatureToColor final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    // Kept as is: the description ends in the middle of its tag.
    static constexpr Identity kIdentity{
        2010101101,
        "TexTemperatureToColor",
        "Multiplies the temperature by the input texture intensity and converts that to a black "
        "body radiation color [gpuSupport=",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &TexTemperatureToColor::input, AColor{0.0f, 0.0f, 0.0f, 1.0f});
        p("temperature", &TexTemperatureToColor::temperature, 1.0f);
        p.output("color", itself);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        auto* settings = find<ColorSpaceSettings>(renderer);
        colorSpaceIndex = settings ? settings->getColorSpace() : kColorSpace1;
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        *result = input ? glowOf(input(context)) : kUnsetResult;
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
        const ColorRange scale = input.bounds();
        *lower = glowOf(scale.lower);
        *upper = glowOf(scale.upper);
    }

    // Kept as is: the gradient of the input, not of the colour that is made of it.
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = input.gradient(context);
        return result;
    }

    // The GPU has one colour for the whole texture, that of the middle of the input's bounds.
    int writeSource(SourceText& text) override
    {
        if (!input) return 0;
        const ColorRange scale = input.bounds();
        const Color c = temperatureColor(middleIntensity(scale) * temperature, colorSpaceIndex);
        text.source.printf("color_value %f %f %f %f\n", static_cast<double>(c.r), static_cast<double>(c.g),
                           static_cast<double>(c.b),
                           static_cast<double>((scale.lower.a + scale.upper.a) * 0.5f));
        return 1;
    }

private:
    AColor glowOf(const AColor& scale) const
    {
        return withAlpha(temperatureColor(intensity(scale) * temperature, colorSpaceIndex), scale.a);
    }

    ColorInput input;
    float temperature = 0.0f;
    int colorSpaceIndex = kColorSpace1;
};

using TexTemperatureToColorParams = KindParams<TexTemperatureToColor>;
using TexTemperatureToColorDesc = KindDesc<TexTemperatureToColor, TexTemperatureToColorParams>;
TexTemperatureToColorDesc texTemperatureToColorDesc;

} // namespace

} // namespace nezaiva
