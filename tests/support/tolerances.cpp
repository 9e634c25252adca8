#include "support/tolerances.h"

namespace tolerance {
namespace {

// Every digit that tells a float from its neighbours, and its bits where they say more.
void write(testing::AssertionResult& result, float value)
{
    result << testing::PrintToString(value) << " (0x" << std::hex << std::bit_cast<std::uint32_t>(value)
           << std::dec << ")";
}

} // namespace

testing::AssertionResult compareBits(const char* actualText, const char* expectedText, float actual,
                                     float expected)
{
    if (sameFloat(actual, expected)) return testing::AssertionSuccess();
    testing::AssertionResult result = testing::AssertionFailure();
    result << actualText << " is ";
    write(result, actual);
    result << ", expected " << expectedText << ", ";
    write(result, expected);
    return result;
}

testing::AssertionResult compareBits(const char* actualText, const float* actual, const float* expected,
                                     int count)
{
    testing::AssertionResult result = testing::AssertionFailure();
    bool same = true;
    for (int i = 0; i < count; ++i) {
        if (sameFloat(actual[i], expected[i])) continue;
        result << actualText << ", value " << i << ", is ";
        write(result, actual[i]);
        result << ", expected ";
        write(result, expected[i]);
        result << "\n";
        same = false;
    }
    return same ? testing::AssertionSuccess() : result;
}

} // namespace tolerance
