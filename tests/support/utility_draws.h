// Random inputs for the utility nodes and their plain twins.
#pragma once

#include "support/agreement.h"
#include "support/draws.h"
#include "support/heap_hooks.h"
#include "support/plain_utilities_a.h"
#include "support/test_node.h"

namespace support {

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
