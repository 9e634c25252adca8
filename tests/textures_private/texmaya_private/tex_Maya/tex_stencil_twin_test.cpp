#include "stencil_fixture.h"
#include "support/agreement.h"
#include "support/draws.h"
#include "support/plain_stencil.h"

namespace {

using namespace support;
using OUtils::AColor;

// Every setting at once, against the twin.
struct RandomStencil : StencilTest {
    RandomStencil()
    {
        node.connect("mask", mask).connect("color_key", key).connect("hue_range", hue);
        node.connect("sat_range", saturation).connect("val_range", value);
        node.connect("color_mult", factor).connect("color_offset", offset);
        node.connect("alpha_mult", alphaFactor).connect("alpha_offset", alphaOffset);
    }
    float draw() { return draws.between(0.0f, 1.0f); }
    AColor drawColor() { return {draw(), draw(), draw(), draw()}; }
    void drawInputs()
    {
        at(draw() * 4.0f - 1.0f, draw() * 4.0f - 1.0f);
        image.value = drawColor();
        background.value = drawColor();
        key.value = drawColor();
        hue.value = draw();
        saturation.value = draw();
        value.value = draw();
        mask.value = draws.chance(0.5) ? draw() : 0.0f;
        factor.value = drawColor();
        offset.value = drawColor();
        alphaFactor.value = draw();
        alphaOffset.value = draw();
        node.context.shadeFlags = draws.chance(0.125) ? OUtils::rawTextureLookup : 0u;
    }
    PlainStencil plain(float edgeBlend, int flags) const
    {
        PlainStencil in;
        in.u = static_cast<double>(generator.sample.uvw.x);
        in.v = static_cast<double>(generator.sample.uvw.y);
        in.edgeBlend = static_cast<double>(edgeBlend);
        in.keyMasking = flags & 1;
        in.positiveKey = flags & 2;
        in.invert = flags & 4;
        in.invertAlpha = flags & 8;
        in.alphaFromColor = flags & 16;
        in.raw = node.context.shadeFlags != 0;
        in.image = widened(image.value);
        in.background = widened(background.value);
        in.key = widenedColor(key.value);
        in.ranges = {static_cast<double>(hue.value), static_cast<double>(saturation.value),
                     static_cast<double>(value.value)};
        in.mask = static_cast<double>(mask.value);
        in.colorMult = widenedColor(factor.value);
        in.colorOffset = widenedColor(offset.value);
        in.alphaMult = static_cast<double>(alphaFactor.value);
        in.alphaOffset = static_cast<double>(alphaOffset.value);
        return in;
    }

    Draws draws{7};
    TestColor factor, offset;
    TestFloat alphaFactor, alphaOffset;
};

TEST_F(RandomStencil, StencilAgreesWithItsTwin)
{
    int compared = 0, blended = 0;
    for (int flags = 0; flags < 32; ++flags) {
        node.set("key_masking", flags & 1).set("positive_key", flags >> 1 & 1).set("invert", flags >> 2 & 1);
        node.set("invert_alpha", flags >> 3 & 1).set("alpha_from_intensity", flags >> 4 & 1);
        const float edgeBlend = 0.1f + 0.8f * draw();
        node.set("edge_blend", edgeBlend);
        for (int i = 0; i < 500; ++i) {
            drawInputs();
            const PlainStencilResult expected = plainStencil(plain(edgeBlend, flags));
            if (expected.margin < 1e-4) continue;
            const AColor got = color();
            ASSERT_TRUE(agrees(got, expected.color)) << flags << ", " << i;
            ++compared;
            blended += expected.weight > 0.0 && expected.weight < 1.0;
        }
    }
    EXPECT_GT(compared, 15000);
    EXPECT_GT(blended, 3000);
}

} // namespace
