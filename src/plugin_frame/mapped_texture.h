// MappedTexture: a texture over UVW coordinates. It asks a generator or the surface for them, applies crop
// or placement and UV noise, and looks up filtered or unfiltered.
#pragma once

#include "plugin_frame/common_texture.h"

namespace nezaiva {

class MappedTextureParams : public CommonTextureParams {
public:
    // flags: kDeclaresTile and kDeclaresWrap choose the two conditional parameters.
    explicit MappedTextureParams(std::uint32_t flags);

    // Indices of the parameters; -1 for one that is not declared.
    int uvwgen, tile = -1, wrap = -1, placement_type, u, v, w, h, jitter, tile_u, tile_v, uv_noise_on,
                uv_noise_animate, uv_noise_amount, uv_noise_levels, uv_noise_size, un_noise_phase;
};

enum PlacementType : int {
    kPlaceWhole = 0,
    kPlaceCrop = 1,
    kPlaceSector = 2,
};

class MappedTexture : public CommonTexture, public RTTexInterface {
public:
    // desc's parameterDesc is a MappedTextureParams. kFetchesNoise is always set.
    MappedTexture(OmbrixPluginDesc* desc, std::uint32_t flags);

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override;

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
    // The gradient in UVW space.
    virtual AColor* evalGradientWidth(AColor* result, const OmbrixContext& context, const UVWSample& sample,
                                      const Vector4& width) = 0;

    // Offers no text of its own: refuses.
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

protected:
    // Fills the sample, derivatives only when asked for. False when there are no valid coordinates.
    bool buildSample(const OmbrixContext& context, bool withDerivatives, UVWSample& sample);

    int wrap = 1;
    int tile = 0;
    PluginBase* uvwgen = nullptr;
    UVWGenInterface* uvwgenInterface = nullptr;                  // resolved at frame begin
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

} // namespace nezaiva
