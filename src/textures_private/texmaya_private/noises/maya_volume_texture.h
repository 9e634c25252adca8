// The noise objects of the noise texture: each reads its inputs at a context and evaluates one of the
// volume noises at a point and a time.
//
// The inputs belong to the owner; any may be null, which reads as the default of the noise. The objects
// own nothing, are filled outside rendering, and evaluate on any thread at once.
#pragma once

#include "kernels/noises/volume/volume_placement.h"

#include <ombrix/texture_interfaces.h>

namespace nezaiva {

using namespace OUtils;

class MayaVolumeTexture {
public:
    virtual float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const = 0;
    virtual float eval2d(const OmbrixContext& context, float x, float y, float time) const = 0;
    virtual ~MayaVolumeTexture() = default;

    TextureFloatInterface* frequency = nullptr;
    TextureFloatInterface* amplitude = nullptr;
    TextureFloatInterface* frequencyRatio = nullptr; // lacunarity of the fractal
    TextureFloatInterface* ratio = nullptr;          // of the amplitudes of two octaves
    TextureFloatInterface* threshold = nullptr;      // added to the result
    TextureFloatInterface* implode = nullptr;        // strength of the concentric warp
    TextureInterface* implodeCenter = nullptr;       // its centre, UVW in red, green and blue
    TextureInterface* scale = nullptr;               // divides the point
    TextureInterface* origin = nullptr;              // added to the point
    int depthMax = 0;                                // number of octaves
    bool inflection = false;
};

class MayaPerlinTexture : public MayaVolumeTexture {
public:
    float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const override;
    float eval2d(const OmbrixContext& context, float x, float y, float time) const override;
    // One octave at the position that it has there.
    virtual float noise3d(float x, float y, float z, float time, int level) const;
    virtual float noise2d(float x, float y, float time, int level) const;

    bool wispy = false;
    bool timeNoise = false;
    int timePeriod = 0;

protected:
    PerlinVolume settings() const;
    PerlinVolume read(const OmbrixContext& context) const;

    bool spaceTime = false;
};

// Time is a true dimension of the lattice.
class MayaSpaceTimeTexture final : public MayaPerlinTexture {
public:
    MayaSpaceTimeTexture() { spaceTime = true; }
    float noise3d(float x, float y, float z, float time, int level) const override;
    float noise2d(float x, float y, float time, int level) const override;
};

class MayaBillowTexture final : public MayaVolumeTexture {
public:
    float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const override;
    float eval2d(const OmbrixContext& context, float x, float y, float time) const override;

    TextureFloatInterface* density = nullptr;
    TextureFloatInterface* spottyness = nullptr;
    TextureFloatInterface* randomness = nullptr;
    TextureFloatInterface* sizeRand = nullptr;
    int falloff = 0; // BillowFalloff

private:
    BillowVolume read(const OmbrixContext& context) const;
};

class MayaCosineTexture final : public MayaVolumeTexture {
public:
    float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const override;
    float eval2d(const OmbrixContext& context, float x, float y, float time) const override;

    int numWaves = 0; // read as 16 bits
};

} // namespace nezaiva
