// Checks and suites that run with every instruction set that this processor has.
#pragma once

#include "numeric/simd_dispatch.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

inline std::vector<nezaiva::InstructionSet> availableInstructionSets()
{
    std::vector<nezaiva::InstructionSet> sets{nezaiva::InstructionSet::Baseline};
    if (nezaiva::bestInstructionSet() != nezaiva::InstructionSet::Baseline)
        sets.push_back(nezaiva::bestInstructionSet());
    return sets;
}

// Runs a check once with each of them. Leaves the best set chosen, as at load.
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

// Runs each test of a suite with each of them:
//     class Suite : public EveryInstructionSet {};
//     INSTANTIATE_TEST_SUITE_P(Sets, Suite, kInstructionSets, instructionSetName);
class EveryInstructionSet : public testing::TestWithParam<nezaiva::InstructionSet> {
protected:
    void SetUp() override
    {
        if (!nezaiva::setInstructionSet(GetParam()))
            GTEST_SKIP() << "the processor lacks the instruction set";
    }
    void TearDown() override { nezaiva::setInstructionSet(nezaiva::bestInstructionSet()); }
};

inline const auto kInstructionSets =
    testing::Values(nezaiva::InstructionSet::Baseline, nezaiva::InstructionSet::Avx2);

inline std::string instructionSetName(const testing::TestParamInfo<nezaiva::InstructionSet>& info)
{
    return info.param == nezaiva::InstructionSet::Avx2 ? "Avx2" : "Baseline";
}

// Expects the same bits from every instruction set: collect() gives results, of which a NaN equals any
// other.
template <typename Collect>
void expectSameBitsWithEverySet(Collect collect)
{
    if (availableInstructionSets().size() < 2) GTEST_SKIP() << "this processor has one instruction set";
    std::vector<float> first;
    withEveryInstructionSet([&] {
        const std::vector<float> results = collect();
        if (first.empty()) first = results;
        ASSERT_FALSE(results.empty());
        ASSERT_EQ(results.size(), first.size());
        for (std::size_t i = 0; i < first.size(); ++i)
            ASSERT_PRED2(tolerance::sameFloat, results[i], first[i]) << "result " << i;
    });
}
