// Plain twins of the frame's textures, for comparison: one virtual table an object, inputs that are
// always connected, nothing looked up. They stand in a file of their own so that no call to them is
// resolved while compiling.
#pragma once

#include <ombrix/context.h>
#include <ombrix/types.h>

#include <memory>
#include <vector>

namespace bench {

class PlainFloat {
public:
    virtual ~PlainFloat() = default;
    virtual float eval(const OUtils::OmbrixContext& context) = 0;
};

class PlainColor {
public:
    virtual ~PlainColor() = default;
    virtual void eval(OUtils::AColor* result, const OUtils::OmbrixContext& context) = 0;
};

// Reads a table at the context's sampleStamp plus an offset; the table's size is a power of two.
struct SampleTable {
    std::vector<float> values;
    float at(const OUtils::OmbrixContext& context, std::uint32_t offset) const
    {
        return values[(static_cast<std::uint32_t>(context.sampleStamp) + offset) & (values.size() - 1)];
    }
};

std::unique_ptr<PlainColor> plainConstant(const OUtils::AColor& color);
std::unique_ptr<PlainFloat> plainNumber(float number);
std::unique_ptr<PlainFloat> plainSample(const SampleTable& table, std::uint32_t offset);
// 1 where a is less than b, else 0.
std::unique_ptr<PlainFloat> plainLess(PlainFloat& a, PlainFloat& b);
// The colour with another alpha.
std::unique_ptr<PlainColor> plainWithAlpha(PlainColor& color, PlainFloat& alpha);
// A with its alpha where the condition is not 0, else B with its alpha.
std::unique_ptr<PlainColor> plainCondition(PlainColor& a, PlainFloat& alphaA, PlainColor& b,
                                           PlainFloat& alphaB, PlainFloat& condition);

} // namespace bench
