#include "host/metadata/metadata.h"

#include <gtest/gtest.h>

namespace {

using namespace ombrix;

TEST(Metadata, MixedJointsSeparateItems)
{
    const auto parsed = parseMetadata("enum=(0:Max;1:Maya); startRollout=(Common), gpuSupport=(full)");
    ASSERT_EQ(parsed.enumeration.size(), 2u);
    EXPECT_EQ(parsed.enumeration[0].value, 0);
    EXPECT_EQ(parsed.enumeration[0].label, "Max");
    EXPECT_EQ(parsed.enumeration[1].value, 1);
    EXPECT_EQ(parsed.enumeration[1].label, "Maya");
    EXPECT_EQ(parsed.startRollout, "Common");
    EXPECT_FALSE(parsed.endsRollout);
    EXPECT_EQ(parsed.gpuSupport, "full");
    EXPECT_TRUE(parsed.other.empty());
}

TEST(Metadata, LabelsKeepTheirOwnParenthesesAndATrailingSemicolonAddsNone)
{
    const auto parsed = parseMetadata(
        "enum=(0:Constant(1.0); 1:X gradient; 2:Y gradient; 3:Z gradient; 4:Center gradient; 5:-X gradient; "
        "6:-Y gradient; 7:-Z gradient; 8:Sphere; 9:Cube; 10:Cone; 11:Double cone;)");
    ASSERT_EQ(parsed.enumeration.size(), 12u);
    EXPECT_EQ(parsed.enumeration[0].label, "Constant(1.0)");
    EXPECT_EQ(parsed.enumeration[5].label, "-X gradient");
    EXPECT_EQ(parsed.enumeration[11].value, 11);
    EXPECT_EQ(parsed.enumeration[11].label, "Double cone");
}

TEST(Metadata, AnItemAfterALabelWithParenthesesIsRead)
{
    const auto parsed = parseMetadata("enum=(0:A(b(c)); 1:D), units=(radians)");
    ASSERT_EQ(parsed.enumeration.size(), 2u);
    EXPECT_EQ(parsed.enumeration[0].label, "A(b(c))");
    EXPECT_EQ(parsed.units, "radians");
}

TEST(Metadata, EnumPairsMayHaveBlanksAfterColonAndSemicolon)
{
    const auto parsed =
        parseMetadata("enum=(0: Constant; 1: Linear; 2: Cycle; 3: Cycle relative; 4: Oscillate)");
    ASSERT_EQ(parsed.enumeration.size(), 5u);
    EXPECT_EQ(parsed.enumeration[3].value, 3);
    EXPECT_EQ(parsed.enumeration[3].label, "Cycle relative");
    const auto tight = parseMetadata("enum=(0:Whole texture is valid;1:Crop;2:Place), gpuSupport=(partial)");
    ASSERT_EQ(tight.enumeration.size(), 3u);
    EXPECT_EQ(tight.enumeration[0].label, "Whole texture is valid");
    EXPECT_EQ(tight.gpuSupport, "partial");
}

TEST(Metadata, LabelsWithCommasPlusesAndSlashesStand)
{
    const auto tiling = parseMetadata("enum=(0:No tiling;1:Tile in UV;2:Tile in U;3:Tile in V;"
                                      "4:Tile in UV, but no filter tiling), gpuSupport=(partial)");
    ASSERT_EQ(tiling.enumeration.size(), 5u);
    EXPECT_EQ(tiling.enumeration[4].label, "Tile in UV, but no filter tiling");
    const auto blur = parseMetadata("enum=(0:Disabled; 1:Blend; 2:Velocity; 3:Velocity+Blend)");
    EXPECT_EQ(blur.enumeration.at(3).label, "Velocity+Blend");
}

TEST(Metadata, EnableJoinsConditionsByCommasAndAlternativesBySemicolons)
{
    const auto together =
        parseMetadata("enable=(::uv_noise_on=1, ::uv_noise_animate=1), displayName=(UV noise "
                      "phase); startRollout=(<EndRollout>), gpuSupport=(none)");
    ASSERT_EQ(together.enable.size(), 1u);
    ASSERT_EQ(together.enable[0].size(), 2u);
    EXPECT_EQ(together.enable[0][0].parameter, "uv_noise_on");
    EXPECT_EQ(together.enable[0][0].value, "1");
    EXPECT_EQ(together.enable[0][1].parameter, "uv_noise_animate");
    EXPECT_EQ(together.displayName, "UV noise phase");
    EXPECT_TRUE(together.endsRollout);
    EXPECT_EQ(together.startRollout, std::nullopt);
    EXPECT_EQ(together.gpuSupport, "none");

    const auto either =
        parseMetadata("enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)");
    ASSERT_EQ(either.enable.size(), 2u);
    ASSERT_EQ(either.enable[0].size(), 1u);
    EXPECT_EQ(either.enable[0][0].parameter, "placement_type");
    EXPECT_EQ(either.enable[0][0].value, "1");
    EXPECT_EQ(either.enable[1][0].value, "2");
}

TEST(Metadata, RolloutsOpenAndClose)
{
    EXPECT_EQ(parseMetadata("startRollout=(Mapped), gpuSupport=(full)").startRollout, "Mapped");
    const auto end = parseMetadata("startRollout=(<EndRollout>), gpuSupport=(none)");
    EXPECT_TRUE(end.endsRollout);
    EXPECT_EQ(end.startRollout, std::nullopt);
}

TEST(Metadata, LimitsQuantitiesAndUnits)
{
    const auto distance = parseMetadata("quantityType=(distance), minValue=(1e-6), gpuSupport=(none)");
    EXPECT_EQ(distance.quantityType, "distance");
    EXPECT_EQ(distance.minValue, 1e-6);
    EXPECT_EQ(distance.maxValue, std::nullopt);
    const auto unit = parseMetadata("minValue=(0), maxValue=(1)");
    EXPECT_EQ(unit.minValue, 0.0);
    EXPECT_EQ(unit.maxValue, 1.0);
    EXPECT_EQ(parseMetadata("units=(radians), gpuSupport=(full)").units, "radians");
}

TEST(Metadata, DisplayNames)
{
    EXPECT_EQ(parseMetadata("displayName=(No UVs Color), gpuSupport=(partial)").displayName, "No UVs Color");
    const auto legacy = parseMetadata("displayName=(Maya legacy look), enum=(0:Non-legacy; 1:Legacy)");
    EXPECT_EQ(legacy.displayName, "Maya legacy look");
    EXPECT_EQ(legacy.enumeration.at(1).label, "Legacy");
}

TEST(Metadata, UnknownKeysAndUnreadableValuesAreKept)
{
    const auto parsed = parseMetadata("fileAsset=(png;jpg), minValue=(low); enum=(a:b)");
    ASSERT_EQ(parsed.other.size(), 3u);
    EXPECT_EQ(parsed.other[0].first, "fileAsset");
    EXPECT_EQ(parsed.other[0].second, "png;jpg");
    EXPECT_EQ(parsed.other[1].first, "minValue");
    EXPECT_EQ(parsed.other[1].second, "low");
    EXPECT_EQ(parsed.other[2].first, "enum");
    EXPECT_TRUE(parsed.enumeration.empty());
    EXPECT_EQ(parsed.minValue, std::nullopt);
}

TEST(Metadata, OddTextsDoNotFail)
{
    EXPECT_TRUE(parseMetadata("").other.empty());
    EXPECT_TRUE(parseMetadata("no items, here").other.empty());
    EXPECT_EQ(parseMetadata("displayName=(cut").displayName, "cut");
    EXPECT_EQ(parseMetadata("enum=(0:A(b").enumeration.at(0).label, "A(b");
    EXPECT_EQ(parseMetadata("units=()").units, "");
    EXPECT_EQ(parseMetadata("=(x)").other.at(0).first, "");
    EXPECT_TRUE(parseMetadata("enable=(broken)").enable.empty());
}

TEST(Metadata, LabelsAndValuesFindEachOther)
{
    const auto parsed = parseMetadata("enum=(0:Perlin Noise; 1:Billow; 2:Wave; 3:Wispy), gpuSupport=(full)");
    EXPECT_EQ(parsed.valueOf("Billow"), 1);
    EXPECT_EQ(parsed.valueOf("perlin noise"), 0);
    EXPECT_EQ(parsed.valueOf(" Wispy "), 3);
    EXPECT_EQ(parsed.valueOf("Perlin"), std::nullopt);
    ASSERT_NE(parsed.labelOf(2), nullptr);
    EXPECT_EQ(*parsed.labelOf(2), "Wave");
    EXPECT_EQ(parsed.labelOf(9), nullptr);
}

TEST(GpuSupportOfDescription, ReadsTheTagAtTheEnd)
{
    EXPECT_EQ(gpuSupportOfDescription("Yield a constant color [gpuSupport=(full)]"), "full");
    EXPECT_EQ(
        gpuSupportOfDescription("3d texture created from a list of particle systems [gpuSupport=(bake)]"),
        "bake");
    EXPECT_EQ(gpuSupportOfDescription("No tag here"), std::nullopt);
    EXPECT_EQ(gpuSupportOfDescription(""), std::nullopt);
}

TEST(GpuSupportOfDescription, CompletesACutTag)
{
    EXPECT_EQ(gpuSupportOfDescription("Applies gamma [gpuSupport=(f"), "full");
    EXPECT_EQ(gpuSupportOfDescription("Outputs a color [gpuSupport=(parti"), "partial");
    EXPECT_EQ(gpuSupportOfDescription("Performas a vector operation [gpuSupport=(no"), "none");
    EXPECT_EQ(gpuSupportOfDescription("Cut at once [gpuSupport=("), std::nullopt);
}

} // namespace
