// Runs a check once with every instruction set that this processor has.
#pragma once

#include "textures_private/texmaya_private/noises/simd_dispatch.h"

#include <gtest/gtest.h>

#include <vector>

inline std::vector<nezaiva::InstructionSet> availableInstructionSets()
{
    std::vector<nezaiva::InstructionSet> sets{nezaiva::InstructionSet::Baseline};
    if (nezaiva::bestInstructionSet() != nezaiva::InstructionSet::Baseline)
        sets.push_back(nezaiva::bestInstructionSet());
    return sets;
}

// Leaves the best set chosen, as at load.
template <typename Check>
void withEveryInstructionSet(Check check)
{
    for (const auto set : availableInstructionSets()) {
        SCOPED_TRACE(set == nezaiva::InstructionSet::Baseline ? "baseline" : "avx2");
        ASSERT_TRUE(nezaiva::setInstructionSet(set));
        check();
    }
    nezaiva::setInstructionSet(nezaiva::bestInstructionSet());
}
