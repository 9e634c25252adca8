// The arithmetic of TexPlusMinusAverage, on plain values: floats or colours with alpha.
#pragma once

#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// The scene's numbers. Any other number gives zero.
enum PlusMinusAverageOperation : int {
    kFirstOnly = 0,
    kSum = 1,
    kSubtractFromFirst = 2,
    kAverage = 3,
};

inline float added(float a, float b)
{
    return a + b;
}
inline float subtracted(float a, float b)
{
    return a - b;
}
inline float dividedBy(float a, float divisor)
{
    return a / divisor;
}

inline AColor added(const AColor& a, const AColor& b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a + b.a};
}
inline AColor subtracted(const AColor& a, const AColor& b)
{
    return {a.r - b.r, a.g - b.g, a.b - b.b, a.a - b.a};
}
inline AColor dividedBy(const AColor& a, float divisor)
{
    return {a.r / divisor, a.g / divisor, a.b / divisor, a.a / divisor};
}

// Two ends that are summed alike, but subtracted crosswise.
template <class Value>
struct ValueRange {
    Value lower{}, upper{};
};
template <class Value>
ValueRange<Value> added(const ValueRange<Value>& a, const ValueRange<Value>& b)
{
    return {added(a.lower, b.lower), added(a.upper, b.upper)};
}
template <class Value>
ValueRange<Value> subtracted(const ValueRange<Value>& a, const ValueRange<Value>& b)
{
    return {subtracted(a.lower, b.upper), subtracted(a.upper, b.lower)};
}
template <class Value>
ValueRange<Value> dividedBy(const ValueRange<Value>& a, float divisor)
{
    return {dividedBy(a.lower, divisor), dividedBy(a.upper, divisor)};
}

// Value: a float, an AColor, or a ValueRange of them. read(i) gives the entry at 0 to count - 1; an entry
// that adds nothing is zero. The average divides by the count, which such entries are part of. An operation
// reads the entries that it needs, in order.
template <class Value, class Read>
Value plusMinusAverage(int operation, int count, const Read& read)
{
    if (count <= 0 || operation < kFirstOnly || operation > kAverage) return Value{};
    if (operation == kFirstOnly) return read(0);

    const bool subtracts = operation == kSubtractFromFirst;
    const Value first = subtracts ? read(0) : Value{};
    Value sum{};
    for (int i = subtracts ? 1 : 0; i < count; ++i)
        sum = added(sum, read(i));
    if (subtracts) return subtracted(first, sum);
    return operation == kAverage ? dividedBy(sum, static_cast<float>(count)) : sum;
}

} // namespace nezaiva
