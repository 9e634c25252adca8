// The conversions of a coordinate to a cell index, the same for all kernels.
//
// A conversion of a float that does not fit is undefined in C++ and differs from machine to machine,
// so no kernel converts without these bounds or without knowing its range.
//
// The functions are static: a source compiled for another instruction set gets a copy of its own.
#pragma once

#include <cstdint>

namespace nezaiva {

// A coordinate that is not finite counts as 0: its cell is 0 and so is its fraction.
static inline float finiteOrZero(float value)
{
    constexpr float kLargest = 3.40282347e+38f;
    return value >= -kLargest && value <= kLargest ? value : 0.0f;
}

static inline double finiteOrZero(double value)
{
    constexpr double kLargest = 1.7976931348623157e+308;
    return value >= -kLargest && value <= kLargest ? value : 0.0;
}

// Truncates towards zero. A value beyond the range gives the nearest end of it; NaN and the
// infinities give 0.
static inline std::int32_t cellIndex(double value)
{
    const double finite = finiteOrZero(value);
    if (finite <= -2147483648.0) return INT32_MIN;
    if (finite >= 2147483647.0) return INT32_MAX;
    return static_cast<std::int32_t>(finite);
}

static inline std::int32_t cellIndex(float value)
{
    return cellIndex(static_cast<double>(value));
}

} // namespace nezaiva
