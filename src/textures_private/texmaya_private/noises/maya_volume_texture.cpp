#include "textures_private/texmaya_private/noises/maya_volume_texture.h"

namespace nezaiva {

namespace {

inline void readFloat(const FloatInput& input, const OmbrixContext& context, float& value)
{
    if (input) value = input->evalFloat(context);
}

inline bool readPoint(const ColorInput& input, const OmbrixContext& context, VolumePoint& value)
{
    if (!input) return false;
    const AColor color = input(context);
    value = {color.r, color.g, color.b};
    return true;
}

// The numbers of a placement, each read from its input when it is wanted.
struct PlacementInputs {
    const VolumeTextureInputs& inputs;
    const OmbrixContext& context;
    float (*factorOf)(float); // what the class makes of a connected frequency
    float unsetFactor;

    float readImplode() const
    {
        float value = 0.0f;
        readFloat(inputs.implode, context, value);
        return value;
    }
    float readFrequencyFactor() const
    {
        return inputs.frequency ? factorOf(inputs.frequency(context)) : unsetFactor;
    }
    bool readImplodeCenter(VolumePoint& value) const
    {
        if (!inputs.implodeCenter && !inputs.hasUnsetCenter) return false;
        const AColor center = inputs.implodeCenter(context);
        value = {center.r, center.g, center.b};
        return true;
    }
    bool readScale(VolumePoint& value) const { return readPoint(inputs.scale, context, value); }
    bool readOrigin(VolumePoint& value) const { return readPoint(inputs.origin, context, value); }
};

inline PlacementInputs perlinPlacement(const VolumeTextureInputs& inputs, const OmbrixContext& context)
{
    return {inputs, context, perlinFrequencyFactor, kPerlinUnsetFrequencyFactor};
}
inline PlacementInputs billowPlacement(const VolumeTextureInputs& inputs, const OmbrixContext& context)
{
    return {inputs, context, billowFrequencyFactor, kBillowUnsetFrequencyFactor};
}
inline PlacementInputs cosinePlacement(const VolumeTextureInputs& inputs, const OmbrixContext& context)
{
    return {inputs, context, cosineFrequencyFactor, kCosineUnsetFrequencyFactor};
}

// Fills a record where it stands: one that is copied has to wait for its parts. Amplitude and threshold
// follow in an order of the class's own.
inline void readFractal(const VolumeTextureInputs& inputs, const OmbrixContext& context,
                        VolumeFractal& fractal)
{
    readFloat(inputs.frequencyRatio, context, fractal.frequencyRatio);
    readFloat(inputs.ratio, context, fractal.ratio);
    fractal.depthMax = inputs.depthMax;
    fractal.inflection = inputs.inflection != 0;
}

} // namespace

PerlinVolume MayaPerlinTexture::settings() const
{
    PerlinVolume noise;
    noise.wispy = wispy;
    noise.timeNoise = timeNoise;
    noise.spaceTime = spaceTime;
    noise.timePeriod = timePeriod;
    return noise;
}

PerlinVolume MayaPerlinTexture::read(const OmbrixContext& context) const
{
    PerlinVolume noise = settings();
    readFractal(inputs, context, noise.fractal);
    readFloat(inputs.amplitude, context, noise.fractal.amplitude);
    readFloat(inputs.threshold, context, noise.fractal.threshold);
    return noise;
}

float MayaPerlinTexture::eval3d(const OmbrixContext& context, float x, float y, float z, float time) const
{
    const VolumePoint point = placeVolumePoint3d(perlinPlacement(inputs, context), {x, y, z});
    return evalPerlin3d(read(context), point, time);
}

float MayaPerlinTexture::eval2d(const OmbrixContext& context, float x, float y, float time) const
{
    const VolumePoint point = placeVolumePoint2d(perlinPlacement(inputs, context), {x, y, 0.0f});
    return evalPerlin2d(read(context), point.x, point.y, time);
}

float MayaPerlinTexture::noise3d(float x, float y, float z, float time, int level) const
{
    return perlinLevel3d(settings(), {x, y, z}, time, level);
}

float MayaPerlinTexture::noise2d(float x, float y, float time, int level) const
{
    return perlinLevel2d(settings(), x, y, time, level);
}

// The settings say that time is a dimension; the octave is the kernel's.
float MayaSpaceTimeTexture::noise3d(float x, float y, float z, float time, int level) const
{
    return perlinLevel3d(settings(), {x, y, z}, time, level);
}

float MayaSpaceTimeTexture::noise2d(float x, float y, float time, int level) const
{
    return perlinLevel2d(settings(), x, y, time, level);
}

BillowVolume MayaBillowTexture::read(const OmbrixContext& context) const
{
    BillowVolume noise;
    readFractal(inputs, context, noise.fractal);
    readFloat(density, context, noise.density);
    readFloat(spottyness, context, noise.spottyness);
    readFloat(randomness, context, noise.randomness);
    readFloat(sizeRand, context, noise.sizeRand);
    readFloat(inputs.threshold, context, noise.fractal.threshold);
    readFloat(inputs.amplitude, context, noise.fractal.amplitude);
    noise.falloff = falloff;
    return noise;
}

float MayaBillowTexture::eval3d(const OmbrixContext& context, float x, float y, float z, float time) const
{
    const VolumePoint point = placeVolumePoint3d(billowPlacement(inputs, context), {x, y, z});
    return evalBillow3d(read(context), point, time);
}

float MayaBillowTexture::eval2d(const OmbrixContext& context, float x, float y, float time) const
{
    const VolumePoint point = placeVolumePoint2d(billowPlacement(inputs, context), {x, y, 0.0f});
    return evalBillow2d(read(context), point.x, point.y, time);
}

float MayaCosineTexture::eval3d(const OmbrixContext& context, float x, float y, float z, float time) const
{
    const VolumePoint point = placeVolumePoint3d(cosinePlacement(inputs, context), {x, y, z});
    CosineVolume noise;
    readFractal(inputs, context, noise.fractal);
    readFloat(inputs.threshold, context, noise.fractal.threshold);
    readFloat(inputs.amplitude, context, noise.fractal.amplitude);
    noise.numWaves = numWaves;
    return evalCosine3d(noise, point, time);
}

float MayaCosineTexture::eval2d(const OmbrixContext& context, float x, float y, float time) const
{
    const VolumePoint point = placeVolumePoint2d(cosinePlacement(inputs, context), {x, y, 0.0f});
    CosineVolume noise;
    readFractal(inputs, context, noise.fractal);
    readFloat(inputs.amplitude, context, noise.fractal.amplitude);
    readFloat(inputs.threshold, context, noise.fractal.threshold);
    noise.numWaves = numWaves;
    return evalCosine2d(noise, point.x, point.y, time);
}

} // namespace nezaiva
