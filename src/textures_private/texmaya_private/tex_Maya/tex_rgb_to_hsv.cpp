// TexRGBToHSV: gives hue in degrees, saturation and value as red, green and blue. Alpha passes.

#include "kernels/color/hsv.h"
#include "plugin_frame/kind_desc.h"
#include "textures_private/texmaya_private/tex_Maya/hue_conversion.h"

namespace nezaiva {

namespace {

AColor hsvOfRgb(const AColor& c)
{
    const Hsv hsv = rgbToHsv(rgbOf(c));
    return {hsv.h, hsv.s, hsv.v, c.a};
}

class TexRGBToHSV final : public HueConversion<hsvOfRgb, GpuOperator::RgbToHsv> {
public:
    using HueConversion::HueConversion;

    static constexpr Identity kIdentity{
        2008061301,
        "TexRGBToHSV",
        "Converts the input texture from RGB to HSV color space [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("inRgb", &TexRGBToHSV::input, noDefault);
        p.output("color", itself);
    }
};

using TexRGBToHSVParams = KindParams<TexRGBToHSV>;
using TexRGBToHSVDesc = KindDesc<TexRGBToHSV, TexRGBToHSVParams>;
TexRGBToHSVDesc texRGBToHSVDesc;

} // namespace

} // namespace nezaiva
