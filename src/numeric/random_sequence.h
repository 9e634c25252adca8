// The one rule behind every table of fixed random numbers.
#pragma once

#include <cstdint>

namespace nezaiva {

// The output function of the SplitMix64 generator (Steele, Lea, Flood 2014), used as a hash.
constexpr std::uint64_t splitmix(std::uint64_t x)
{
    std::uint64_t z = x + 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

// Number i of a stream, evenly spread over -1..1, both ends excluded. Streams in use: 1 the current
// random table, 2 the old one, 3 the leather table, 4 the gradients.
constexpr double streamValue(std::uint64_t stream, std::uint64_t i)
{
    const std::uint64_t bits = splitmix((stream << 32) + i) >> 40;
    return (static_cast<double>(bits) + 0.5) / 8388608.0 - 1.0;
}

} // namespace nezaiva
