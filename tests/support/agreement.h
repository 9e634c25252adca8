// Results of the library beside those of plain twins.
#pragma once

#include "support/plain_values.h"
#include "support/tolerances.h"

#include <ombrix/types.h>

namespace support {

inline plain::Rgba widened(const OUtils::AColor& c)
{
    return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b),
            static_cast<double>(c.a)};
}
// The colour without its alpha.
inline plain::Vec widenedColor(const OUtils::AColor& c)
{
    return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b)};
}

// The twin's number up to the tolerance of sums, times how much the steps before may have grown a rounding
// error.
inline bool agrees(float actual, double expected, double growth = 1.0)
{
    return tolerance::sumAgrees(actual, expected, growth);
}
inline bool agrees(const OUtils::AColor& actual, const plain::Rgba& expected, double growth = 1.0)
{
    return agrees(actual.r, expected.r, growth) && agrees(actual.g, expected.g, growth) &&
           agrees(actual.b, expected.b, growth) && agrees(actual.a, expected.a, growth);
}

} // namespace support
