// The entries of the random tables, one by one, for the tables that are made from them at compile time.
#pragma once

#include "numeric/random_sequence.h"

#include <cstddef>
#include <cstdint>

namespace nezaiva {

// A stream of numbers, but for the first entries, which are older than the rule and stay as scenes know them.
template <std::size_t Count>
struct RandomTableRule {
    std::uint64_t stream;
    float beginning[Count];

    constexpr float entry(std::size_t i) const
    {
        return i < Count ? beginning[i] : static_cast<float>(streamValue(stream, i));
    }
};

constexpr RandomTableRule<5> kCurrentTableRule{1, {-0.510765f, -0.892593f, 0.324582f, 0.514013f, 0.676386f}};
constexpr RandomTableRule<2> kOldTableRule{2, {-0.864927f, -0.440085f}};

} // namespace nezaiva
