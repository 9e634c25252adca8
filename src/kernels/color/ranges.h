// Bounds of functions of bounds, on plain values. A Range is a pair of colours, lower and upper.
#pragma once

#include "kernels/color/channels.h"

#include <algorithm>

namespace nezaiva {

// What bounds say of a value that has none.
inline constexpr float kUnbounded = 1e18f;
inline constexpr AColor kUnboundedBelow{-kUnbounded, -kUnbounded, -kUnbounded, -kUnbounded};
inline constexpr AColor kUnboundedAbove{kUnbounded, kUnbounded, kUnbounded, kUnbounded};

// The lesser, and the greater, of two colours in each channel, alpha too. A NaN of a stays, one of b is
// passed over.
inline AColor lesserChannels(const AColor& a, const AColor& b)
{
    return {std::min(a.r, b.r), std::min(a.g, b.g), std::min(a.b, b.b), std::min(a.a, b.a)};
}

inline AColor greaterChannels(const AColor& a, const AColor& b)
{
    return {std::max(a.r, b.r), std::max(a.g, b.g), std::max(a.b, b.b), std::max(a.a, b.a)};
}

// The least and the greatest value of a function over the four pairs of a bound of a with a bound of b. A
// NaN of the first pair, the two lower bounds, stays; any other is passed over.
template <class Function>
float leastOfPairs(Function function, float lowerA, float upperA, float lowerB, float upperB)
{
    float least = function(lowerA, lowerB);
    least = std::min(least, function(lowerA, upperB));
    least = std::min(least, function(upperA, lowerB));
    return std::min(least, function(upperA, upperB));
}

template <class Function>
float greatestOfPairs(Function function, float lowerA, float upperA, float lowerB, float upperB)
{
    float greatest = function(lowerA, lowerB);
    greatest = std::max(greatest, function(lowerA, upperB));
    greatest = std::max(greatest, function(upperA, lowerB));
    return std::max(greatest, function(upperA, upperB));
}

// The same for each channel on its own.
template <class Function, class Range>
Color leastOfPairs(Function function, const Range& a, const Range& b)
{
    return eachChannel(
        [function](float lowerA, float upperA, float lowerB, float upperB) {
            return leastOfPairs(function, lowerA, upperA, lowerB, upperB);
        },
        a.lower, a.upper, b.lower, b.upper);
}

template <class Function, class Range>
Color greatestOfPairs(Function function, const Range& a, const Range& b)
{
    return eachChannel(
        [function](float lowerA, float upperA, float lowerB, float upperB) {
            return greatestOfPairs(function, lowerA, upperA, lowerB, upperB);
        },
        a.lower, a.upper, b.lower, b.upper);
}

// The one number that stands for bounds where only a number will do: the mean of the two, and of the three
// channels.
template <class Range>
float middleIntensity(const Range& range)
{
    const float sum =
        range.lower.r + range.lower.g + range.lower.b + range.upper.r + range.upper.g + range.upper.b;
    return sum * 0.5f * kThird;
}

} // namespace nezaiva
