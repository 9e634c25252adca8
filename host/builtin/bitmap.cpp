// Bitmap: a picture of a file as a color texture.
//
// Without valid coordinates the texture is transparent black, (0, 0, 0, 0), and so is every point whose
// coordinates are not finite. Its bounds hold that color too.

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/frame_values.h"
#include "host/builtin/mapping.h"
#include "host/errors/errors.h"
#include "host/image/image.h"
#include "host/image/mip_pyramid.h"
#include "host/plugins/builtin_desc.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>

namespace ombrix {

namespace {

using namespace OUtils;

enum Filter : int {
    kNearest = 0,
    kBilinear = 1,
    kMipmap = 2,
};

constexpr int kLowestChannel = -1;
constexpr int kPlainBitmap = 0; // the mode of OCLData::addBitmapFile for a picture that is no bake

ColorSpace colorSpaceOf(int number)
{
    switch (number) {
    case static_cast<int>(ColorSpace::Linear):
        return ColorSpace::Linear;
    case static_cast<int>(ColorSpace::Srgb):
        return ColorSpace::Srgb;
    default:
        return ColorSpace::Auto;
    }
}

Wrap wrapOf(int number)
{
    return number >= static_cast<int>(Wrap::Repeat) && number <= static_cast<int>(Wrap::Black)
               ? static_cast<Wrap>(number)
               : Wrap::Repeat;
}

int toByte(float value)
{
    const float held = value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
    return static_cast<int>(std::lround(held * 255.0f));
}

std::uint32_t hashOf(const PtrArray<int>& pixels, int width)
{
    // FNV-1a over the words.
    std::uint32_t hash = 2166136261u ^ static_cast<std::uint32_t>(width);
    for (const int pixel : pixels)
        hash = (hash ^ static_cast<std::uint32_t>(pixel)) * 16777619u;
    return hash;
}

class Bitmap final : public Offers<OmbrixTexture, RTTexInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2019030120, "Bitmap", "A picture of a file as a color texture [gpuSupport=(partial)]", {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("file", &Bitmap::file, "", "The picture: EXR, PNG, JPEG, TIFF, HDR and others",
          kRequiredFileMetadata);
        p("uvwgen", &Bitmap::uvwgen, noDefault,
          "Where the coordinates come from; unset, the surface's lowest mapping channel. u runs to "
          "the right, v up. Without coordinates the texture is transparent black");
        p("color_space", &Bitmap::color_space, static_cast<int>(ColorSpace::Auto),
          "What the file's colors are: linear, sRGB-encoded, or as the format has it (auto: 8 and 16 "
          "bit formats are sRGB, float formats linear)",
          "enum=(0:auto; 1:linear; 2:srgb)");
        p("wrap", &Bitmap::wrap, static_cast<int>(Wrap::Repeat), "What stands outside the unit square",
          "enum=(0:repeat; 1:mirror; 2:clamp; 3:black)");
        p("filter", &Bitmap::filter, kMipmap,
          "Between texels: the nearest one, a blend of four, or a blend of smaller pictures too where "
          "the texture is seen from afar (mipmap)",
          "enum=(0:nearest; 1:bilinear; 2:mipmap)");
    }

    // Reads the file when it is another one than in the frame before. Throws WorkError.
    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        uvwgen.resolve();
        if (picture && readFile == file.str() && readSpace == color_space) return;
        picture.reset();
        if (file.empty()) throw WorkError{"a Bitmap needs a file; give it one"};
        picture = std::make_unique<MipPyramid>(
            readImage(file.str(), colorSpaceOf(color_space), AlphaKind::Straight));
        readFile = file.str();
        readSpace = color_space;
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        *result = AColor{};
        UVWSample sample;
        if (!picture || !findCoordinates(context, &sample)) return result;
        const float u = sample.uvw.x, v = sample.uvw.y;
        if (!std::isfinite(u) || !std::isfinite(v)) return result;
        if (filter == kNearest)
            *result = picture->nearest(u, v, wrapOf(wrap));
        else if (filter == kBilinear || !context.filteringEnabled())
            *result = picture->bilinear(u, v, wrapOf(wrap));
        else
            *result = picture->trilinear(u, v, footprintOf(sample), wrapOf(wrap));
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = *upper = AColor{};
        if (!picture) return;
        picture->bounds(lower, upper);
        *lower = {std::min(lower->r, 0.0f), std::min(lower->g, 0.0f), std::min(lower->b, 0.0f),
                  std::min(lower->a, 0.0f)};
        *upper = {std::max(upper->r, 0.0f), std::max(upper->g, 0.0f), std::max(upper->b, 0.0f),
                  std::max(upper->a, 0.0f)};
    }

    // The coordinates' source and the whole picture in 8 bits a channel, linear; wrap and filter are the
    // back end's own.
    int getSource(const char* /*name*/, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!picture || !descriptor || std::strcmp(descriptor, "MaterialDescriptor") != 0) return 0;
        RTTexInterface::getRTTexSource(uvwgen, "uvw", tag, descriptor, source, data);
        source.printf("bitmap %i\n", bitmapIndexIn(data));
        return 1;
    }

private:
    bool findCoordinates(const OmbrixContext& context, UVWSample* sample) const
    {
        if (uvwgen) return uvwgen->evalUVWDerivs(context, sample) != 0;
        MappedSurface* surface = mappedSurfaceOf(context);
        return surface && surface->getLocalUVW(context, kLowestChannel, sample) != 0;
    }

    // The longer of the two steps between neighbouring samples, in texels.
    float footprintOf(const UVWSample& sample) const
    {
        const auto width = static_cast<float>(picture->width()),
                   height = static_cast<float>(picture->height());
        const float first = std::hypot(sample.du.x * width, sample.du.y * height);
        const float second = std::hypot(sample.dv.x * width, sample.dv.y * height);
        return std::max(first, second);
    }

    int bitmapIndexIn(OCLData& data) const
    {
        PtrArray<int> pixels(picture->width() * picture->height());
        int* pixel = pixels.ptr();
        for (int y = 0; y < picture->height(); ++y)
            for (int x = 0; x < picture->width(); ++x) {
                const AColor& c = picture->texel(0, x, y);
                const auto word =
                    static_cast<unsigned>(toByte(c.b)) | static_cast<unsigned>(toByte(c.g)) << 8 |
                    static_cast<unsigned>(toByte(c.r)) << 16 | static_cast<unsigned>(toByte(c.a)) << 24;
                *pixel++ = static_cast<int>(word);
            }
        const std::uint32_t hash = hashOf(pixels, picture->width());
        int index = data.getBitmapIndexFromHash(hash);
        if (index >= 0) return index;
        index = data.addBitmapFile(pixels, nullptr, 0, picture->width(), picture->height(), 1.0f,
                                   nameOf(*this), kPlainBitmap);
        if (index >= 0) data.setBitmapHash(index, hash);
        return index;
    }

    CharString file;
    UVWGenInput uvwgen;
    int color_space = 0, wrap = 0, filter = 0;

    std::unique_ptr<MipPyramid> picture;
    std::string readFile;
    int readSpace = 0;
};

BuiltinDesc<Bitmap> bitmapDesc;

} // namespace

} // namespace ombrix
