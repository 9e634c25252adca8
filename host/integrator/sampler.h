// Well-spread random numbers: a Sobol sequence with hash-based Owen scrambling, whose pairs of dimensions
// are shuffled against one another (Burley, "Practical Hash-based Owen Scrambling", JCGT 2020). A number
// depends on the pixel, the sample and the dimension alone.
#pragma once

#include <cstdint>

namespace ombrix {

struct Pair {
    float u = 0.0f, v = 0.0f; // 0 to below 1
};

class Sampler {
public:
    // Starts the sample-th sample of a pixel.
    void start(std::uint32_t pixelSeed, std::uint32_t sample)
    {
        seed = pixelSeed;
        index = sample;
        dimension = 0;
    }
    // The next two dimensions, as a point that is well spread over the pixel's samples.
    Pair nextPair()
    {
        const std::uint32_t pairSeed = mixed(seed + 0x9E3779B9u * ++dimension);
        const std::uint32_t shuffled = scrambled(reversed(index), pairSeed);
        // The first Sobol dimension of an index is the index with its bits reversed: shuffled in reverse
        // order, the index comes back as it is needed.
        const std::uint32_t order = reversed(shuffled);
        const std::uint32_t x = reversed(scrambled(order, pairSeed * 0x68E31DA5u));
        const std::uint32_t y = reversed(scrambled(reversedSecondSobol(order), pairSeed * 0xB5297A4Du));
        return {unit(x), unit(y)};
    }
    float next() { return nextPair().u; }

    // A well-mixed hash of 32 bits.
    static std::uint32_t mixed(std::uint32_t x)
    {
        x ^= x >> 16;
        x *= 0x7FEB352Du;
        x ^= x >> 15;
        x *= 0x846CA68Bu;
        return x ^ (x >> 16);
    }
    static std::uint32_t pixelSeed(std::uint32_t x, std::uint32_t y)
    {
        return mixed(x + mixed(y + 0x51ED270Bu));
    }

private:
    static std::uint32_t reversed(std::uint32_t x)
    {
        x = __builtin_bswap32(x);
        x = ((x & 0x0F0F0F0Fu) << 4) | ((x >> 4) & 0x0F0F0F0Fu);
        x = ((x & 0x33333333u) << 2) | ((x >> 2) & 0x33333333u);
        return ((x & 0x55555555u) << 1) | ((x >> 1) & 0x55555555u);
    }
    // Owen scrambling of a number whose bits are reversed: every step carries upwards only.
    static std::uint32_t scrambled(std::uint32_t x, std::uint32_t scramble)
    {
        x ^= x * 0x3D20ADEAu;
        x += scramble;
        x *= (scramble >> 16) | 1u;
        x ^= x * 0x05526C56u;
        x ^= x * 0x53A22864u;
        return x;
    }
    // The second Sobol dimension of an index, with its bits reversed: bit j is the sum modulo 2 of the
    // index's bits i for which the binomial of i over j is odd, which is where i has all bits of j.
    static std::uint32_t reversedSecondSobol(std::uint32_t x)
    {
        x ^= (x >> 1) & 0x55555555u;
        x ^= (x >> 2) & 0x33333333u;
        x ^= (x >> 4) & 0x0F0F0F0Fu;
        x ^= (x >> 8) & 0x00FF00FFu;
        return x ^ (x >> 16);
    }
    static float unit(std::uint32_t bits) { return static_cast<float>(bits >> 8) * (1.0f / 16777216.0f); }

    std::uint32_t seed = 0, index = 0, dimension = 0;
};

} // namespace ombrix
