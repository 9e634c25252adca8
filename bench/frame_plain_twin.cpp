#include "frame_plain_twin.h"

namespace bench {

using OUtils::AColor;
using OUtils::OmbrixContext;

namespace {

class Constant : public PlainColor {
public:
    explicit Constant(const AColor& given) : color(given) {}
    void eval(AColor* result, const OmbrixContext&) override { *result = color; }

private:
    AColor color;
};

class Number : public PlainFloat {
public:
    explicit Number(float given) : number(given) {}
    float eval(const OmbrixContext&) override { return number; }

private:
    float number;
};

class Sample : public PlainFloat {
public:
    Sample(const SampleTable& given, std::uint32_t place) : table(given), offset(place) {}
    float eval(const OmbrixContext& context) override { return table.at(context, offset); }

private:
    const SampleTable& table;
    std::uint32_t offset;
};

class Less : public PlainFloat {
public:
    Less(PlainFloat& left, PlainFloat& right) : a(left), b(right) {}
    float eval(const OmbrixContext& context) override
    {
        const float left = a.eval(context);
        return left < b.eval(context) ? 1.0f : 0.0f;
    }

private:
    PlainFloat& a;
    PlainFloat& b;
};

class WithAlpha : public PlainColor {
public:
    WithAlpha(PlainColor& base, PlainFloat& other) : color(base), alpha(other) {}
    void eval(AColor* result, const OmbrixContext& context) override
    {
        color.eval(result, context);
        result->a = alpha.eval(context);
    }

private:
    PlainColor& color;
    PlainFloat& alpha;
};

class Condition : public PlainColor {
public:
    Condition(PlainColor& first, PlainFloat& firstAlpha, PlainColor& second, PlainFloat& secondAlpha,
              PlainFloat& test)
        : a(first), alphaA(firstAlpha), b(second), alphaB(secondAlpha), condition(test)
    {
    }
    void eval(AColor* result, const OmbrixContext& context) override
    {
        const bool takeA = condition.eval(context) != 0.0f;
        (takeA ? a : b).eval(result, context);
        result->a = (takeA ? alphaA : alphaB).eval(context);
    }

private:
    PlainColor& a;
    PlainFloat& alphaA;
    PlainColor& b;
    PlainFloat& alphaB;
    PlainFloat& condition;
};

} // namespace

std::unique_ptr<PlainColor> plainConstant(const AColor& color)
{
    return std::make_unique<Constant>(color);
}
std::unique_ptr<PlainFloat> plainNumber(float number)
{
    return std::make_unique<Number>(number);
}
std::unique_ptr<PlainFloat> plainSample(const SampleTable& table, std::uint32_t offset)
{
    return std::make_unique<Sample>(table, offset);
}
std::unique_ptr<PlainFloat> plainLess(PlainFloat& a, PlainFloat& b)
{
    return std::make_unique<Less>(a, b);
}
std::unique_ptr<PlainColor> plainWithAlpha(PlainColor& color, PlainFloat& alpha)
{
    return std::make_unique<WithAlpha>(color, alpha);
}
std::unique_ptr<PlainColor> plainCondition(PlainColor& a, PlainFloat& alphaA, PlainColor& b,
                                           PlainFloat& alphaB, PlainFloat& condition)
{
    return std::make_unique<Condition>(a, alphaA, b, alphaB, condition);
}

} // namespace bench
