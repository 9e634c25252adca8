// The colour of a black body, for TexTemperatureToColor: Planck's law over the visible wavelengths, the
// colour matching functions, and the primaries of a colour space.
#pragma once

#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// Temperatures are in kelvin. None lies below this.
inline constexpr float kLowestTemperature = 1000.0f;

// The host's numbers. Any other number counts as kColorSpace1.
enum TemperatureColorSpace : int {
    kColorSpace0 = 0,
    kColorSpace1 = 1,
    kColorSpace2 = 2,
};

// The colour of a temperature of kLowestTemperature or more, its mean channel at 1. Channels outside the
// space's gamut are negative. Within 5e-6 of blackBodyColorBySum, for the price of a table's look-up; the
// same bits on every machine. NaN, and temperatures so high that the sum has no value, give NaN.
Color blackBodyColor(float temperature, int colorSpace);

// The same by its definition, a sum over 71 wavelengths.
Color blackBodyColorBySum(float temperature, int colorSpace);

// The colour of any temperature, raised to kLowestTemperature where it lies below: the largest channel is
// 1, none is negative. NaN gives NaN.
Color temperatureColor(float temperature, int colorSpace);

} // namespace nezaiva
