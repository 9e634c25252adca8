// Random values, the same in every run.
#pragma once

#include <ombrix/types.h>

#include <iterator>
#include <limits>
#include <random>

namespace support {

class Draws {
public:
    explicit Draws(unsigned seed) : engine(seed) {}

    bool chance(double probability) { return unit() < probability; }
    // 0 to limit - 1.
    int below(int limit) { return static_cast<int>(unit() * limit); }
    float between(float lower, float upper) { return lower + static_cast<float>(unit()) * (upper - lower); }
    // Mostly -2 to 3; one in eight has a special place in the formulas or is no finite number.
    float number()
    {
        constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
        constexpr float kEndless = std::numeric_limits<float>::infinity();
        constexpr float kSpecial[] = {0.0f, -0.0f, 1.0f, 0.5f, -1.0f, kNone, kEndless, -kEndless};
        if (chance(0.125)) return kSpecial[engine() % std::size(kSpecial)];
        return between(-2.0f, 3.0f);
    }
    // An exponent that does not blow rounding errors up: 0, or 0.25 to 3 away from it.
    float exponent()
    {
        if (chance(0.125)) return chance(0.5) ? 0.0f : 1.0f;
        const float size = between(0.25f, 3.0f);
        return chance(0.25) ? -size : size;
    }
    OUtils::AColor color() { return {number(), number(), number(), number()}; }
    OUtils::AColor exponents() { return {exponent(), exponent(), exponent(), 7.0f}; }

private:
    double unit() { return static_cast<double>(engine()) / 4294967296.0; }
    std::mt19937 engine;
};

} // namespace support
