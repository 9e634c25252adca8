// The arithmetic of TexSetRange, on plain values: one channel moved from an old range to a new one.
#pragma once

namespace nezaiva {

// What an old range of no width is widened by. A range whose ends are so far from 0 that adding this
// changes nothing divides by zero.
inline constexpr float kEmptyRangeWidth = 1e6f;

inline float widenedOldMax(float oldMin, float oldMax)
{
    return oldMax == oldMin ? oldMax + kEmptyRangeWidth : oldMax;
}

// No clamp: values outside the old range extrapolate.
inline float movedBetweenRanges(float value, float oldMin, float oldMax, float newMin, float newMax)
{
    return newMin + ((value - oldMin) / (oldMax - oldMin)) * (newMax - newMin);
}

inline float setRange(float value, float oldMin, float oldMax, float newMin, float newMax)
{
    return movedBetweenRanges(value, oldMin, widenedOldMax(oldMin, oldMax), newMin, newMax);
}

// A lower and an upper bound, by index.
using BoundPair = float[2];

// The least and the greatest of the formula over all 32 combinations of bounds. NaN is passed over; where
// every combination gives NaN the ends are 1e18 and -1e18.
inline void setRangeBounds(const BoundPair& value, const BoundPair& oldMin, const BoundPair& oldMax,
                           const BoundPair& newMin, const BoundPair& newMax, float& least, float& greatest)
{
    // Every old maximum is widened away from every old minimum beforehand. A widened one may meet the
    // other minimum, and is then widened again.
    BoundPair widened = {oldMax[0], oldMax[1]};
    for (float bound : oldMin)
        for (float& end : widened)
            end = widenedOldMax(bound, end);

    least = 1e18f;
    greatest = -1e18f;
    for (int choice = 0; choice < 32; ++choice) {
        const float moved =
            movedBetweenRanges(value[choice & 1], oldMin[(choice >> 1) & 1], widened[(choice >> 2) & 1],
                               newMin[(choice >> 3) & 1], newMax[(choice >> 4) & 1]);
        if (moved < least) least = moved;
        if (moved > greatest) greatest = moved;
    }
}

} // namespace nezaiva
