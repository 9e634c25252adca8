// Maya's noise node: the choice of the noise, the blend of the colours, bounds and gradient.

#include "noise_node.h"
#include "support/plain_volume_noise.h"

namespace {

using namespace support;
using OUtils::AColor;
using OUtils::Color;

constexpr float kU = 0.3f, kV = 0.7f, kW = 0.2f, kTime = 1.25f;

// Perlin with no octaves gives the threshold plus a half: a noise of any value that a test wants.
class MayaNode : public NoiseNode {
public:
    MayaNode() : NoiseNode("TexNoiseMaya") {}
    AColor at() { return NoiseNode::at(kU, kV, kW); }
    void setNoise(float n) { set("noise_type", 0).set("depth_max", 0).set("threshold", n - 0.5f); }
};

// What the noises see of the node, in its declared defaults.
struct PlainNode {
    nezaiva::VolumePoint uvw{kU, kV, kW};
    nezaiva::VolumeFractal fractal{1.0f, 2.0f, 0.707f, 0.0f, 3, false};
    nezaiva::VolumePlacement placement;
    float frequency = 8.0f, time = 0.0f;
    float density = 1.0f, spottyness = 0.1f, randomness = 1.0f, sizeRand = 0.0f;
    int falloff = 2, waves = 5;

    nezaiva::VolumePoint point(float frequencyFactor, bool solid) const
    {
        nezaiva::VolumePlacement scaled = placement;
        scaled.frequencyFactor = frequency * frequencyFactor;
        return plain::place(scaled, uvw, solid);
    }
    // The noise of a kind in its plain form.
    float noise(int kind, bool solid) const
    {
        const nezaiva::PerlinVolume perlin{fractal, kind == 3, false, kind == 4, 100};
        const nezaiva::BillowVolume billow{fractal, density, spottyness, randomness, sizeRand, falloff};
        const nezaiva::CosineVolume cosine{fractal, waves};
        if (kind == 1) {
            const nezaiva::VolumePoint p = point(0.05f, solid);
            return solid ? plain::billow3d(billow, p, time) : plain::billow2d(billow, p.x, p.y, time);
        }
        if (kind == 2) {
            const nezaiva::VolumePoint p = point(1.0f, solid);
            return solid ? plain::cosine3d(cosine, p, time) : plain::cosine2d(cosine, p.x, p.y, time);
        }
        const nezaiva::VolumePoint p = point(0.0625f, solid);
        return solid ? plain::perlin3d(perlin, p, time) : plain::perlin2d(perlin, p.x, p.y, time);
    }
};

TEST(TexNoiseMaya, EachKindIsItsNoiseInBothDimensions)
{
    MayaNode node;
    PlainNode plainNode;
    node.set("time", kTime);
    plainNode.time = kTime;
    for (int kind = 0; kind <= 4; ++kind)
        for (const bool solid : {true, false}) {
            node.set("noise_type", kind).set("dimensions", solid ? 3 : 2);
            const AColor color = node.at();
            // Black to white: the noise itself, up to one rounding of the blend.
            EXPECT_NEAR(color.r, plainNode.noise(kind, solid), tolerance::kSum) << kind << solid;
            EXPECT_SAME_COLOR(color, {color.r, color.r, color.r, 1.0f});
        }
}

TEST(TexNoiseMaya, DeclaredDefaultsEqualWhatUnsetInputsReadAs)
{
    for (int kind = 0; kind <= 4; ++kind) {
        MayaNode unset, set;
        unset.set("noise_type", kind);
        set.set("noise_type", kind).set("amplitude", 1.0f).set("ratio", 0.707f).set("threshold", 0.0f);
        set.set("frequency", 8.0f).set("frequency_ratio", 2.0f).set("density", 1.0f).set("spottyness", 0.1f);
        set.set("size_rand", 0.0f).set("randomness", 1.0f).set("implode", 0.0f);
        set.set("implode_center", AColor{0.5f, 0.5f, 0.5f, 1.0f})
            .set("scale", AColor{1.0f, 1.0f, 1.0f, 1.0f});
        set.set("origin", AColor{0.0f, 0.0f, 0.0f, 1.0f});
        EXPECT_SAME_COLOR(unset.at(), set.at());
    }
}

TEST(TexNoiseMaya, AnUnsetImplodeCentreIsTheMiddle)
{
    MayaNode unset, set, elsewhere;
    unset.set("implode", 0.75f);
    set.set("implode", 0.75f).set("implode_center", AColor{0.5f, 0.5f, 0.5f, 1.0f});
    elsewhere.set("implode", 0.75f).set("implode_center", AColor{0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(unset.at(), set.at());
    EXPECT_NE(unset.at().r, elsewhere.at().r);
}

TEST(TexNoiseMaya, EveryInputReachesItsNoise)
{
    const struct {
        const char* name;
        ombrix::Value value;
        int kind;
        void (*setPlain)(PlainNode&);
    } inputs[] = {
        {"amplitude", 0.5f, 0, [](PlainNode& p) { p.fractal.amplitude = 0.5f; }},
        {"ratio", 0.5f, 0, [](PlainNode& p) { p.fractal.ratio = 0.5f; }},
        {"threshold", 0.125f, 0, [](PlainNode& p) { p.fractal.threshold = 0.125f; }},
        {"depth_max", 2, 0, [](PlainNode& p) { p.fractal.depthMax = 2; }},
        {"frequency", 5.0f, 0, [](PlainNode& p) { p.frequency = 5.0f; }},
        {"frequency_ratio", 1.5f, 0, [](PlainNode& p) { p.fractal.frequencyRatio = 1.5f; }},
        {"inflection", true, 0, [](PlainNode& p) { p.fractal.inflection = true; }},
        {"time", 2.0f, 0, [](PlainNode& p) { p.time = 2.0f; }},
        {"density", 0.75f, 1, [](PlainNode& p) { p.density = 0.75f; }},
        {"spottyness", 0.75f, 1, [](PlainNode& p) { p.spottyness = 0.75f; }},
        {"size_rand", 0.5f, 1, [](PlainNode& p) { p.sizeRand = 0.5f; }},
        {"randomness", 0.5f, 1, [](PlainNode& p) { p.randomness = 0.5f; }},
        {"falloff", 0, 1, [](PlainNode& p) { p.falloff = 0; }},
        {"num_waves", 3, 2, [](PlainNode& p) { p.waves = 3; }},
        {"implode", 0.5f, 0,
         [](PlainNode& p) {
             p.placement.implode = 0.5f;
             p.placement.hasImplodeCenter = true;
             p.placement.implodeCenter = {0.5f, 0.5f, 0.5f};
         }},
        {"scale", AColor{0.5f, 0.25f, 0.75f, 1.0f}, 0,
         [](PlainNode& p) {
             p.placement.hasScale = true;
             p.placement.scale = {0.5f, 0.25f, 0.75f};
         }},
        {"origin", AColor{0.5f, 0.25f, 0.125f, 1.0f}, 0,
         [](PlainNode& p) {
             p.placement.hasOrigin = true;
             p.placement.origin = {0.5f, 0.25f, 0.125f};
         }},
    };
    for (const auto& input : inputs) {
        MayaNode node;
        PlainNode plainNode;
        plainNode.fractal.amplitude = 0.25f; // stays below the end at 1
        node.set("noise_type", input.kind).set("amplitude", 0.25f);
        const float before = node.at().r;
        node.set(input.name, input.value);
        input.setPlain(plainNode);
        EXPECT_NEAR(node.at().r, plainNode.noise(input.kind, true), tolerance::kSum) << input.name;
        EXPECT_GT(std::fabs(node.at().r - before), 2 * tolerance::kSum) << input.name;
    }
}

TEST(TexNoiseMaya, UnknownKindsAndDimensionsShowNoUVWColor)
{
    TestColor colour({0.25f, 0.5f, 0.75f, 0.125f});
    for (const auto& [kind, dimensions] :
         {std::pair(5, 3), {-1, 3}, {5, 2}, {0, 1}, {1, 4}, {2, 0}, {3, -2}}) {
        MayaNode node;
        node.set("noise_type", kind).set("dimensions", dimensions);
        EXPECT_SAME_COLOR(node.at(), {0.5f, 0.5f, 0.5f, 1.0f});
        node.connect("nouvw_color", colour);
        EXPECT_SAME_COLOR(node.at(), {0.25f, 0.5f, 0.75f, 0.125f});
    }
}

TEST(TexNoiseMaya, BlendsFromTheFirstToTheSecondColor)
{
    MayaNode node;
    node.set("color1", Color{0.25f, 0.5f, 0.0f}).set("color2", Color{0.75f, 1.0f, -1.0f});
    node.setNoise(0.0f);
    EXPECT_SAME_COLOR(node.at(), {0.25f, 0.5f, 0.0f, 1.0f});
    node.setNoise(1.0f);
    EXPECT_SAME_COLOR(node.at(), {0.75f, 1.0f, -1.0f, 1.0f});
    node.setNoise(0.5f);
    EXPECT_SAME_COLOR(node.at(), {0.5f, 0.75f, -0.5f, 1.0f});
    node.setNoise(-1.0f); // extrapolated past the first
    EXPECT_SAME_COLOR(node.at(), {-0.25f, 0.0f, 1.0f, 1.0f});
    node.setNoise(2.0f); // the noise ends at 1
    EXPECT_SAME_COLOR(node.at(), {0.75f, 1.0f, -1.0f, 1.0f});
}

TEST(TexNoiseMaya, ATextureCoversItsColorByMultiplierAndAlpha)
{
    TestColor texture({1.0f, 1.0f, 1.0f, 1.0f});
    MayaNode node;
    node.setNoise(1.0f);
    node.set("color2", Color{0.0f, 0.0f, 0.0f}).connect("color2_tex", texture);
    node.set("color2_tex_mult", 0.5f);
    EXPECT_SAME_COLOR(node.at(), {0.5f, 0.5f, 0.5f, 1.0f});
    node.set("color2", Color{1.0f, 0.5f, 0.25f});
    texture.value = {0.5f, 0.5f, 0.5f, 0.5f}; // T * 0.5 + color * (1 - 0.5 * 0.5)
    EXPECT_SAME_COLOR(node.at(), {1.0f, 0.625f, 0.4375f, 1.0f});
    texture.value.a = 7.0f; // as 1
    EXPECT_SAME_COLOR(node.at(), {0.75f, 0.5f, 0.375f, 1.0f});
    texture.value.a = -7.0f; // as 0
    EXPECT_SAME_COLOR(node.at(), {1.25f, 0.75f, 0.5f, 1.0f});
    node.set("color2_tex_mult", 2.0f);
    texture.value.a = 1.0f; // 2 T - color
    EXPECT_SAME_COLOR(node.at(), {0.0f, 0.5f, 0.75f, 1.0f});
}

TEST(TexNoiseMaya, DoesNotAskATextureThatIsSwitchedOff)
{
    CallLog log;
    TestColor first("first", &log), second("second", &log);
    first.value = second.value = {1.0f, 1.0f, 1.0f, 1.0f};
    MayaNode node;
    node.setNoise(0.0f);
    node.set("color1", Color{0.25f, 0.5f, 0.75f});
    node.connect("color1_tex", first).connect("color2_tex", second);
    node.set("color1_tex_mult", 0.0f).set("color2_tex_mult", -1.0f);
    EXPECT_SAME_COLOR(node.at(), {0.25f, 0.5f, 0.75f, 1.0f});
    EXPECT_TRUE(log.empty());
    node.set("color1_tex_mult", 1e-12f); // not below the limit
    node.at();
    EXPECT_EQ(log, CallLog{"first.evalColor"});
    // Both are asked, the first one first, whatever the noise is.
    log.clear();
    node.set("color2_tex_mult", 1.0f);
    node.at();
    EXPECT_EQ(log, (CallLog{"first.evalColor", "second.evalColor"}));
}

// Keeps the filter widths that it is asked with.
class WidthKeeper final : public TestColor {
public:
    AColor* evalColor(AColor* result, const OUtils::OmbrixContext& context) override
    {
        seen = {context.filterWidths[0], context.filterWidths[1], context.filterWidths[2],
                context.filterWidths[3]};
        return TestColor::evalColor(result, context);
    }
    AColor seen;
};

TEST(TexNoiseMaya, ScalesTheFilterWidthsForItsTexturesAndRestoresThem)
{
    WidthKeeper first, second;
    MayaNode node;
    node.connect("color1_tex", first).connect("color2_tex", second);
    node.set("color1_tex_mult", 0.3f).set("color2_tex_mult", 4.0f);
    const float widths[] = {0.1f, 0.2f, 0.7f, 1e-30f};
    for (int i = 0; i < 4; ++i)
        node.context.filterWidths[i] = widths[i];
    node.at();
    EXPECT_SAME_COLOR(first.seen, {0.1f * 0.3f, 0.2f * 0.3f, 0.7f * 0.3f, 1e-30f * 0.3f});
    EXPECT_SAME_COLOR(second.seen, {0.1f * 4.0f, 0.2f * 4.0f, 0.7f * 4.0f, 1e-30f * 4.0f});
    for (int i = 0; i < 4; ++i)
        EXPECT_SAME_BITS(node.context.filterWidths[i], widths[i]);
}

TEST(TexNoiseMaya, BoundsSpanBothColors)
{
    MayaNode node;
    node.set("color1", Color{0.25f, 1.0f, 0.5f}).set("color2", Color{0.75f, 0.5f, 0.5f});
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.25f, 0.5f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.75f, 1.0f, 0.5f, 1.0f});

    TestColor texture;
    texture.lowerBound = {-1.0f, 0.5f, 0.0f, 0.0f};
    texture.upperBound = {3.0f, 1.0f, 0.0f, 0.0f};
    node.connect("color1_tex", texture);
    node.set("color1_tex_mult", 0.5f); // half the texture and half the colour, alpha aside
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {-0.375f, 0.5f, 0.25f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.625f, 1.0f, 0.5f, 1.0f});
    node.set("color1_tex_mult", 0.0f);
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.25f, 0.5f, 0.5f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.75f, 1.0f, 0.5f, 1.0f});
}

TEST(TexNoiseMaya, GradientIsZero)
{
    MayaNode node;
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST(TexNoiseMaya, HasAnAnswerForCoordinatesThatAreNoNumbers)
{
    MayaNode node;
    PlainNode plainNode;
    for (int kind = 0; kind <= 4; ++kind)
        for (const int dimensions : {2, 3}) {
            node.set("noise_type", kind).set("dimensions", dimensions);
            for (const float far : {kNaN, INFINITY, -INFINITY, 3e38f}) {
                plainNode.uvw = {far, far, far};
                const AColor color = node.NoiseNode::at(far, far, far);
                EXPECT_PRED3(tolerance::sumAgrees, color.r, plainNode.noise(kind, dimensions == 3), 1.0)
                    << kind << ", " << dimensions << ", " << far;
                EXPECT_SAME_BITS(color.a, 1.0f);
            }
        }
}

TEST(TexNoiseMaya, WithoutWrapKeepsTheValidRange)
{
    MayaNode node;
    PlainNode plainNode;
    plainNode.uvw = {1.5f, 0.5f, 0.0f};
    EXPECT_NEAR(node.NoiseNode::at(1.5f, 0.5f, 0.0f).r, plainNode.noise(1, true), tolerance::kSum);
    node.set("wrap", false);
    EXPECT_SAME_COLOR(node.NoiseNode::at(1.5f, 0.5f, 0.0f), {0.5f, 0.5f, 0.5f, 1.0f});
}

} // namespace
