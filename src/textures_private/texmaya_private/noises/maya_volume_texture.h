// The noise objects of the noise texture: each reads its inputs at a context and evaluates one of the
// volume noises at a point and a time.
//
// The inputs are fields that the owner binds parameters to. Any may be unset, which reads as the default of
// the noise. The objects evaluate on any thread at once.
#pragma once

#include "kernels/noises/volume/volume_placement.h"

#include <ombrix/inputs.h>

namespace nezaiva {

using namespace OUtils;

// What all the noises of a texture read.
struct VolumeTextureInputs {
    FloatInput frequency, amplitude;
    FloatInput frequencyRatio; // lacunarity of the fractal
    FloatInput ratio;          // of the amplitudes of two octaves
    FloatInput threshold;      // added to the result
    FloatInput implode;        // strength of the concentric warp
    ColorInput implodeCenter;  // its centre, UVW in red, green and blue
    ColorInput scale;          // divides the point
    ColorInput origin;         // added to the point
    int depthMax = 0;          // number of octaves
    int inflection = 0;        // a flag
    // Whether the warp has a centre while none is connected: what implodeCenter reads as.
    bool hasUnsetCenter = false;
};

class MayaVolumeTexture {
public:
    // inputs outlive the noise.
    explicit MayaVolumeTexture(const VolumeTextureInputs& sharedInputs) : inputs(sharedInputs) {}
    MayaVolumeTexture(const MayaVolumeTexture&) = delete;
    MayaVolumeTexture& operator=(const MayaVolumeTexture&) = delete;
    virtual ~MayaVolumeTexture() = default;

    virtual float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const = 0;
    virtual float eval2d(const OmbrixContext& context, float x, float y, float time) const = 0;

    const VolumeTextureInputs& inputs;
};

class MayaPerlinTexture : public MayaVolumeTexture {
public:
    using MayaVolumeTexture::MayaVolumeTexture;

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
    explicit MayaSpaceTimeTexture(const VolumeTextureInputs& sharedInputs) : MayaPerlinTexture(sharedInputs)
    {
        spaceTime = true;
    }
    float noise3d(float x, float y, float z, float time, int level) const override;
    float noise2d(float x, float y, float time, int level) const override;
};

class MayaBillowTexture final : public MayaVolumeTexture {
public:
    using MayaVolumeTexture::MayaVolumeTexture;

    float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const override;
    float eval2d(const OmbrixContext& context, float x, float y, float time) const override;

    FloatInput density, spottyness, randomness, sizeRand;
    int falloff = 0; // BillowFalloff

private:
    BillowVolume read(const OmbrixContext& context) const;
};

class MayaCosineTexture final : public MayaVolumeTexture {
public:
    using MayaVolumeTexture::MayaVolumeTexture;

    float eval3d(const OmbrixContext& context, float x, float y, float z, float time) const override;
    float eval2d(const OmbrixContext& context, float x, float y, float time) const override;

    int numWaves = 0; // read as 16 bits
};

} // namespace nezaiva
