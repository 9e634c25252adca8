// Random values for nodes and their plain twins, the same in every run.
#pragma once

#include "support/heap_hooks.h"
#include "support/plain_utilities_a.h"
#include "support/test_node.h"
#include "support/tolerances.h"

#include <algorithm>
#include <limits>
#include <random>

namespace support {

class Draws {
public:
    explicit Draws(unsigned seed) : engine(seed) {}

    bool chance(double probability) { return unit() < probability; }
    // Mostly -2 to 3; one in eight has a special place in the formulas or is no finite number.
    float number()
    {
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        constexpr float kSpecial[] = {0.0f, -0.0f, 1.0f, 0.5f, -1.0f, kNaN, kInfinity, -kInfinity};
        if (chance(0.125)) return kSpecial[engine() % std::size(kSpecial)];
        return static_cast<float>(unit() * 5.0 - 2.0);
    }
    // An exponent that does not blow rounding errors up: 0, or 0.25 to 3 away from it.
    float exponent()
    {
        if (chance(0.125)) return chance(0.5) ? 0.0f : 1.0f;
        const auto size = static_cast<float>(0.25 + unit() * 2.75);
        return chance(0.25) ? -size : size;
    }
    OUtils::AColor color() { return {number(), number(), number(), number()}; }
    OUtils::AColor exponents() { return {exponent(), exponent(), exponent(), 7.0f}; }

private:
    double unit() { return static_cast<double>(engine()) / 4294967296.0; }
    std::mt19937 engine;
};

inline plain::Rgba widened(const OUtils::AColor& c)
{
    return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b),
            static_cast<double>(c.a)};
}

// The twin's number up to the tolerance of sums, times how much the steps before may have grown a rounding
// error. Infinities and NaN agree in kind.
inline bool agrees(float actual, double expected, double growth = 1.0)
{
    const auto wide = static_cast<double>(actual);
    if (std::isnan(expected)) return std::isnan(wide);
    if (std::isinf(expected)) return wide == expected;
    return std::fabs(wide - expected) <= tolerance::kSum * growth * std::max(1.0, std::fabs(expected));
}

inline bool agrees(const OUtils::AColor& actual, const plain::Rgba& expected, double growth = 1.0)
{
    return agrees(actual.r, expected.r, growth) && agrees(actual.g, expected.g, growth) &&
           agrees(actual.b, expected.b, growth) && agrees(actual.a, expected.a, growth);
}

// The result of an evaluation that must not allocate.
template <class Evaluation>
auto withoutAllocating(Evaluation evaluate)
{
    const ExhaustedHeap none(0);
    const auto result = evaluate();
    EXPECT_EQ(ExhaustedHeap::refusals, 0);
    return result;
}

// Gives an input its place in a node and its number in the twin, or leaves it unset in both.
inline void drawInput(Draws& draws, TestNode& node, const char* parameter, TestFloat& input,
                      plain::MaybeNumber& twin, float value)
{
    twin.reset();
    if (draws.chance(0.2)) return;
    input.value = value;
    twin = static_cast<double>(value);
    node.connect(parameter, input);
}

inline void drawInput(Draws& draws, TestNode& node, const char* parameter, TestColor& input,
                      plain::MaybeColor& twin, const OUtils::AColor& value)
{
    twin.reset();
    if (draws.chance(0.2)) return;
    input.value = value;
    twin = widened(value);
    node.connect(parameter, input);
}

} // namespace support
