#include "arithmetic_test.h"

#include "support/test_vector_inputs.h"

namespace {

using namespace support;

struct DistanceBetweenTest : testing::Test {
    DistanceBetweenTest()
    {
        point1.value = {1.0f, 2.0f, 3.0f, 50.0f};
        point2.value = {3.0f, 5.0f, 9.0f, 9.0f};
    }

    TestColor point1, point2;
    TestTransform transform1, transform2;
    TestNode node{descriptor("TexDistanceBetween")};
};

TEST_F(DistanceBetweenTest, NothingConnectedIsZero)
{
    EXPECT_SAME_BITS(node.value(), 0.0f);
}

TEST_F(DistanceBetweenTest, MeasuresBetweenThePoints)
{
    node.connect("point1", point1).connect("point2", point2);
    EXPECT_SAME_BITS(node.value(), 7.0f); // 2, 3, 6; alpha takes no part
}

TEST_F(DistanceBetweenTest, AnUnsetPointIsTheOrigin)
{
    point1.value = {2.0f, 3.0f, -6.0f, 0.0f};
    node.connect("point1", point1);
    EXPECT_SAME_BITS(node.value(), 7.0f);
    TestNode other(descriptor("TexDistanceBetween"));
    other.connect("point2", point1);
    EXPECT_SAME_BITS(other.value(), 7.0f);
}

TEST_F(DistanceBetweenTest, PlacesEachPointByItsWholeTransform)
{
    transform1.value.matrix.columns[0] = {0.0f, 2.0f, 0.0f}; // x along twice y
    transform1.value.matrix.columns[1] = {1.0f, 0.0f, 0.0f};
    transform1.value.offset = {-2.0f, 0.0f, 0.0f};
    transform2.value.offset = {0.0f, -3.0f, -3.0f};
    node.connect("point1", point1).connect("point2", point2);
    node.connect("transform1", transform1).connect("transform2", transform2);
    // (0, 2, 3) and (3, 2, 6), apart by 3, 0, 3.
    EXPECT_SAME_BITS(node.value(), 4.24264069f);
    // Without points the offsets remain: (-2, 0, 0) and (0, -3, -3).
    TestNode placed(descriptor("TexDistanceBetween"));
    placed.connect("transform1", transform1).connect("transform2", transform2);
    EXPECT_SAME_BITS(placed.value(), 4.69041576f);
}

TEST_F(DistanceBetweenTest, NoNumbersHaveNoDistance)
{
    point1.value.g = kNaN;
    node.connect("point1", point1);
    EXPECT_SAME_BITS(node.value(), kNaN);
    // The zeros of the identity make a NaN of an infinity.
    point1.value.g = -kInfinity;
    EXPECT_SAME_BITS(node.value(), kNaN);
}

TEST_F(DistanceBetweenTest, BoundsAreOpenEitherWay)
{
    for (int connected : {0, 1}) {
        if (connected) node.connect("point1", point1);
        const FloatBounds bounds = floatBounds(node);
        EXPECT_SAME_BITS(bounds.lower, -1e18f);
        EXPECT_SAME_BITS(bounds.upper, 1e18f);
    }
}

TEST_F(DistanceBetweenTest, AnswersToTheFloatTextureThoughItDeclaresAColor)
{
    EXPECT_EQ(node.texture(), nullptr);
    EXPECT_EQ(node.rtTexture(), nullptr);
    EXPECT_EQ(descriptor("TexDistanceBetween")->supportsInterface(OUtils::EXT_TEXTURE), 1);
    EXPECT_EQ(descriptor("TexDistanceBetween")->supportsInterface(OUtils::EXT_TEXTURE_FLOAT), 0);
    EXPECT_EQ(outputOf<OUtils::TextureFloatInterface>(node, "distance"), node.floatTexture());
}

} // namespace
