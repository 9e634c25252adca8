// The comparisons of the logic textures, on plain values.
#pragma once

#include <ombrix/types.h>

namespace nezaiva {

// The scene's numbers.
enum CompareOperation : int {
    kEqual = 0,
    kNotEqual = 1,
    kLess = 2,
    kGreater = 3,
    kLessOrEqual = 4,
    kGreaterOrEqual = 5,
};

// Whether the test holds. A NaN is unequal to everything, and no order holds for it. No test holds for an
// operation outside the enumeration.
inline bool compareFloats(float a, float b, int operation)
{
    switch (operation) {
    case kEqual:
        return a == b;
    case kNotEqual:
        return a != b;
    case kLess:
        return a < b;
    case kGreater:
        return a > b;
    case kLessOrEqual:
        return a <= b;
    case kGreaterOrEqual:
        return a >= b;
    default:
        return false;
    }
}

// Colours are equal channel by channel and ordered by the sums of their channels. Alpha takes no part.
inline bool compareColors(const OUtils::AColor& a, const OUtils::AColor& b, int operation)
{
    if (operation == kEqual || operation == kNotEqual) {
        const bool equal = a.r == b.r && a.g == b.g && a.b == b.b;
        return equal == (operation == kEqual);
    }
    return compareFloats(a.r + a.g + a.b, b.r + b.g + b.b, operation);
}

} // namespace nezaiva
