// Two-dimensional simplex noise with a hash of float arithmetic alone, its fractals, a
// distance-to-feature noise on the same grid, and the value of the simplex noise texture.
//
// Coordinates, parameters and results are single precision. A coordinate that is not finite gives NaN
// or a finite number, never an error. Any thread, at once. The results are the same bits with every
// instruction set; where a power is taken they depend on the maths library's powf.
#pragma once

namespace nezaiva {

// Roughly in -1..1.
float simplexNoise(float x, float y);

// What the fractals take beside the point.
struct SimplexOctaves {
    float amplitude = 1.0f;
    float ratio = 0.707f;
    int octaves = 3;
    float frequency = 2.0f;
    float frequencyRatio = 1.0f;
    // Octave i moves its point by (distortionU, distortionV) * distortionRatio^(i + 1).
    float distortionU = 0.0f;
    float distortionV = 0.0f;
    float distortionRatio = 0.0f;
};

// octaves + 1 terms of noise; none when octaves is negative. Centred on 0.5.
float simplexFractal(float x, float y, const SimplexOctaves& octaves);

// Ridges where the noise crosses zero; `octaves` terms, at least one. From 0.5 upwards.
float simplexRidged(float x, float y, const SimplexOctaves& octaves);

// The squared distance to the nearest of four feature points, times the amplitude.
float simplexCellular(float x, float y, float amplitude, float frequency);

enum SimplexNoiseType : int {
    kSimplexFractalNoise = 0,
    kSimplexCellularNoise = 1,
    kSimplexRidgedNoise = 2,
};

// The simplex noise texture's parameters, read at the context.
struct SimplexTextureValues {
    SimplexOctaves octaves;
    float scale = 0.0f; // at or below 0.0001 counts as 0, so that all points are (0, 0)
    float threshold = 0.0f;
    float gamma = 1.0f;
    int noiseType = kSimplexFractalNoise; // any other number leaves the threshold alone
};

// The texture's value at (u, v): not below 0, and 0 where the arithmetic gives NaN.
float simplexTexture(float u, float v, const SimplexTextureValues& values);

} // namespace nezaiva
