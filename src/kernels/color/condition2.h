// The comparisons of TexCondition2, on plain values.
#pragma once

#include <cmath>

namespace nezaiva {

// The scene's numbers. They differ from those of the logic textures.
enum Condition2Operation : int {
    kTermsEqual = 0,
    kTermsNotEqual = 1,
    kTermGreater = 2,
    kTermGreaterOrEqual = 3,
    kTermLess = 4,
    kTermLessOrEqual = 5,
};

inline constexpr float kConditionTolerance = 1e-6f;

// Whether the test holds. None holds for a NaN, nor for an operation outside the enumeration.
inline bool conditionHolds(float a, float b, int operation)
{
    switch (operation) {
    case kTermsEqual:
        return std::fabs(a - b) < kConditionTolerance;
    case kTermsNotEqual:
        return std::fabs(a - b) > kConditionTolerance;
    case kTermGreater:
        return a - kConditionTolerance > b;
    case kTermGreaterOrEqual:
        return a + kConditionTolerance >= b;
    case kTermLess:
        return b > a + kConditionTolerance;
    case kTermLessOrEqual:
        return b >= a - kConditionTolerance;
    default:
        return false;
    }
}

// The number that the GPU's comparing operator has for an operation; one outside the enumeration is taken
// for equality.
inline int gpuComparison(int operation)
{
    constexpr int kNumbers[] = {0, 1, 3, 5, 2, 4};
    return operation >= kTermsEqual && operation <= kTermLessOrEqual ? kNumbers[operation] : 0;
}

} // namespace nezaiva
