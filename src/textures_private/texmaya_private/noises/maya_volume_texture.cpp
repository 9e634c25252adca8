#include "textures_private/texmaya_private/noises/maya_volume_texture.h"

namespace nezaiva {

namespace {

void readFloat(TextureFloatInterface* input, const OmbrixContext& context, float& value)
{
    if (input) value = input->evalFloat(context);
}

VolumePoint readPoint(TextureInterface& input, const OmbrixContext& context)
{
    AColor color;
    input.evalColor(&color, context);
    return {color.r, color.g, color.b};
}

} // namespace

VolumePlacement MayaVolumeTexture::readPlacement(const OmbrixContext& context, float (*factorOf)(float),
                                                 float unsetFactor) const
{
    VolumePlacement placement;
    readFloat(implode, context, placement.implode);
    if (implodeCenter && usesImplodeCenter(placement.implode)) {
        placement.hasImplodeCenter = true;
        placement.implodeCenter = readPoint(*implodeCenter, context);
    }
    placement.frequencyFactor = frequency ? factorOf(frequency->evalFloat(context)) : unsetFactor;
    if (scale) {
        placement.hasScale = true;
        placement.scale = readPoint(*scale, context);
    }
    if (origin) {
        placement.hasOrigin = true;
        placement.origin = readPoint(*origin, context);
    }
    return placement;
}

VolumeFractal MayaVolumeTexture::readFractal(const OmbrixContext& context) const
{
    VolumeFractal fractal;
    readFloat(frequencyRatio, context, fractal.frequencyRatio);
    readFloat(ratio, context, fractal.ratio);
    fractal.depthMax = depthMax;
    fractal.inflection = inflection;
    return fractal;
}

void MayaVolumeTexture::readAmplitude(const OmbrixContext& context, VolumeFractal& fractal) const
{
    readFloat(amplitude, context, fractal.amplitude);
}

void MayaVolumeTexture::readThreshold(const OmbrixContext& context, VolumeFractal& fractal) const
{
    readFloat(threshold, context, fractal.threshold);
}

PerlinVolume MayaPerlinTexture::settings() const
{
    PerlinVolume noise;
    noise.wispy = wispy;
    noise.timeNoise = timeNoise;
    noise.spaceTime = spaceTime;
    noise.timePeriod = timePeriod;
    return noise;
}

float MayaPerlinTexture::eval3d(const OmbrixContext& context, float x, float y, float z, float time) const
{
    const VolumePlacement placement =
        readPlacement(context, perlinFrequencyFactor, kPerlinUnsetFrequencyFactor);
    PerlinVolume noise = settings();
    noise.fractal = readFractal(context);
    readAmplitude(context, noise.fractal);
    readThreshold(context, noise.fractal);
    return evalPerlin3d(noise, placeVolumePoint3d(placement, {x, y, z}), time);
}

float MayaPerlinTexture::eval2d(const OmbrixContext& context, float x, float y, float time) const
{
    const VolumePlacement placement =
        readPlacement(context, perlinFrequencyFactor, kPerlinUnsetFrequencyFactor);
    PerlinVolume noise = settings();
    noise.fractal = readFractal(context);
    readAmplitude(context, noise.fractal);
    readThreshold(context, noise.fractal);
    const VolumePoint point = placeVolumePoint2d(placement, {x, y, 0.0f});
    return evalPerlin2d(noise, point.x, point.y, time);
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
    noise.fractal = readFractal(context);
    readFloat(density, context, noise.density);
    readFloat(spottyness, context, noise.spottyness);
    readFloat(randomness, context, noise.randomness);
    readFloat(sizeRand, context, noise.sizeRand);
    readThreshold(context, noise.fractal);
    readAmplitude(context, noise.fractal);
    noise.falloff = falloff;
    return noise;
}

float MayaBillowTexture::eval3d(const OmbrixContext& context, float x, float y, float z, float time) const
{
    const VolumePlacement placement =
        readPlacement(context, billowFrequencyFactor, kBillowUnsetFrequencyFactor);
    const BillowVolume noise = read(context);
    return evalBillow3d(noise, placeVolumePoint3d(placement, {x, y, z}), time);
}

float MayaBillowTexture::eval2d(const OmbrixContext& context, float x, float y, float time) const
{
    const VolumePlacement placement =
        readPlacement(context, billowFrequencyFactor, kBillowUnsetFrequencyFactor);
    const BillowVolume noise = read(context);
    const VolumePoint point = placeVolumePoint2d(placement, {x, y, 0.0f});
    return evalBillow2d(noise, point.x, point.y, time);
}

float MayaCosineTexture::eval3d(const OmbrixContext& context, float x, float y, float z, float time) const
{
    const VolumePlacement placement =
        readPlacement(context, cosineFrequencyFactor, kCosineUnsetFrequencyFactor);
    CosineVolume noise;
    noise.fractal = readFractal(context);
    readThreshold(context, noise.fractal);
    readAmplitude(context, noise.fractal);
    noise.numWaves = numWaves;
    return evalCosine3d(noise, placeVolumePoint3d(placement, {x, y, z}), time);
}

float MayaCosineTexture::eval2d(const OmbrixContext& context, float x, float y, float time) const
{
    const VolumePlacement placement =
        readPlacement(context, cosineFrequencyFactor, kCosineUnsetFrequencyFactor);
    CosineVolume noise;
    noise.fractal = readFractal(context);
    readAmplitude(context, noise.fractal);
    readThreshold(context, noise.fractal);
    noise.numWaves = numWaves;
    const VolumePoint point = placeVolumePoint2d(placement, {x, y, 0.0f});
    return evalCosine2d(noise, point.x, point.y, time);
}

} // namespace nezaiva
