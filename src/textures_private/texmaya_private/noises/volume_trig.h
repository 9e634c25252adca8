// Sine and cosine with operations of fixed order only, so that every machine and every build gives
// the same bits; the maths library chooses its bodies by processor.
#pragma once

namespace nezaiva {

struct SineCosine {
    float sine;
    float cosine;
};

// Whole turns are taken off angles up to this size by a product in double precision, with an error
// below 2e-8 radians. Larger angles need the many digits of exactTurns.
constexpr float kLargestPlainAngle = 67108864.0f; // 2^26
constexpr double kTurnsPerRadian = 0.15915494309189535;
constexpr double kRoundToWhole = 6755399441055744.0; // 1.5 * 2^52: adding it leaves no fraction

// angle / 2 pi less its nearest whole number, in -0.5..0.5, for an angle of any size in radians. NaN
// for what is not finite.
double exactTurns(float angle);

// The sine and the cosine of an angle in radians, within one unit in the last place of float.
SineCosine sineCosine(float angle);

} // namespace nezaiva
