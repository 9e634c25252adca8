// The arithmetic nodes against their plain twins, at random inputs: also negative, above 1, infinite and
// NaN, and left unset.

#include "arithmetic_test.h"

#include "support/agreement.h"
#include "support/draws.h"
#include "support/plain_black_body.h"
#include "support/plain_utilities_b.h"
#include "support/test_vector_inputs.h"

#include <array>
#include <cmath>

namespace {

using namespace support;
using OUtils::AColor;
using plain::Rgba;
using plain::Vec;

constexpr int kRounds = 4000;

void expectAgreement(const AColor& actual, const Rgba& expected, int round, double growth = 1.0)
{
    EXPECT_PRED3(tolerance::sumAgrees, actual.r, expected[0], growth) << "round " << round;
    EXPECT_PRED3(tolerance::sumAgrees, actual.g, expected[1], growth) << "round " << round;
    EXPECT_PRED3(tolerance::sumAgrees, actual.b, expected[2], growth) << "round " << round;
    EXPECT_PRED3(tolerance::sumAgrees, actual.a, expected[3], growth) << "round " << round;
}

// An input of a node: drawn anew each round, and sometimes taken away.
class DrawnColor {
public:
    DrawnColor(TestNode& owner, const char* name, const AColor& whenUnset)
        : node(owner), parameter(name), unset(whenUnset)
    {
        node.connect(parameter, input);
    }
    // What the node reads.
    AColor draw(Draws& draws, const AColor& value)
    {
        const bool connect = !draws.chance(0.1);
        if (connect != connected)
            node.set(parameter, connect ? static_cast<OUtils::PluginBase*>(&input) : nullptr);
        connected = connect;
        input.value = value;
        return connected ? value : unset;
    }

private:
    TestNode& node;
    const char* parameter;
    AColor unset;
    TestColor input;
    bool connected = true;
};

TEST(ArithmeticTwins, MultiplyDivide)
{
    Draws draws(1);
    TestNode node(descriptor("MayaMultiplyDivide"));
    DrawnColor color1(node, "color1", {1.0f, 1.0f, 1.0f, 1.0f}),
        color2(node, "color2", {1.0f, 1.0f, 1.0f, 1.0f});
    for (int round = 0; round < kRounds; ++round) {
        const int operation = draws.below(5);
        node.set("operation", operation);
        const AColor a = color1.draw(draws, draws.color());
        const AColor b =
            color2.draw(draws, draws.chance(0.1) ? AColor{5e-4f, -4e-4f, 0.0f, 1.0f} : draws.color());
        expectAgreement(freshColor(node), plain::multiplyDivideOf(widened(a), widened(b), operation), round);
    }
}

TEST(ArithmeticTwins, Gamma)
{
    Draws draws(2);
    TestNode node(descriptor("MayaGamma"));
    DrawnColor input(node, "input", {0.0f, 0.0f, 0.0f, 1.0f}), gamma(node, "gamma", {1.0f, 1.0f, 1.0f, 1.0f});
    for (int round = 0; round < kRounds; ++round) {
        const Rgba x = widened(input.draw(draws, draws.color()));
        AColor drawn = draws.color();
        for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b}) // powers of 4 at most, or none
            if (drawn.*channel > 0.0f && drawn.*channel < 0.25f) drawn.*channel = 0.25f;
        const Rgba g = widened(gamma.draw(draws, drawn));
        expectAgreement(freshColor(node),
                        {plain::gammaPowerOf(x[0], g[0]), plain::gammaPowerOf(x[1], g[1]),
                         plain::gammaPowerOf(x[2], g[2]), 1.0},
                        round);
    }
}

TEST(ArithmeticTwins, SetRange)
{
    Draws draws(3);
    TestNode node(descriptor("TexSetRange"));
    DrawnColor value(node, "value", {}), oldMin(node, "oldMin", {}), oldMax(node, "oldMax", {}),
        newMin(node, "newMin", {}), newMax(node, "newMax", {});
    for (int round = 0; round < kRounds; ++round) {
        const Rgba v = widened(value.draw(draws, draws.color()));
        const AColor from = oldMin.draw(draws, draws.color());
        const Rgba a = widened(from);
        const Rgba b = widened(oldMax.draw(draws, draws.chance(0.2) ? from : draws.color()));
        const Rgba c = widened(newMin.draw(draws, draws.color()));
        const Rgba d = widened(newMax.draw(draws, draws.color()));
        Rgba expected{0.0, 0.0, 0.0, 1.0};
        for (std::size_t i = 0; i < 3; ++i)
            expected[i] = plain::setRangeOf(v[i], a[i], b[i], c[i], d[i]);
        expectAgreement(freshColor(node), expected, round);
    }
}

plain::Placement drawPlacement(Draws& draws, OUtils::Transform& transform)
{
    OUtils::Vector* const vectors[] = {&transform.matrix.columns[0], &transform.matrix.columns[1],
                                       &transform.matrix.columns[2], &transform.offset};
    plain::Placement placement;
    for (std::size_t i = 0; i < 4; ++i) {
        *vectors[i] = {draws.between(-2.0f, 2.0f), draws.between(-2.0f, 2.0f), draws.number()};
        placement[i] = widenedColor({vectors[i]->x, vectors[i]->y, vectors[i]->z, 0.0f});
    }
    return placement;
}

TEST(ArithmeticTwins, VectorProduct)
{
    Draws draws(4);
    TestNode node(descriptor("TexVectorProduct"));
    DrawnColor input1(node, "input1", {}), input2(node, "input2", {});
    TestTransform transform;
    node.connect("transform", transform);
    for (int round = 0; round < kRounds; ++round) {
        const int operation = draws.below(6), normalize = draws.below(2);
        node.set("operation", operation).set("normalize", normalize);
        const AColor a = input1.draw(draws, draws.color()), b = input2.draw(draws, draws.color());
        const plain::Placement placement = drawPlacement(draws, transform.value);
        const Vec expected =
            plain::vectorProductOf(widenedColor(a), widenedColor(b), placement, operation, normalize != 0);
        expectAgreement(freshColor(node), {expected[0], expected[1], expected[2], 1.0}, round);
    }
}

TEST(ArithmeticTwins, DistanceBetween)
{
    Draws draws(5);
    TestNode node(descriptor("TexDistanceBetween"));
    DrawnColor point1(node, "point1", {}), point2(node, "point2", {});
    TestTransform transform1, transform2;
    node.connect("transform1", transform1).connect("transform2", transform2);
    for (int round = 0; round < kRounds; ++round) {
        const AColor a = point1.draw(draws, draws.color()), b = point2.draw(draws, draws.color());
        const plain::Placement placementA = drawPlacement(draws, transform1.value);
        const plain::Placement placementB = drawPlacement(draws, transform2.value);
        EXPECT_PRED3(tolerance::sumAgrees, node.value(),
                     plain::distanceOf(widenedColor(a), placementA, widenedColor(b), placementB), 1.0)
            << "round " << round;
    }
}

TEST(ArithmeticTwins, PlusMinusAverage)
{
    Draws draws(6);
    TestNode node(descriptor("TexPlusMinusAverage"));
    std::array<TestColor, 5> colors;
    std::array<TestFloat, 5> floats;
    for (int round = 0; round < kRounds; ++round) {
        const int operation = draws.below(5);
        node.set("operation", operation);
        std::vector<OUtils::PluginBase*> colorEntries, floatEntries;
        std::array<std::vector<double>, 4> channels;
        std::vector<double> numbers;
        for (int left = draws.below(6), i = 0; i < left; ++i) {
            const auto place = static_cast<std::size_t>(i);
            const bool absent = draws.chance(0.2);
            colors[place].value = draws.color();
            floats[place].value = colors[place].value.r;
            colorEntries.push_back(absent ? nullptr : &colors[place]);
            floatEntries.push_back(absent ? nullptr : &floats[place]);
            const Rgba wide = widened(absent ? AColor{} : colors[place].value);
            for (std::size_t k = 0; k < 4; ++k)
                channels[k].push_back(wide[k]);
            numbers.push_back(wide[0]);
        }
        connectList(node, "input3D", colorEntries);
        connectList(node, "input1D", floatEntries);
        Rgba expected;
        for (std::size_t k = 0; k < 4; ++k)
            expected[k] = plain::plusMinusAverageOf(channels[k], operation);
        expectAgreement(freshColor(node), expected, round);
        auto* output = outputOf<OUtils::TextureFloatInterface>(node, "output1D");
        EXPECT_PRED3(tolerance::sumAgrees, output->evalFloat(node.context),
                     plain::plusMinusAverageOf(numbers, operation), 1.0);
    }
}

TEST(ArithmeticTwins, Condition2)
{
    Draws draws(7);
    TestNode node(descriptor("TexCondition2"));
    TestFloat first, second;
    TestColor ifTrue({1.0f, 2.0f, 3.0f, 4.0f}), ifFalse({5.0f, 6.0f, 7.0f, 8.0f});
    node.connect("first_term", first).connect("second_term", second);
    node.connect("color_if_true", ifTrue).connect("color_if_false", ifFalse);
    for (int round = 0; round < kRounds; ++round) {
        const int operation = draws.below(7);
        node.set("operation", operation);
        first.value = draws.number();
        second.value = draws.chance(0.3) ? first.value : draws.number();
        const bool expected = plain::conditionOf(static_cast<double>(first.value),
                                                 static_cast<double>(second.value), operation);
        EXPECT_SAME_COLOR(freshColor(node), expected ? ifTrue.value : ifFalse.value);
    }
}

TEST(ArithmeticTwins, MayaContrast)
{
    Draws draws(8);
    TestNode node(descriptor("TexMayaContrast"));
    DrawnColor value(node, "value", {0.0f, 0.0f, 0.0f, 1.0f}),
        contrast(node, "contrast", {2.0f, 2.0f, 2.0f, 1.0f}), bias(node, "bias", {0.5f, 0.5f, 0.5f, 1.0f});
    for (int round = 0; round < kRounds; ++round) {
        const Rgba x = widened(value.draw(draws, draws.color()));
        // Negative contrasts, and biases near 0 and 1 and beyond, blow rounding errors up without bound.
        AColor steep = draws.color();
        for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b})
            steep.*channel = std::fabs(steep.*channel);
        const Rgba c = widened(contrast.draw(draws, steep));
        AColor middle{draws.between(0.1f, 0.9f), draws.between(0.1f, 0.9f), draws.between(0.1f, 0.9f), 1.0f};
        if (draws.chance(0.1)) middle.r = kNaN;
        const Rgba b = widened(bias.draw(draws, middle));
        Rgba expected{0.0, 0.0, 0.0, x[3]};
        for (std::size_t i = 0; i < 3; ++i)
            expected[i] = plain::contrastOf(x[i], c[i], b[i]);
        expectAgreement(freshColor(node), expected, round, 10.0);
    }
}

TEST(ArithmeticTwins, TemperatureToColor)
{
    Draws draws(9);
    TestNode node(descriptor("TexTemperatureToColor"));
    TestColor input;
    node.connect("input", input);
    for (int round = 0; round < kRounds; ++round) {
        const float temperature = draws.between(-1000.0f, 20'000.0f);
        node.set("temperature", temperature);
        input.value = draws.color();
        const Rgba scale = widened(input.value);
        const double kelvin = (scale[0] + scale[1] + scale[2]) / 3.0 * static_cast<double>(temperature);
        Vec expected{NAN, NAN, NAN};
        if (kelvin < HUGE_VAL) expected = plain::temperatureColorOf(kelvin, 1);
        expectAgreement(freshColor(node), {expected[0], expected[1], expected[2], scale[3]}, round);
    }
}

} // namespace
