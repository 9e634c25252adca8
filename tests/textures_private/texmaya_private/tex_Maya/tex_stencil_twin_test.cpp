#include "stencil_fixture.h"
#include "support/plain_stencil.h"

#include <random>

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
    float draw() { return std::uniform_real_distribution<float>(0.0f, 1.0f)(random); }
    bool toss() { return random() % 2 == 0; }
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
        mask.value = toss() ? draw() : 0.0f;
        factor.value = drawColor();
        offset.value = drawColor();
        alphaFactor.value = draw();
        alphaOffset.value = draw();
        node.context.shadeFlags = random() % 8 == 0 ? OUtils::rawTextureLookup : 0u;
    }
    static std::array<double, 4> four(const AColor& c)
    {
        return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b),
                static_cast<double>(c.a)};
    }
    static std::array<double, 3> three(const AColor& c)
    {
        return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b)};
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
        in.image = four(image.value);
        in.background = four(background.value);
        in.key = three(key.value);
        in.ranges = {static_cast<double>(hue.value), static_cast<double>(saturation.value),
                     static_cast<double>(value.value)};
        in.mask = static_cast<double>(mask.value);
        in.colorMult = three(factor.value);
        in.colorOffset = three(offset.value);
        in.alphaMult = static_cast<double>(alphaFactor.value);
        in.alphaOffset = static_cast<double>(alphaOffset.value);
        return in;
    }

    std::mt19937 random{7};
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
            const std::array<double, 4> got = four(color());
            for (std::size_t c = 0; c < 4; ++c)
                ASSERT_NEAR(got[c], expected.color[c], tolerance::kSum) << flags << ", " << i << ", " << c;
            ++compared;
            blended += expected.weight > 0.0 && expected.weight < 1.0;
        }
    }
    EXPECT_GT(compared, 15000);
    EXPECT_GT(blended, 3000);
}

} // namespace
