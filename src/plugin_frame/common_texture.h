// CommonTexture: colour post-processing, per-thread result memo and output parameters, on which most
// textures stand; and OmbrixCachedTexture, the memo alone.
#pragma once

#include "plugin_frame/common_texture_outputs.h"
#include "plugin_frame/noise_interface.h"
#include "plugin_frame/thread_memo.h"

#include <ombrix/plugin.h>

namespace nezaiva {

// Bits of the flags that a texture hands to its bases.
enum BaseFlags : std::uint32_t {
    kDeclaresTile = 1, // declares and caches tile; otherwise tile is 0
    kFetchesNoise = 4, // takes the renderer's NoiseInterface at render begin
    kDeclaresWrap = 8, // declares and caches wrap; otherwise wrap is 1
};

// compatibility_with: whose order of post-processing a texture follows. Other values follow neither.
enum CompatibilityWith : int {
    kCompatibleWithMax = 0,
    kCompatibleWithMaya = 1,
};

enum AlphaFromIntensity : int {
    kAlphaFromBitmap = 0,
    kAlphaFromIntensity = 1,
    kAlphaOpaque = 2,
};

// What a texture shows where it has no coordinates and nouvw_color is not connected.
inline constexpr AColor kNoUVWColor{0.5f, 0.5f, 0.5f, 1.0f};

class CommonTextureParams : public OmbrixParameterListDesc {
public:
    CommonTextureParams();

    // Indices of the parameters, for CommonTexture's constructor.
    int compatibility_with, alpha_from_intensity, invert, invert_alpha, color_mult, color_offset, alpha_mult,
        alpha_offset, nouvw_color;
};

class CommonTexture : public OmbrixTexture {
public:
    // desc's parameterDesc is a CommonTextureParams. flags: BaseFlags.
    CommonTexture(OmbrixPluginDesc* desc, std::uint32_t flags);

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
    int writeColorAdjustments(const char* descriptor, ShaderSource& source, OCLData& data);

    // nouvw_color at the context as it stands, or kNoUVWColor.
    AColor noUVWColor(const OmbrixContext& context) const;

    CommonTransparencyTex transparencyOutput;
    CommonAlphaTex alphaOutput;
    CommonIntensTex intensityOutput;

    TextureInterface* color_mult = nullptr;
    TextureInterface* color_offset = nullptr;
    TextureFloatInterface* alpha_mult = nullptr;
    TextureFloatInterface* alpha_offset = nullptr;
    int alpha_from_intensity = 0;
    int invert = 0;
    int invert_alpha = 0;
    TextureInterface* nouvw_color = nullptr;
    TexCacheTable memo;
    int compatibility_with = 0;
    const std::uint32_t baseFlags;
    NoiseInterface* sharedNoise = nullptr;
    double frameTime = 0.0; // of the latest frame

private:
    // Whether the post-processing does anything.
    bool isAdjusted() const;
    void postProcess(AColor& color, const OmbrixContext& context) const;
    void invertChannels(AColor& color) const;
};

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
