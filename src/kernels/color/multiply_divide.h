// The arithmetic of MayaMultiplyDivide, on plain values.
#pragma once

#include "kernels/color/channels.h"

#include <algorithm>
#include <cmath>

namespace nezaiva {

// The scene's numbers. Any other number passes the first colour on.
enum MultiplyDivideOperation : int {
    kProduct = 1,
    kQuotient = 2,
    kPower = 3,
};

// A second colour whose squared length lies below this gives black; in a division, a divisor that lies
// this much below the first channel gives 0.
inline constexpr float kMultiplyDivideThreshold = 1e-6f;

inline float channelProduct(float a, float b)
{
    return a * b;
}

inline float channelQuotient(float a, float b)
{
    return a / b;
}

// Kept as is: the guard compares with its sign, so that divisors below 0 are cut off, while a negative a
// over a positive b is not.
inline float cutOffQuotient(float a, float b)
{
    return a * kMultiplyDivideThreshold > b ? 0.0f : a / b;
}

// The base is not limited: a negative one gives NaN where the exponent is no whole number.
inline float channelPower(float a, float b)
{
    return std::pow(a, std::max(0.0f, b));
}

inline Color multiplyDivide(const Color& a, const Color& b, int operation)
{
    switch (operation) {
    case kProduct:
    case kQuotient:
        // Kept as is: products too are black where the second colour is small as a whole.
        if (b.r * b.r + b.g * b.g + b.b * b.b < kMultiplyDivideThreshold) return {0.0f, 0.0f, 0.0f};
        return operation == kProduct ? eachChannel(channelProduct, a, b) : eachChannel(cutOffQuotient, a, b);
    case kPower:
        return eachChannel(channelPower, a, b);
    default:
        return a;
    }
}

// The formula of one channel without its guards, which the bounds are made from; null for an operation
// that has none.
using ChannelFormula = float (*)(float a, float b);
inline ChannelFormula multiplyDivideFormula(int operation)
{
    switch (operation) {
    case kProduct:
        return channelProduct;
    case kQuotient:
        return channelQuotient;
    case kPower:
        return channelPower;
    default:
        return nullptr;
    }
}

} // namespace nezaiva
