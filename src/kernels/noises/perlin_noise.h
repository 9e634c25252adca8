// Gradient noise (Perlin 1985, with the fade of 2002) in three dimensions on a grid of period 256, with its
// own permutation and gradients.
//
// For a coordinate x, as a float,
//
//     cell = floor(x)      near = x - cell      far = x - (cell + 1)
//     fade = near^3 ((6 near - 15) near + 10)
//
// where the cell is trunc(x - 1 + 1e-9) for a negative x, so that what lies within 1e-9 of 0 stays in cell 0.
// The corner (i, j, k) of a point's cell has the unit vector g of the row (i + perm[j + perm[k]]) of the
// gradient table, each sum modulo 256, and the value of the dot product of g with the point's distances to
// that corner. The noise interpolates the eight values linearly, along x, y and z by their fades. All of this
// is in double precision.
//
// All evaluation reads constants and runs on any thread at once. The results are the same bits with
// every instruction set. A coordinate that is not finite counts as 0.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

namespace OUtils {

// What a user of the noise holds. The named fields serve the noise and its fractal sum; the others
// are kept for callers.
struct NoiseParams {
    float amplitudeDivisor = 1.0f; // each octave's amplitude is divided by it
    float persistence = 1.0f;      // each octave's amplitude is multiplied by it
    float lacunarity = 2.0f;       // each octave's frequency is multiplied by it
    float frequency = 1.0f;        // the noise function multiplies the point by it
    float callerValue0 = 1.0f;
    std::int32_t octaves = 3;
    std::int32_t kind = 1; // 1, 2 or 3 let an octave count; 2 also takes the sum's absolute value
    float callerValue1 = 1.0f;
    float callerValue2 = 1.0f;
    std::int32_t absoluteOctaves = 0; // non-zero: each octave's value is made absolute
};

// The noise of a point that is already in units of the grid, roughly in -1..1; 0 at whole points.
double gradientNoise3(float x, float y, float z);

// The same in the plane of the grid's z cell 0, without the gradients' z: what is left of
// gradientNoise3 when the distances along z are dropped.
double gradientNoise2(float x, float y);

// Octaves of gradientNoise3, in double precision:
//
//     sum of a_i n(F x l^i, F y l^i, F z l^i) / sum of a_i      a_i = (persistence / amplitudeDivisor)^i
//
// with F the frequency and l the lacunarity of `params`, and n the noise or, with absoluteOctaves, its
// magnitude. Of kinds but 1 to 3 the upper sum is 0; kind 2 and absoluteOctaves take its magnitude. Without
// octaves the result is NaN.
float perlinFractalSum(const NoiseParams& params, double x, double y, double z);

class PerlinNoise {
public:
    struct Gradient {
        float x, y, z;
    };

    // Fills the tables once; later calls change nothing. Any thread.
    void fillTables();

    // The noise at the point times the frequency of `params`. Only the float value of a coordinate
    // counts. Does not depend on the tables being filled.
    double noise(const NoiseParams& params, double x, double y, double z) const;

    const std::vector<Gradient>& gradients() const { return m_gradients; }
    const std::vector<std::int32_t>& permutation() const { return m_permutation; }

private:
    std::vector<Gradient> m_gradients;       // 256 unit vectors
    std::vector<std::int32_t> m_permutation; // 0..255, permuted
    std::mutex m_fillLock;
};

} // namespace OUtils
