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

// sin(2 pi t) / t for t in -0.25..0.25, in even powers of t: the minimax polynomial, relative error 2e-16.
constexpr double kSineOfTurns[] = {6.2831853071795853,  -41.341702240398021, 81.605249275512861,
                                   -76.705859683293383, 42.058689667474603,  -15.094499477698516,
                                   3.8172886732418929,  -0.69215708544992394};

// Half turns are taken off small angles in single precision: their number is rounded by an addition,
// after which its last bit is that of the sum.
constexpr float kRoundFloatToWhole = 12582912.0f; // 1.5 * 2^23
constexpr float kHalfTurnsPerRadian = 0.318309886f;
constexpr float kPiHigh = 3.140625f; // 201 / 2^6

// Below this size there are fewer than 2^11 half turns, for which two parts of pi suffice. The minimax
// polynomial of the cosine a quarter turn to either side, in even powers of the angle, has an error of
// 6e-8.
constexpr float kLargestBriefAngle = 6400.0f;
constexpr float kPiRest = 0.000967653590f;
constexpr float kBriefCosine[] = {0.99999994f, -0.499999052f, 0.04166358f, -0.00138536689f, 2.3153111e-05f};

// angle / 2 pi less its nearest whole number, in -0.5..0.5, for an angle of any size in radians. NaN
// for what is not finite.
double exactTurns(float angle);

// The sine and the cosine of an angle in radians, within one unit in the last place of float.
SineCosine sineCosine(float angle);

} // namespace nezaiva
