// The correct, mask, composite and conversion nodes written down plainly, in double precision and in one
// piece a node: the oracle of their tests. It shares nothing with the library. Unset inputs are empty
// optionals.
#pragma once

#include "support/plain_values.h"

#include <cmath>
#include <limits>
#include <optional>

namespace plain {

using MaybeColor = std::optional<Rgba>;
using MaybeNumber = std::optional<double>;

// Hue in degrees, saturation, value in r, g, b.
inline Rgba toHsv(const Rgba& c)
{
    const double top = most(most(c.r, c.g), c.b);
    const double range = top - least(least(c.r, c.g), c.b);
    if (range <= 0.0) return {0.0, 0.0, top, c.a};
    double sixth = (c.r - c.g) / range + 4.0;
    if (c.g == top) sixth = (c.b - c.r) / range + 2.0;
    if (c.r == top) sixth = (c.g - c.b) / range;
    const double degrees = sixth * 60.0;
    return {degrees < 0.0 ? degrees + 360.0 : degrees, range / top, top, c.a};
}

// The six cases, at the hue as it is.
inline Rgba fromHueSixth(const Rgba& hsv)
{
    const double s = hsv.g, v = hsv.b;
    if (s == 0.0) return {v, v, v, hsv.a};
    const double sixth = std::floor(hsv.r / 60.0);
    const double f = hsv.r / 60.0 - sixth;
    const double p = (1.0 - s) * v, q = (1.0 - s * f) * v, t = (1.0 - s * (1.0 - f)) * v;
    if (sixth == 1.0) return {q, v, p, hsv.a};
    if (sixth == 2.0) return {p, v, t, hsv.a};
    if (sixth == 3.0) return {p, q, v, hsv.a};
    if (sixth == 4.0) return {t, p, v, hsv.a};
    if (sixth == 5.0) return {v, p, q, hsv.a};
    return {v, t, p, hsv.a};
}

// A power beyond single precision counts as infinite.
inline double gammaOf(double c, double g)
{
    if (g == 0.0) return c;
    const double p = std::pow(c, 1.0 / g);
    return std::fabs(p) <= static_cast<double>(std::numeric_limits<float>::max()) ? p : c;
}

struct ColorCorrect {
    MaybeColor in_color, col_gain, col_offset, col_gamma, col_clamp_min, col_clamp_max;
    MaybeNumber in_alpha, unpremultiply_input, premultiply_result, hue_shift, sat_gain, val_gain, col_clamp,
        alpha_gain, alpha_offset, alpha_clamp, alpha_clamp_min, alpha_clamp_max;

    // How near the last evaluation came to a point where the result jumps or its error grows without
    // bound (a power of nearly 0, a hue near the end of the circle), and the largest finite number on the
    // way, which carries the largest rounding error.
    mutable double margin = 1.0, scale = 1.0;

    Rgba operator()() const
    {
        margin = scale = 1.0;
        Rgba c = in_color.value_or(Rgba{0, 0, 0, 0});
        c.a = in_alpha.value_or(1.0);
        if (unpremultiply_input.value_or(0.0) != 0.0) {
            const double reciprocal = 1.0 / c.a;
            c = {c.r * reciprocal, c.g * reciprocal, c.b * reciprocal, c.a};
            reaches(c);
        }
        const double shift = hue_shift.value_or(0.0);
        const double saturation = sat_gain.value_or(1.0), value = val_gain.value_or(1.0);
        if (!(shift == 0.0 && saturation == 1.0 && value == 1.0)) {
            Rgba hsv = toHsv(c);
            hsv = {hsv.r + shift, hsv.g * saturation, hsv.b * value, hsv.a};
            reaches({hsv.g, hsv.b, hsv.g * hsv.b, 0.0});
            near(hsv.r / 60.0);
            while (hsv.r > 360.0 && !std::isinf(hsv.r))
                hsv.r -= 360.0;
            if (std::isinf(hsv.r) && hsv.r > 0.0) hsv.r = std::numeric_limits<double>::quiet_NaN();
            near(hsv.r / 60.0);
            c = fromHueSixth(hsv);
            reaches(c);
        }
        const Rgba one{1, 1, 1, 1};
        const Rgba gain = col_gain.value_or(one), offset = col_offset.value_or(Rgba{0, 0, 0, 0});
        c = {c.r * gain.r + offset.r, c.g * gain.g + offset.g, c.b * gain.b + offset.b, c.a};
        reaches({c.r - offset.r, c.g - offset.g, c.b - offset.b, 0.0});
        const Rgba gamma = col_gamma.value_or(one);
        if (!(gamma.r == 1.0 && gamma.g == 1.0 && gamma.b == 1.0)) {
            near(c.r);
            near(c.g);
            near(c.b);
            c = {gammaOf(c.r, gamma.r), gammaOf(c.g, gamma.g), gammaOf(c.b, gamma.b), c.a};
            reaches(c);
        }
        if (col_clamp.value_or(0.0) != 0.0) {
            const Rgba low = col_clamp_min.value_or(Rgba{0, 0, 0, 0}), high = col_clamp_max.value_or(one);
            c = {least(most(c.r, low.r), high.r), least(most(c.g, low.g), high.g),
                 least(most(c.b, low.b), high.b), c.a};
        }
        c.a *= alpha_gain.value_or(1.0);
        if (alpha_offset && *alpha_offset != 1.0) c.a += *alpha_offset;
        if (alpha_gain && *alpha_gain != 1.0) {
            near(c.a);
            c.a = gammaOf(c.a, *alpha_gain);
        }
        if (alpha_clamp.value_or(0.0) != 0.0)
            c.a = least(most(c.a, alpha_clamp_min.value_or(0.0)), alpha_clamp_max.value_or(1.0));
        if (premultiply_result.value_or(0.0) != 0.0) c = {c.r * c.a, c.g * c.a, c.b * c.a, c.a};
        return c;
    }

private:
    void reaches(const Rgba& c) const
    {
        for (double x : {c.r, c.g, c.b})
            if (std::isfinite(x)) scale = most(scale, std::fabs(x));
    }
    // An exact 0 is exact in single precision too.
    void near(double x) const
    {
        if (x != 0.0 && std::fabs(x) < margin) margin = std::fabs(x);
    }
};

struct FloatCorrect {
    MaybeNumber in_float, gain, offset;
    bool clamp = false;
    double clamp_min = 0.0, clamp_max = 1.0;
    mutable double margin = 1.0;

    double operator()() const
    {
        double v = in_float.value_or(1.0) * gain.value_or(1.0) + offset.value_or(1.0);
        margin = v == 0.0 ? 1.0 : std::fabs(v);
        if (gain && *gain != 1.0 && *gain != 0.0) v = gammaOf(v, *gain);
        return clamp ? least(most(v, clamp_min), clamp_max) : v;
    }
};

struct ColorMask {
    MaybeColor in_color, mask;
    MaybeNumber in_alpha, preserve_color, mask_alpha;
    double mask_alpha_is_luminance = 0.0;
    mutable double rest = 0.0; // what of the colour the last evaluation's mask left

    Rgba operator()() const
    {
        const Rgba white{1, 1, 1, 1};
        Rgba c = in_color.value_or(white);
        c.a = in_alpha.value_or(1.0);
        const Rgba m = mask.value_or(white);
        const double k = mask_alpha_is_luminance == 0.0 ? most(0.0, mask_alpha.value_or(1.0))
                                                        : 0.3 * m.r + 0.59 * m.g + 0.11 * m.b;
        rest = 1.0 - k;
        if (k <= 1e-10) return c;
        if (preserve_color.value_or(0.0) == 0.0)
            c = {c.r * (1.0 - k) + m.r * k, c.g * (1.0 - k) + m.g * k, c.b * (1.0 - k) + m.b * k, c.a};
        c.a -= k;
        return c;
    }
};

// One channel; the operations by their numbers.
inline double composed(int operation, double a, double b, double f)
{
    const double d = most(1.0 - b, 0.00001);
    if (operation == 0) return a + b * f;
    if (operation == 1) return a + (b - 1.0) * f;
    if (operation == 2) return f < 1.0 ? a * (1.0 - f) + b * f : b;
    if (operation == 3) return a * (b * f + (1.0 - f));
    if (operation == 4) return (f - f * a) * b + a;
    if (operation == 5 && b <= 0.5) return 1.0 - (((1.0 - a) - b) + b * a) * f * (f + 1.0);
    if (operation == 5) return (1.0 - f) * a + 2.0 * a * b * f;
    if (operation == 6) return std::fabs(a - b * f);
    if (operation == 7) return least(most(a * (1.0 - f) + (a / d) * f, a), b);
    return least(most(a * (1.0 - f) + (1.0 - a / d) * f, a), b);
}

struct Composite {
    MaybeColor color_a, color_b;
    MaybeNumber alpha_a, alpha_b, factor;
    int operation = 0;

    Rgba operator()() const
    {
        const Rgba white{1, 1, 1, 1};
        Rgba a = color_a.value_or(white), b = color_b.value_or(white);
        a.a = alpha_a.value_or(1.0);
        b.a = alpha_b.value_or(1.0);
        double f = factor.value_or(0.0);
        if (!(f < 1.0)) f = 1.0;
        if (f <= 0.0) return a;
        if (operation < 0 || operation > 8) return white;
        return {composed(operation, a.r, b.r, f), composed(operation, a.g, b.g, f),
                composed(operation, a.b, b.b, f), composed(operation, a.a, b.a, f)};
    }
};

struct FloatComposite {
    MaybeNumber float_a, float_b, factor;
    int operation = 0;

    double operator()() const
    {
        const double a = float_a.value_or(1.0), f = factor.value_or(0.0);
        if (f <= 0.0 || operation < 0 || operation > 8) return a;
        return composed(operation, a, float_b.value_or(1.0), f);
    }
};

} // namespace plain
