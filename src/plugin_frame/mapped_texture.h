// MappedTexture: a texture over UVW coordinates. It asks a generator or the surface for them, applies crop
// or placement and UV noise, and looks up filtered or unfiltered.
#pragma once

#include "plugin_frame/common_texture.h"

namespace nezaiva {

enum PlacementType : int {
    kPlaceWhole = 0,
    kPlaceCrop = 1,
    kPlaceSector = 2,
};

class MappedTexture : public Offers<CommonTexture, GpuTexture> {
public:
    // flags: BaseFlags. kFetchesNoise is always set.
    MappedTexture(OmbrixPluginDesc* desc, std::uint32_t flags);

    // Those of common textures, then the mapping's. flags: BaseFlags, of which two declare a parameter more.
    template <class Table>
    static void parameters(Table& p, std::uint32_t flags);

    void renderBegin(OmbrixRenderer* renderer) override;
    void renderEnd(OmbrixRenderer* renderer) override;
    void frameBegin(OmbrixRenderer* renderer) override;

    AColor* evalRawColor(AColor* result, const OmbrixContext& context, bool* valid) override;
    void getRawBounds(AColor* lower, AColor* upper) override;
    AColor* evalRawGradient(AColor* result, const OmbrixContext& context, bool* valid) override;

    // The texture at valid coordinates, before post-processing.
    virtual AColor* evalTexture(AColor* result, const OmbrixContext& context, const UVWSample& sample) = 0;
    // The same over the footprint of two derivative vectors.
    virtual AColor* evalTextureFiltered(AColor* result, const OmbrixContext& context, const UVWSample& sample,
                                        const Vector4& du, const Vector4& dv);
    // The same over an axis-aligned width.
    virtual AColor* evalTextureWidth(AColor* result, const OmbrixContext& context, const UVWSample& sample,
                                     const Vector4& width);
    virtual void getTextureBounds(AColor* lower, AColor* upper) = 0;
    virtual AColor* evalGradientFiltered(AColor* result, const OmbrixContext& context,
                                         const UVWSample& sample, const Vector4& du, const Vector4& dv);
    // The gradient in UVW space; zero, for textures that tell none.
    virtual AColor* evalGradientWidth(AColor* result, const OmbrixContext& context, const UVWSample& sample,
                                      const Vector4& width);

    // Offers no text of its own: refuses.
    int writeSource(SourceText& text) override;

protected:
    // Fills the sample, derivatives only when asked for. False when there are no valid coordinates.
    bool buildSample(const OmbrixContext& context, bool withDerivatives, UVWSample& sample);

    int wrap = 1;
    int tile = 0;
    UVWGenInput uvwgen;
    float u = 0.0f, v = 0.0f, w = 1.0f, h = 1.0f, jitter = 0.0f; // the sector
    int tile_u = 0, tile_v = 0, placement_type = 0;
    int uv_noise_on = 0, uv_noise_animate = 0;
    float uv_noise_size = 1.0f, uv_noise_amount = 1.0f, uv_noise_levels = 1.0f, un_noise_phase = 0.0f;
    NoiseParams noiseParams;
    UVWCacheTable uvwMemo;              // built only where there is no generator
    OmbrixRenderer* renderer = nullptr; // between render begin and render end

private:
    bool mapFromGenerator(const OmbrixContext& context, bool withDerivatives, UVWSample& sample);
    bool mapFromSurface(const OmbrixContext& context, bool withDerivatives, UVWSample& sample);
    void crop(UVWSample& sample) const;
    bool placeInSector(UVWSample& sample);
    void addUVNoise(UVWSample& sample) const;
};

template <class Table>
void MappedTexture::parameters(Table& p, std::uint32_t flags)
{
    constexpr const char* kInSector = "enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)";
    constexpr const char* kPlacedOnly = "enable=(::placement_type=2), gpuSupport=(partial)";

    CommonTexture::parameters(p);
    auto&& mapped = p.byIndex();
    mapped("uvwgen", &MappedTexture::uvwgen, noDefault, "The uvw generator for the texture",
           "startRollout=(Mapped), gpuSupport=(full)");
    if (flags & kDeclaresTile)
        mapped(
            "tile", &MappedTexture::tile, 1,
            "0: not tiling; 1: tile in UV; 2: tile in U; 3: tile in V; 4: tile in UV, but not filter tiling;",
            "enum=(0:No tiling;1:Tile in UV;2:Tile in U;3:Tile in V;4:Tile in UV, but no filter tiling), "
            "gpuSupport=(partial)");
    if (flags & kDeclaresWrap)
        mapped("wrap", &MappedTexture::wrap, true,
               "If true UVWs outside [-1;1] will wrap back to the valid range.", "gpuSupport=(partial)");
    mapped("placement_type", &MappedTexture::placement_type, 0,
           "The way the valid portion of the texture is applied: 0 - the whole texture is valid, 1 - crop, 2 "
           "-place",
           "enum=(0:Whole texture is valid;1:Crop;2:Place), gpuSupport=(partial)");
    mapped("u", &MappedTexture::u, 0.0f, "U coordinate of the valid texture sector", kInSector);
    mapped("v", &MappedTexture::v, 0.0f, "V coordinate of the valid texture sector", kInSector);
    mapped("w", &MappedTexture::w, 1.0f, "Width of the valid texture sector", kInSector);
    mapped("h", &MappedTexture::h, 1.0f, "Height of the valid texture sector", kInSector);
    mapped("jitter", &MappedTexture::jitter, 0.0f, "Amount of random placement variation",
           "enable=(::placement_type=2), gpuSupport=(none)");
    mapped("tile_u", &MappedTexture::tile_u, false, "If true there is horizontal tiling", kPlacedOnly);
    mapped("tile_v", &MappedTexture::tile_v, false, "If true there is vertical tiling", kPlacedOnly);
    mapped("uv_noise_on", &MappedTexture::uv_noise_on, false, "If true the noise is enabled.",
           "displayName=(UV noise on), gpuSupport=(none)");
    mapped("uv_noise_animate", &MappedTexture::uv_noise_animate, false,
           "If true the noise is animated. Use \"UV noise phase\" to animate the noise.",
           "enable=(::uv_noise_on=1), displayName=(Animate UV noise), gpuSupport=(none)");
    mapped("uv_noise_amount", &MappedTexture::uv_noise_amount, 1.0f, "UV noise amount",
           "enable=(::uv_noise_on=1), displayName=(UV noise amount), gpuSupport=(none)");
    mapped("uv_noise_levels", &MappedTexture::uv_noise_levels, 1.0f, "UV noise iterations",
           "enable=(::uv_noise_on=1), displayName=(UV noise levels), gpuSupport=(none)");
    mapped("uv_noise_size", &MappedTexture::uv_noise_size, 1.0f, "UV noise size",
           "enable=(::uv_noise_on=1), displayName=(UV noise size), gpuSupport=(none)");
    // Kept as is: scenes know the phase under this name, not as uv_noise_phase.
    mapped("un_noise_phase", &MappedTexture::un_noise_phase, 0.0f, "UV noise phase",
           "enable=(::uv_noise_on=1, ::uv_noise_animate=1), displayName=(UV noise phase); "
           "startRollout=(<EndRollout>), gpuSupport=(none)");
}

} // namespace nezaiva
