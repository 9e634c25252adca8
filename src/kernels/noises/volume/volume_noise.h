// The volume noises: fractal sums of lattice noise, of random blobs and of plane waves, in two and
// three dimensions, on plain values.
//
// A texture object reads its inputs at the context, fills one of the records below and calls the
// evaluation of its class. The order of reading is observable through the inputs (a texture may
// count its calls), so it is fixed:
//
//   all classes        implode; implodeCenter only when usesImplodeCenter(implode); frequency;
//                      scale; origin; frequencyRatio; ratio
//   Perlin, space-time amplitude, then threshold
//   billow             density, spottyness, randomness, sizeRand, threshold, amplitude
//   cosine 3D          threshold, amplitude
//   cosine 2D          amplitude, threshold
//
// The defaults of the records are what an input that is not set reads as. The factor of the
// frequency is the exception: see the constants of volume_placement.h, which places the point.
//
// All arithmetic is single precision, each operation rounded, and every instruction set gives the
// same bits. All functions are pure, may be called from any thread and never allocate. No value of
// any argument leads to a read outside a table or to a loop without end: the cell of a coordinate
// that is not finite is cell 0 with the fraction 0. Results may be NaN; they are never above 1, and
// have no lower limit.
#pragma once

namespace nezaiva {

struct VolumePoint {
    float x;
    float y;
    float z;
};

// What all generators share. A frequencyRatio of 0 or less counts as 1; a depthMax of 0 or less
// runs no octave.
struct VolumeFractal {
    float amplitude = 1.0f;
    float frequencyRatio = 2.0f;
    float ratio = 0.707f; // of the amplitudes of two octaves
    float threshold = 0.0f;
    int depthMax = 0;
    bool inflection = false; // folds each octave into its absolute value
};

struct PerlinVolume {
    VolumeFractal fractal;
    bool wispy = false;
    bool timeNoise = false; // time as a dimension of the lattice, where the class knows it
    bool spaceTime = false; // the noise of MayaSpaceTimeTexture in place of that of MayaPerlinTexture
    int timePeriod = 100;
};

// The four documented fall-offs. Any other number leaves all blobs at 0.
enum BillowFalloff : int {
    kBillowLinear = 0,
    kBillowSmooth = 1,
    kBillowFast = 2,
    kBillowBubble = 3,
};

struct BillowVolume {
    VolumeFractal fractal;
    float density = 1.0f;
    float spottyness = 0.1f;
    float randomness = 1.0f;
    float sizeRand = 0.0f;
    int falloff = kBillowLinear;
};

struct CosineVolume {
    VolumeFractal fractal;
    int numWaves = 0; // read as a signed 16-bit number
};

// Makes the tables of all volume noises, once a process; to be called before rendering, from any
// thread. Without it the first evaluation makes them, while other threads wait.
void prepareVolumeNoise();

// The noise at a placed point. With a depthMax of 0 the Perlin type gives its bias and threshold,
// billow and the 3D cosine give NaN.
float evalPerlin3d(const PerlinVolume& noise, const VolumePoint& point, float time);
float evalPerlin2d(const PerlinVolume& noise, float x, float y, float time);
float evalBillow3d(const BillowVolume& noise, const VolumePoint& point, float time);
float evalBillow2d(const BillowVolume& noise, float x, float y, float time);
float evalCosine3d(const CosineVolume& noise, const VolumePoint& point, float time);
float evalCosine2d(const CosineVolume& noise, float x, float y, float time);

// One octave of MayaPerlinTexture (or of MayaSpaceTimeTexture, when noise.spaceTime is set) at the
// position it has in that octave: noise3d and noise2d of these classes.
float perlinLevel3d(const PerlinVolume& noise, VolumePoint point, float time, int level);
float perlinLevel2d(const PerlinVolume& noise, float x, float y, float time, int level);

} // namespace nezaiva
