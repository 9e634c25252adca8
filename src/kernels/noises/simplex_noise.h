// Two-dimensional simplex noise (Perlin 2001) with a hash of float arithmetic alone, its fractals, a
// distance-to-feature noise on the same grid, and the value of the simplex noise texture.
//
// The grid. (X, Y) = (x, y) / sqrt(2) is skewed by s = (X + Y) (sqrt(3) - 1) / 2 into the cell
// (i, j) = (floor(X + s), floor(Y + s)). A corner (i + a, j + b) of it lies at d_ab from the point:
//
//     d_00 = (i - t - X, j - t - Y)      t = (i + j) (3 - sqrt(3)) / 6
//     d_10 = d_00 + (1 - u, -u)      d_01 = d_00 + (-u, 1 - u)      d_11 = d_00 + (1 - 2u, 1 - 2u)
//
// with u = (3 - sqrt(3)) / 6. The corner's hash h and the two random numbers that come of it are
//
//     h = m(i + a, 26)^2 m(j + b, 161)^2      m(n, k) = n - 71 floor(0.014084507 n) + k
//     r1 = frac(0.0010513747 h)      r2 = frac(0.0015553312 h)      frac(a) = a - floor(a)
//
// The noise is 99.20434 times the sum over three corners, 00, 11 and either 10, where d_00.y > d_00.x, or 01,
// of
//
//     max(0, 1/2 - |d|^2)^4 (d . g) / |g|      g = (r1 - 0.49999, r2 - 0.49999)
//
// All constants are rounded to float, and so is every operation: the hash depends on it.
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

// octaves + 1 terms of noise; none when octaves is negative. Centred on 0.5:
//
//     1/2 + 1/2 sum of a_i b_i^(-a_i i) noise(p_i + distortion_i)      a_i = amplitude ratio^i
//     b_i = frequency frequencyRatio^i      p_(i+1) = (p_i.y b_i - 0.02, 0.3 + p_i.x b_i)
float simplexFractal(float x, float y, const SimplexOctaves& octaves);

// Ridges where the noise crosses zero; `octaves` terms, at least one. From 0.5 upwards. With q_i = 1 - |n_i|,
// n_0 the noise of the point and n_i that of p_i = b_(i-1) p_(i-1), distorted as octave i - 1 is:
//
//     1/2 + 1/2 (s_0 + amplitude sum of b_(i-1)^(-ratio) s_i)      s_0 = q_0^2
//     s_i = clamp(s_(i-1) frequencyRatio, 0, 1) q_i^2      b_i = frequency frequencyRatio^i
float simplexRidged(float x, float y, const SimplexOctaves& octaves);

// The squared distance to the nearest of four feature points, times the amplitude (Worley 1996). Each corner
// of the cell of (x, y) times the frequency has a feature at sqrt(2) times its d, moved on either axis by
// 0.14942925 (a^3 - sign a), a = 2 r1 - 1 on the first and 2 r2 - 1 on the second.
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
