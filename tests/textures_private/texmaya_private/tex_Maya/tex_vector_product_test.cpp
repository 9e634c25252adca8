#include "arithmetic_test.h"

#include "support/test_vector_inputs.h"

#include <cmath>
#include <utility>

namespace {

using namespace support;
using OUtils::AColor;

struct VectorProductTest : testing::Test {
    VectorProductTest()
    {
        input1.value = {1.0f, 2.0f, 3.0f, 9.0f};
        input2.value = {4.0f, -5.0f, 6.0f, 9.0f};
        transform.value.matrix.columns[0] = {2.0f, 0.0f, 0.0f};
        transform.value.matrix.columns[1] = {0.0f, 0.0f, 3.0f};
        transform.value.matrix.columns[2] = {0.0f, -1.0f, 0.0f};
        transform.value.offset = {10.0f, 20.0f, 30.0f};
    }
    void connectAll()
    {
        node.connect("input1", input1).connect("input2", input2).connect("transform", transform);
    }
    AColor result(int operation, int normalize)
    {
        node.set("operation", operation).set("normalize", normalize);
        return node.color();
    }
    ColorBounds boundsOf(int operation, int normalize)
    {
        node.set("operation", operation).set("normalize", normalize);
        return colorBounds(node);
    }

    TestColor input1{"input1", nullptr}, input2{"input2", nullptr};
    TestTransform transform;
    TestNode node{descriptor("TexVectorProduct")};
};

TEST_F(VectorProductTest, NothingConnectedIsTheDotProductOfZeros)
{
    EXPECT_SAME_COLOR(node.color(), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(VectorProductTest, NothingConnectedGivesZerosInEveryKnownOperation)
{
    for (int normalize : {0, 1})
        for (int operation = 0; operation <= 4; ++operation)
            EXPECT_SAME_COLOR(result(operation, normalize), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(VectorProductTest, ComputesEachOperation)
{
    connectAll();
    EXPECT_SAME_COLOR(result(0, 0), {1.0f, 2.0f, 3.0f, 1.0f});
    EXPECT_SAME_COLOR(result(1, 0), {12.0f, 12.0f, 12.0f, 1.0f});
    EXPECT_SAME_COLOR(result(2, 0), {27.0f, 6.0f, -13.0f, 1.0f});
    EXPECT_SAME_COLOR(result(3, 0), {2.0f, -3.0f, 6.0f, 1.0f});
    EXPECT_SAME_COLOR(result(4, 0), {12.0f, 17.0f, 36.0f, 1.0f});
}

TEST_F(VectorProductTest, OtherOperationsAreTheAxisOfX)
{
    connectAll();
    for (int normalize : {0, 1})
        for (int operation : {7, 5, -1})
            EXPECT_SAME_COLOR(result(operation, normalize), {1.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(VectorProductTest, NormalizesResults)
{
    connectAll();
    input1.value = {0.0f, 3.0f, 4.0f, 9.0f};
    input2.value = {0.0f, -8.0f, 6.0f, 9.0f};
    AColor color = result(0, 1);
    EXPECT_SAME_BITS(color.g, 0.6f);
    EXPECT_SAME_BITS(color.b, 0.8f);
    color = result(2, 1); // (50, 0, 0)
    EXPECT_SAME_BITS(color.r, 1.0f);
    EXPECT_SAME_BITS(color.g, 0.0f);
    color = result(3, 1); // (0, -4, 9)
    EXPECT_FLOAT_EQ(color.g, -4.0f / std::sqrt(97.0f));
    EXPECT_FLOAT_EQ(color.b, 9.0f / std::sqrt(97.0f));
}

TEST_F(VectorProductTest, NormalizesTheInputsOfADotProductInstead)
{
    connectAll();
    input1.value = {0.0f, 3.0f, 4.0f, 9.0f};
    input2.value = {0.0f, -8.0f, 6.0f, 9.0f};
    const AColor color = result(1, 1); // 0.6 (-0.8) + 0.8 0.6
    EXPECT_SAME_BITS(color.r, 0.0f);
    input2.value = {0.0f, 6.0f, 8.0f, 9.0f};
    EXPECT_SAME_BITS(result(1, 1).b, 1.0f);
}

TEST_F(VectorProductTest, NeverNormalizesPoints)
{
    connectAll();
    EXPECT_SAME_COLOR(result(4, 1), {12.0f, 17.0f, 36.0f, 1.0f});
}

TEST_F(VectorProductTest, LeavesVectorsWithoutALengthAsTheyAre)
{
    connectAll();
    input1.value = {0.0f, 0.0f, 0.0f, 9.0f};
    EXPECT_SAME_COLOR(result(1, 1), {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(result(0, 1), {0.0f, 0.0f, 0.0f, 1.0f});
    input1.value = {1e-30f, 0.0f, 0.0f, 9.0f}; // its square is lost
    EXPECT_SAME_COLOR(result(0, 1), {1e-30f, 0.0f, 0.0f, 1.0f});
    input1.value = {kInfinity, 1.0f, 0.0f, 9.0f};
    EXPECT_SAME_COLOR(result(0, 1), {kInfinity, 1.0f, 0.0f, 1.0f});
    input1.value = {kNaN, 1.0f, 0.0f, 9.0f};
    EXPECT_SAME_COLOR(result(0, 1), {kNaN, 1.0f, 0.0f, 1.0f});
    input1.value = {1e30f, 0.0f, 0.0f, 9.0f}; // its square is infinite
    EXPECT_SAME_COLOR(result(0, 1), {0.0f, 0.0f, 0.0f, 1.0f});
}

TEST_F(VectorProductTest, AnUnsetTransformIsTheIdentity)
{
    node.connect("input1", input1);
    EXPECT_SAME_COLOR(result(3, 0), {1.0f, 2.0f, 3.0f, 1.0f});
    EXPECT_SAME_COLOR(result(4, 0), {1.0f, 2.0f, 3.0f, 1.0f});
}

TEST_F(VectorProductTest, PassesNaNOn)
{
    connectAll();
    input2.value = {kNaN, 0.0f, 1.0f, 9.0f};
    EXPECT_SAME_COLOR(result(1, 0), {kNaN, kNaN, kNaN, 1.0f});
    EXPECT_SAME_COLOR(result(2, 0), {2.0f, kNaN, kNaN, 1.0f});
}

TEST_F(VectorProductTest, BoundsOfNormalizedResultsAreOneEitherWay)
{
    connectAll();
    for (int operation : {0, 1, 2, 3, 7, -1}) {
        const ColorBounds bounds = boundsOf(operation, 1);
        EXPECT_SAME_COLOR(bounds.lower, {-1.0f, -1.0f, -1.0f, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
    }
}

TEST_F(VectorProductTest, BoundsOfMatrixProductsAreOpen)
{
    connectAll();
    for (const auto& [operation, normalize] : {std::pair{3, 0}, std::pair{4, 0}, std::pair{4, 1}}) {
        const ColorBounds bounds = boundsOf(operation, normalize);
        EXPECT_SAME_COLOR(bounds.lower, {-1e18f, -1e18f, -1e18f, -1e18f});
        EXPECT_SAME_COLOR(bounds.upper, {1e18f, 1e18f, 1e18f, 1e18f});
    }
}

TEST_F(VectorProductTest, BoundsOfNoOperationAreThoseOfTheInput)
{
    ColorBounds bounds = boundsOf(0, 0);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
    connectAll();
    input1.lowerBound = {1.0f, 2.0f, 3.0f, 9.0f};
    input1.upperBound = {4.0f, 5.0f, 6.0f, 9.0f};
    bounds = boundsOf(0, 0);
    EXPECT_SAME_COLOR(bounds.lower, {1.0f, 2.0f, 3.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {4.0f, 5.0f, 6.0f, 1.0f});
}

TEST_F(VectorProductTest, BoundsOfProductsPairWholeVectors)
{
    connectAll();
    input1.lowerBound = {1.0f, -1.0f, 0.0f, 9.0f};
    input1.upperBound = {2.0f, 1.0f, 1.0f, 9.0f};
    input2.lowerBound = {-1.0f, 0.0f, 2.0f, 9.0f};
    input2.upperBound = {3.0f, 4.0f, 5.0f, 9.0f};
    // Dot products of the pairs: -1, -1, 0, 15. Channel by channel the least would be -6.
    ColorBounds bounds = boundsOf(1, 0);
    EXPECT_SAME_COLOR(bounds.lower, {-1.0f, -1.0f, -1.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {15.0f, 15.0f, 15.0f, 1.0f});
    // Cross products: (-2, -2, -1), (-5, -5, 7), (2, -5, 1), (1, -7, 5).
    bounds = boundsOf(2, 0);
    EXPECT_SAME_COLOR(bounds.lower, {-5.0f, -7.0f, -1.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {2.0f, -2.0f, 7.0f, 1.0f});
}

TEST_F(VectorProductTest, BoundsOfProductsTakeZeroForUnsetInputs)
{
    input1.lowerBound = {1.0f, 1.0f, 1.0f, 9.0f};
    input1.upperBound = {2.0f, 2.0f, 2.0f, 9.0f};
    node.connect("input1", input1);
    for (int operation : {1, 2}) {
        const ColorBounds bounds = boundsOf(operation, 0);
        EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {0.0f, 0.0f, 0.0f, 1.0f});
    }
}

TEST_F(VectorProductTest, BoundsOfOtherOperationsAreTheAxisOfX)
{
    connectAll();
    for (int operation : {7, 5, -1}) {
        const ColorBounds bounds = boundsOf(operation, 0);
        EXPECT_SAME_COLOR(bounds.lower, {1.0f, 0.0f, 0.0f, 1.0f});
        EXPECT_SAME_COLOR(bounds.upper, {1.0f, 0.0f, 0.0f, 1.0f});
    }
}

TEST_F(VectorProductTest, GradientIsZero)
{
    connectAll();
    expectZeroGradient(node);
}

TEST_F(VectorProductTest, OutputIsTheTextureItself)
{
    EXPECT_EQ(outputOf<OUtils::TextureInterface>(node, "color"), node.texture());
}

} // namespace
