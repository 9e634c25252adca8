// CommonTexture: colour post-processing, per-thread result memo and output parameters, on which most
// textures stand; and OmbrixCachedTexture, the memo alone.
#pragma once

#include "kernels/color/post_process.h"
#include "plugin_frame/common_texture_outputs.h"
#include "plugin_frame/noise_interface.h"
#include "plugin_frame/thread_memo.h"

#include <ombrix/plugin_kind.h>

namespace nezaiva {

// Bits of the flags that a texture hands to its bases.
enum BaseFlags : std::uint32_t {
    kDeclaresTile = 1, // declares and caches tile; otherwise tile is 0
    kFetchesNoise = 4, // takes the renderer's NoiseInterface at render begin
    kDeclaresWrap = 8, // declares and caches wrap; otherwise wrap is 1
};

// What a texture shows where it has no coordinates and nouvw_color is not connected.
inline constexpr AColor kNoUVWColor{0.5f, 0.5f, 0.5f, 1.0f};

class CommonTexture : public OmbrixTexture {
public:
    // flags: BaseFlags.
    CommonTexture(OmbrixPluginDesc* desc, std::uint32_t flags);

    // The parameters that all common textures begin with; a kind's own follow.
    template <class Table>
    static void parameters(Table& p);

    void renderBegin(OmbrixRenderer* renderer) override;
    void renderEnd(OmbrixRenderer* renderer) override;
    void frameBegin(OmbrixRenderer* renderer) override;

    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override;

    // The colour before post-processing. valid is preset to true; false says that there is none here.
    virtual AColor* evalRawColor(AColor* result, const OmbrixContext& context, bool* valid) = 0;
    virtual void getRawBounds(AColor* lower, AColor* upper) = 0;
    virtual AColor* evalRawGradient(AColor* result, const OmbrixContext& context, bool* valid) = 0;

protected:
    // Appends the colour adjustments that close the source of a mapped texture; returns 1.
    int writeColorAdjustments(SourceText& text);

    // The gains at the context, in memory of the caller's.
    struct GainValues {
        AColor mult, offset;
        float alphaMult, alphaOffset;
    };
    ColorGains gainsAt(const OmbrixContext& context, GainValues& values) const;

    CommonTransparencyTex transparencyOutput;
    CommonAlphaTex alphaOutput;
    CommonIntensTex intensityOutput;

    // Unset, these four have no effect.
    ColorInput color_mult, color_offset;
    FloatInput alpha_mult, alpha_offset;
    int alpha_from_intensity = 0;
    int invert = 0;
    int invert_alpha = 0;
    ColorInput nouvw_color;
    TexCacheTable memo;
    int compatibility_with = 0;
    const std::uint32_t baseFlags;
    NoiseInterface* sharedNoise = nullptr;
    double frameTime = 0.0; // of the latest frame

private:
    // Whether the post-processing does anything.
    bool isAdjusted() const;
    AColor finished(const AColor& color, const OmbrixContext& context) const;
};

template <class Table>
void CommonTexture::parameters(Table& p)
{
    auto&& common = p.byIndex();
    common("compatibility_with", &CommonTexture::compatibility_with, 0,
           "This is used to differentiate between textures exported from different applications. The value "
           "means : 0 - 3ds Max (this is also the default), 1 - Maya, ...",
           "enum=(0:Max;1:Maya); startRollout=(Common), gpuSupport=(full)");
    common("alpha_from_intensity", &CommonTexture::alpha_from_intensity, 0,
           "If 2 - the alpha is forced to 1.0f; 1 - the resulting alpha is the color intensity (if "
           "compatibility_with is 0) or the color luminance (if compatibility_with is 1); 0 - the alpha is "
           "taken from the bitmap alpha",
           "enum=(0:Bitmap alpha;1:Color intensity/luminance;2:Force opaque), gpuSupport=(full)");
    common("invert", &CommonTexture::invert, false,
           "If true, the resulting texture color will be inverted (complementary)", "gpuSupport=(full)");
    common("invert_alpha", &CommonTexture::invert_alpha, true,
           "If true and invert is on, the resulting texture alpha will be inverted too. If false, just the "
           "color will be inverted",
           "enable=(::invert=1), gpuSupport=(none)");
    common("color_mult", &CommonTexture::color_mult, AColor{1.0f, 1.0f, 1.0f, 1.0f},
           "A multiplier for the texture color", "gpuSupport=(full)");
    common("color_offset", &CommonTexture::color_offset, AColor{},
           "An additional offset for the texture color", "gpuSupport=(full)");
    common("alpha_mult", &CommonTexture::alpha_mult, 1.0f, "A multiplier for the texture alpha",
           "gpuSupport=(full)");
    common("alpha_offset", &CommonTexture::alpha_offset, 0.0f, "An additional offset for the texture alpha",
           "gpuSupport=(full)");
    common("nouvw_color", &CommonTexture::nouvw_color, kNoUVWColor,
           "The color when there are no valid uvw coordinates",
           "displayName=(No UVs Color), gpuSupport=(partial)");
    common.output("color", itself, "The resulting color", "gpuSupport=(none)");
    common.output("out_transparency", &CommonTexture::transparencyOutput, "The resulting transparency",
                  "gpuSupport=(none)");
    common.output("out_alpha", &CommonTexture::alphaOutput, "The resulting alpha", "gpuSupport=(none)");
    common.output("out_intensity", &CommonTexture::intensityOutput, "The resulting intensity",
                  "startRollout=(<EndRollout>), gpuSupport=(none)");
}

// A texture with the memo and no post-processing.
class OmbrixCachedTexture : public OmbrixTexture {
public:
    using OmbrixTexture::OmbrixTexture;

    void renderBegin(OmbrixRenderer* renderer) override;
    void renderEnd(OmbrixRenderer* renderer) override;
    void frameBegin(OmbrixRenderer* renderer) override;
    AColor* evalColor(AColor* result, const OmbrixContext& context) override;

    virtual AColor* evalColorUncached(AColor* result, const OmbrixContext& context) = 0;

private:
    TexCacheTable memo;
};

} // namespace nezaiva
