#include "color_correct_fixture.h"
#include "support/utility_draws.h"

namespace {

using namespace support;
using OUtils::AColor;

// Draws a node with random inputs, some unset, and the same for the twin.
void draw(Draws& draws, TestNode& node, ColorCorrectTest& inputs, plain::ColorCorrect& twin)
{
    const auto number = [&](const char* name, plain::MaybeNumber& place, float value) {
        drawInput(draws, node, name, inputs.number(name), place, value);
    };
    const auto color = [&](const char* name, plain::MaybeColor& place, const AColor& value) {
        drawInput(draws, node, name, inputs.color(name), place, value);
    };
    const auto flag = [&] { return draws.chance(0.5) ? draws.number() : 0.0f; };
    color("in_color", twin.in_color, draws.color());
    number("in_alpha", twin.in_alpha, draws.number());
    number("unpremultiply_input", twin.unpremultiply_input, flag());
    number("premultiply_result", twin.premultiply_result, flag());
    number("hue_shift", twin.hue_shift, draws.chance(0.3) ? 0.0f : draws.number() * 300.0f);
    number("sat_gain", twin.sat_gain, draws.chance(0.3) ? 1.0f : draws.number());
    number("val_gain", twin.val_gain, draws.chance(0.3) ? 1.0f : draws.number());
    color("col_gain", twin.col_gain, draws.color());
    color("col_offset", twin.col_offset, draws.color());
    color("col_gamma", twin.col_gamma, draws.exponents());
    number("col_clamp", twin.col_clamp, flag());
    color("col_clamp_min", twin.col_clamp_min, draws.color());
    color("col_clamp_max", twin.col_clamp_max, draws.color());
    number("alpha_gain", twin.alpha_gain, draws.exponent());
    number("alpha_offset", twin.alpha_offset, draws.number());
    number("alpha_clamp", twin.alpha_clamp, flag());
    number("alpha_clamp_min", twin.alpha_clamp_min, draws.number());
    number("alpha_clamp_max", twin.alpha_clamp_max, draws.number());
}

TEST_F(ColorCorrectTest, AgreesWithItsPlainTwinWithoutAllocating)
{
    Draws draws(20151016);
    int compared = 0;
    for (int i = 0; i < 4000; ++i) {
        TestNode drawn(descriptor("TexColorCorrect"));
        plain::ColorCorrect twin;
        draw(draws, drawn, *this, twin);
        for (const auto& [name, input] : colors)
            input->log = nullptr;
        for (const auto& [name, input] : floats)
            input->log = nullptr;
        const plain::Rgba expected = twin();
        if (twin.scale / twin.margin > 1e3) continue;
        ++compared;
        const AColor actual = withoutAllocating([&] { return drawn.color(); });
        ASSERT_TRUE(agrees(actual, expected, twin.scale / twin.margin))
            << i << ": (" << actual.r << ", " << actual.g << ", " << actual.b << ", " << actual.a
            << "), not (" << expected.r << ", " << expected.g << ", " << expected.b << ", " << expected.a
            << ")";
    }
    EXPECT_GT(compared, 3500);
}

} // namespace
