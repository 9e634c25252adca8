#include "support/test_vector_inputs.h"
#include "tex_maya_test.h"

namespace {

using namespace support;
using namespace OUtils;

// A transform that no operation under test wrote.
Transform unwritten()
{
    const Vector v{kUnwritten, kUnwritten, kUnwritten};
    return {{{v, v, v}}, v};
}

void expectSame(const Transform& actual, const Transform& expected)
{
    const auto compare = [](const Vector& a, const Vector& b) {
        EXPECT_SAME_BITS(a.x, b.x);
        EXPECT_SAME_BITS(a.y, b.y);
        EXPECT_SAME_BITS(a.z, b.z);
    };
    for (int i = 0; i < 3; ++i)
        compare(actual.matrix.columns[i], expected.matrix.columns[i]);
    compare(actual.offset, expected.offset);
}

struct TransformToTexTest : testing::Test {
    TransformToTexTest()
    {
        input.value.matrix = {{{0.0f, 2.0f, 0.0f}, {-2.0f, 0.0f, kNaN}, {0.0f, 0.5f, 1.0f}}};
        input.value.offset = {1.0f, 2.0f, -3.0f};
    }
    static Transform evaluated(TestNode& node)
    {
        Transform result = unwritten();
        interfaceOf<TextureTransformInterface>(node.base(), EXT_TEXTURE_TRANSFORM)
            ->evalTransform(&result, node.context);
        return result;
    }

    TestTransform input;
    TestNode node{descriptor("TransformToTex")};
};

TEST_F(TransformToTexTest, UnsetIsTheIdentityWithoutOffset)
{
    const Transform identity{{{{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}},
                             {0.0f, 0.0f, 0.0f}};
    expectSame(evaluated(node), identity);
}

TEST_F(TransformToTexTest, PassesTransformsOn)
{
    node.connect("input", input);
    expectSame(evaluated(node), input.value);
}

TEST_F(TransformToTexTest, IsDeclaredAsAColorTextureButAnswersToTransformsOnly)
{
    EXPECT_EQ(descriptor("TransformToTex")->supportsInterface(EXT_TEXTURE), 1);
    EXPECT_EQ(descriptor("TransformToTex")->supportsInterface(EXT_TEXTURE_TRANSFORM), 0);
    EXPECT_EQ(node.texture(), nullptr);
    EXPECT_EQ(node.rtTexture(), nullptr);
}

} // namespace
