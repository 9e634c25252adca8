// The GPU text of Maya's noise node, byte for byte.

#include "noise_node.h"

namespace {

using namespace support;
using OUtils::AColor;
using OUtils::Color;

const std::string kTail = "color 0.500000 0.500000 0.500000 1.000000\ninvert_alpha\n";

std::string blocks(const std::string& color1 = "color 0.000000 0.000000 0.000000 1.000000\n",
                   const std::string& color2 = "color 1.000000 1.000000 1.000000 1.000000\n",
                   const std::string& threshold = "color 0 0 0 0\n")
{
    return "maya_noise\n" + color1 + "subtex\n" + color2 + "subtex\n" + threshold +
           "subtex\ncolor 0 0 0 0\nsubtex\ncolor 0 0 0 0\nsubtex\ncolor 0 0 0 0\nsubtex\ncolor 1 1 1 1\n"
           "subtex\ngenerator '' theTag MaterialDescriptor\nbitmap -968\nsubtex\n";
}

std::string numbers(const char* packed)
{
    return "uvw_transform " + std::string(packed) +
           ",0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,5.000000,3.000000,"
           "0.000000\n";
}

class MayaNode : public NoiseNode {
public:
    MayaNode() : NoiseNode("TexNoiseMaya") {}
    WrittenSource source() { return sourceOf(rtTexture()); }
};

// kind | dimensions << 3 | falloff << 5 | inflection << 7, with the falloff 2.
TEST(TexNoiseMayaSource, LatticeNoisesNameTheirDimensions)
{
    MayaNode node;
    node.set("noise_type", 0);
    WrittenSource written = node.source();
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, blocks() + "maya_noise_3d\nmaya_perlin\n" + numbers("88.000000") + kTail);
    node.set("dimensions", 2);
    EXPECT_EQ(node.source().text, blocks() + "maya_noise_2d\nmaya_perlin\n" + numbers("80.000000") + kTail);
    node.set("noise_type", 3);
    EXPECT_EQ(node.source().text, blocks() + "maya_noise_2d\nmaya_wispy\n" + numbers("83.000000") + kTail);
    node.set("dimensions", 3);
    EXPECT_EQ(node.source().text, blocks() + "maya_noise_3d\nmaya_wispy\n" + numbers("91.000000") + kTail);
}

TEST(TexNoiseMayaSource, BillowAndWaveHaveATextInTheirPlaneForm)
{
    MayaNode node;
    node.set("dimensions", 2).set("noise_type", 1);
    EXPECT_EQ(node.source().text, blocks() + "maya_billow\n" + numbers("81.000000") + kTail);
    node.set("noise_type", 2);
    EXPECT_EQ(node.source().text, blocks() + "maya_wave\n" + numbers("82.000000") + kTail);
}

TEST(TexNoiseMayaSource, OtherDimensionsAreWrittenAsTheyAre)
{
    MayaNode node;
    node.set("dimensions", 1).set("noise_type", 0);
    EXPECT_EQ(node.source().text, blocks() + "maya_perlin\n" + numbers("72.000000") + kTail);
    node.set("dimensions", 9); // 3 in the word, no line
    EXPECT_EQ(node.source().text, blocks() + "maya_perlin\n" + numbers("88.000000") + kTail);
    node.set("dimensions", -4);
    EXPECT_EQ(node.source().text, blocks() + "maya_perlin\n" + numbers("64.000000") + kTail);
}

TEST(TexNoiseMayaSource, UnknownKindsAreClampedInTheWordAndHaveNoLine)
{
    MayaNode node;
    node.set("dimensions", 2).set("noise_type", 12);
    EXPECT_EQ(node.source().text, blocks() + numbers("87.000000") + kTail);
    node.set("noise_type", -3);
    EXPECT_EQ(node.source().text, blocks() + numbers("80.000000") + kTail);
}

TEST(TexNoiseMayaSource, FalloffAndInflectionAreClampedInTheWord)
{
    MayaNode node;
    node.set("dimensions", 2).set("noise_type", 2).set("falloff", 7).set("inflection", true);
    // 2 | 16 | 96 | 128
    EXPECT_EQ(node.source().text, blocks() + "maya_wave\n" + numbers("242.000000") + kTail);
    node.set("falloff", -1).set("inflection", false);
    EXPECT_EQ(node.source().text, blocks() + "maya_wave\n" + numbers("18.000000") + kTail);
}

TEST(TexNoiseMayaSource, ConnectedInputsWriteTheirOwnSource)
{
    TestColor first, silent;
    TestFloat threshold;
    first.label = "first";
    threshold.label = "threshold";
    silent.hasSource = false;
    MayaNode node;
    node.set("noise_type", 0).set("color2", Color{0.25f, 0.5f, 0.75f});
    node.connect("color1_tex", first).connect("color2_tex", silent).connect("threshold", threshold);
    EXPECT_EQ(node.source().text,
              blocks("first color theTag MaterialDescriptor\n", "color 0.250000 0.500000 0.750000 1.000000\n",
                     "threshold color theTag MaterialDescriptor\n") +
                  "maya_noise_3d\nmaya_perlin\n" + numbers("88.000000") + kTail);
}

TEST(TexNoiseMayaSource, BlocksStandInTheirOrder)
{
    TestColor center, scale, origin;
    TestFloat implode;
    center.label = "center";
    scale.label = "scale";
    origin.label = "origin";
    implode.label = "implode";
    MayaNode node;
    node.set("noise_type", 0).connect("implode_center", center).connect("implode", implode);
    node.connect("origin", origin).connect("scale", scale);
    const std::string text = node.source().text;
    const std::string rest = " color theTag MaterialDescriptor\nsubtex\n";
    EXPECT_NE(text.find("color 0 0 0 0\nsubtex\ncenter" + rest + "implode" + rest + "origin" + rest +
                        "scale" + rest + "generator"),
              std::string::npos)
        << text;
}

TEST(TexNoiseMayaSource, CarriesTheMeansOfItsInputs)
{
    TestFloat inputs[8];
    const char* names[] = {"amplitude", "ratio",      "frequency", "frequency_ratio",
                           "density",   "spottyness", "size_rand", "randomness"};
    MayaNode node;
    for (int i = 0; i < 8; ++i) {
        inputs[i].lowerBound = static_cast<float>(i);
        inputs[i].upperBound = static_cast<float>(i) + 1.0f;
        node.connect(names[i], inputs[i]);
    }
    node.set("noise_type", 0).set("num_waves", 7).set("depth_max", 4).set("time", 2.25f);
    EXPECT_EQ(node.source().text, blocks() +
                                      "maya_noise_3d\nmaya_perlin\nuvw_transform 88.000000,0.500000,"
                                      "1.500000,2.500000,3.500000,4.500000,5.500000,6.500000,7.500000,"
                                      "7.000000,4.000000,2.250000\n" +
                                      kTail);
}

class SilentBounds final : public TestFloat {
public:
    void evalFloatBounds(float*, float*) override {}
};

TEST(TexNoiseMayaSource, BoundsThatAreLeftUnwrittenCountAsZeroToOne)
{
    SilentBounds ratio;
    MayaNode node;
    node.set("noise_type", 0).connect("ratio", ratio);
    EXPECT_NE(node.source().text.find("uvw_transform 88.000000,0.000000,0.500000,0.000000,"),
              std::string::npos);
}

TEST(TexNoiseMayaSource, EndsWithTheColorAdjustments)
{
    MayaNode node;
    node.set("noise_type", 0).set("invert", true).set("compatibility_with", 1);
    EXPECT_EQ(node.source().text, blocks() + "maya_noise_3d\nmaya_perlin\n" + numbers("88.000000") +
                                      "color 0.500000 0.500000 0.500000 1.000000\ncompatibility_with 1\n"
                                      "invert_color\ninvert_alpha\n");
}

TEST(TexNoiseMayaSource, NoisesWithoutGpuFormHaveNoTextOfTheirOwn)
{
    MayaNode node;
    for (const auto& [kind, dimensions] : {std::pair(1, 3), {2, 3}, {4, 3}, {4, 2}, {5, 3}}) {
        node.set("noise_type", kind).set("dimensions", dimensions);
        EXPECT_EQ(node.source().text.find("maya_noise"), std::string::npos) << kind << ' ' << dimensions;
    }
}

} // namespace
