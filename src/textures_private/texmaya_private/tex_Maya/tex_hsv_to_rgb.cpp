// TexHSVToRGB: takes red, green and blue as hue in degrees, saturation and value. Alpha passes.

#include "kernels/color/hsv.h"
#include "plugin_frame/kind_desc.h"
#include "textures_private/texmaya_private/tex_Maya/hue_conversion.h"

namespace nezaiva {

namespace {

AColor rgbOfHsv(const AColor& c)
{
    return withAlpha(hsvToRgbWithinCircle({c.r, c.g, c.b}), c.a);
}

class TexHSVToRGB final : public HueConversion<rgbOfHsv, GpuOperator::HsvToRgb> {
public:
    using HueConversion::HueConversion;

    static constexpr Identity kIdentity{
        2008061302,
        "TexHSVToRGB",
        "Converts the input texture from HSV to RGB color space [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("inHsv", &TexHSVToRGB::input, noDefault);
        p.output("color", itself);
    }
};

using TexHSVToRGBParams = KindParams<TexHSVToRGB>;
using TexHSVToRGBDesc = KindDesc<TexHSVToRGB, TexHSVToRGBParams>;
TexHSVToRGBDesc texHSVToRGBDesc;

} // namespace

} // namespace nezaiva
