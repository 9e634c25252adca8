// The two brightnesses of a colour, with or without alpha.
#pragma once

namespace nezaiva {

// What sums of three are multiplied by for their mean.
inline constexpr float kThird = 0.33333334f;

// The mean of red, green and blue.
template <class AnyColor>
float intensity(const AnyColor& color)
{
    return (color.r + color.g + color.b) * kThird;
}

// Maya's luminance, by the weights of broadcast television.
template <class AnyColor>
float luminance(const AnyColor& color)
{
    return 0.3f * color.r + 0.59f * color.g + 0.11f * color.b;
}

} // namespace nezaiva
