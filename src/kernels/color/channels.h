// Colours channel by channel, on plain values.
#pragma once

#include "kernels/color/brightness.h"

#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

inline constexpr AColor kWhite{1.0f, 1.0f, 1.0f, 1.0f};
inline constexpr AColor kZero{0.0f, 0.0f, 0.0f, 0.0f};

inline Color rgbOf(const AColor& color)
{
    return {color.r, color.g, color.b};
}

inline AColor withAlpha(const Color& rgb, float alpha)
{
    return {rgb.r, rgb.g, rgb.b, alpha};
}

// The function of red, of green and of blue. The colours may be with or without alpha.
template <class Function, class... Colors>
Color eachChannel(Function function, const Colors&... colors)
{
    return {function(colors.r...), function(colors.g...), function(colors.b...)};
}

inline Color scaled(const Color& color, float factor)
{
    return {color.r * factor, color.g * factor, color.b * factor};
}

} // namespace nezaiva
