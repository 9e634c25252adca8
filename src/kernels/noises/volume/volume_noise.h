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
// In the formulas below an octave l runs from 0 to depthMax - 1, with the amplitude a_l = ratio^l and the
// frequency f_l = L^l, where L is the frequencyRatio, or 1 for one of 0 or less. Time grows with the root of
// the frequency, t_l = time sqrt(L)^l. The shifts S_l = (l + 1) S keep the octaves apart. random(n) is entry
// |n|, modulo its size, of the active random table, and an octave counts in it as a signed 16-bit number. The
// result is min(r, 1); `fold(v)` is |v| with inflection, and v without.
//
// All arithmetic is single precision, each operation rounded, and every instruction set gives the
// same bits. Constants of the formulas stand in volume_constants.h. All functions are pure, may be called
// from any thread and never allocate. No value of any argument leads to a read outside a table or to a loop
// without end: the cell of a coordinate that is not finite is cell 0 with the fraction 0. Results may be NaN;
// they are never above 1, and have no lower limit.
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
    int depthMax = 0;        // octaves
    bool inflection = false; // folds each octave into its absolute value
};

// The Perlin fractals, on the lattice noises N2, N3, N4 of lattice_noise.h. In the octave l, P = p_l + S_l
// with S = (0.02, 0.3, 0.01) and p_l = p f_l, and D is a unit vector of its own:
//
//     r = threshold + 1/2 + amplitude / 2 sum of a_l v_l
//     r = threshold + amplitude sum of a_l |v_l|                      with inflection
//
//     v_l in space                  in the plane
//     N3(P + s D)                   N2(P + s D)          s = 0.0625 t_l + l / 2
//     N4(P, t_l, timePeriod)        N2(P + s D)          with timeNoise
//     N4(P, 0.1 t_l, timePeriod)    N3(P, 0.1 t_l)       with spaceTime
//     N3(P + w D)                   N2(P + w D)          with wispy, whatever spaceTime says
//     N4(P + w D, t_l, timePeriod)  N3(P + w D, t_l)     with wispy and timeNoise
//
// D lies along (random(10 l), random(10 l + 1), random(10 l + 2)), or along the next three where these have
// no length; in the plane two numbers take the place of three. The wispy form warps its point, which all
// later octaves inherit:
//
//     w = 0.3125 N3(0.1 P + s D)      s = 0.01875 t_l + l / 2      p_(l+1) = L (p_l + w D / 2)
//
// with N2 in the plane.
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

// A sum of round blobs, one in each cell of a periodic lattice of 20 cells to the unit. With the octave's
// position P = p f_l + S_l, S = (0.021, 0.33, 0.011), on each axis
//
//     c = 20 (P - floor(P))      cell = trunc(c)      e = c - cell - 1/2
//
// and for each cell n = (i, j, k) of the 27, or 9, around and including it, all modulo 20, with
// b = 400 z + 20 y + x and r_n = random(b + n)
//
//     o = randomness / 2 (sin(2 pi r_0 + 2 t_l), cos(2 pi r_1 + 1.5 t_l), cos(2 pi r_2 + t_l))
//     D = |e - n - o|^2 2 / d      d = min(density, 2 - randomness)
//     D = D / ((r_3 + 1) sizeRand / 2 + 1 - sizeRand)         where sizeRand > 0
//     v = h(D) for D < 1, else 0
//     v = v ((r_4 + 1) spottyness + 1 - spottyness)           where spottyness > 0
//
//     h(D) = 1 - sqrt(D)  linear      1 - D (3 - 2 sqrt(D))  smooth      1 - D  fast
//            E <= 1 ? E : 1 - 10 (E - 1), E = 1.1 D  bubble
//     r = threshold + amplitude sum of a_l fold(sum of v) / sum of a_l
//
// In the plane b = 20 y + x, r_2 and r_3 take the places of r_3 and r_4, and t_l = time L^l. With d below
// 0.0001 there are no blobs.
struct BillowVolume {
    VolumeFractal fractal;
    float density = 1.0f;
    float spottyness = 0.1f;
    float randomness = 1.0f;
    float sizeRand = 0.0f;
    int falloff = kBillowLinear;
};

// Plane waves in random directions: with V_l the mean of numWaves of them,
//
//     cos(pi phase + pi t_l + 2 pi D . P)
//
//     in space      P = (p - S) f_l + S_l      S = (0.021, 0.33, 0.011)
//                   r = threshold + 1/2 + amplitude sum of a_l V_l / sum of a_l
//                   with inflection, threshold + 2.3 amplitude sum of a_l |V_l| / sum of a_l
//     in the plane  P = p f_l
//                   r = threshold + 1/2 + amplitude / 2 sum of a_l V_l
//                   with inflection, threshold + amplitude sum of a_l |V_l|
//
// A wave takes its direction D from three, or two, random numbers as the Perlin type does, and its phase from
// the next one. The first of an octave begins at 50 l, the others follow.
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
