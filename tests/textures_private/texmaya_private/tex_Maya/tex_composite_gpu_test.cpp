#include "support/gpu_slots.h"
#include "tex_maya_test.h"

namespace {

using namespace support;

struct CompositeGpuTest : testing::Test {
    CompositeGpuTest() { factor.upperBound = 0.5f; }
    void connectAll()
    {
        node.connect("color_a", colorA).connect("alpha_a", alpha).connect("color_b", colorB);
        node.connect("factor", factor);
    }
    std::string textOf(int operation)
    {
        node.set("operation", operation);
        const WrittenSource written = sourceOf(node.rtTexture());
        EXPECT_EQ(written.answer, 1);
        return written.text;
    }

    TestColor colorA{"a", nullptr}, colorB{"b", nullptr};
    TestFloat alpha{"alpha", nullptr}, factor{"f", nullptr};
    TestNode node{descriptor("TexComposite")};
};

TEST_F(CompositeGpuTest, CompositeWritesTheFirstColorWhileTheFactorIsUnsetOrNeverAboveZero)
{
    const std::string a = "a theName theTag MaterialDescriptor\n";
    node.connect("color_a", colorA).connect("color_b", colorB);
    for (int operation = -1; operation < 10; ++operation)
        EXPECT_EQ(textOf(operation), a);
    node.connect("factor", factor);
    for (float upper : {0.0f, -1.0f}) {
        factor.upperBound = upper;
        EXPECT_EQ(textOf(0), a);
    }
}

TEST_F(CompositeGpuTest, CompositeWritesNothingForUnsetColors)
{
    EXPECT_EQ(textOf(0), "");
}

TEST_F(CompositeGpuTest, CompositeWritesTheOperationsThatUseEachInputOnce)
{
    connectAll();
    SlotLines add;
    add.texture("a").texture("b").texture("f").operation(-980).operation(-979, {1});
    EXPECT_EQ(textOf(0), add.text);

    SlotLines subtract;
    subtract.texture("a").texture("b").grey("1.000000").operation(-979);
    subtract.texture("f").operation(-980).operation(-979, {1});
    EXPECT_EQ(textOf(1), subtract.text);

    SlotLines blend;
    blend.texture("a").texture("b").texture("f").operation(-945);
    EXPECT_EQ(textOf(2), blend.text);

    SlotLines overlay;
    overlay.texture("a").texture("b").texture("f").operation(-946, {26});
    EXPECT_EQ(textOf(5), overlay.text);

    SlotLines difference;
    difference.texture("a").texture("b").texture("f").operation(-980).operation(-979).operation(-944);
    EXPECT_EQ(textOf(6), difference.text);
}

TEST_F(CompositeGpuTest, CompositeWritesMultiplyAndScreen)
{
    connectAll();
    SlotLines multiply; // f in slot 0
    multiply.texture("f").texture("a").texture("b").reference(2).operation(-980);
    multiply.grey("1.000000").reference(3).operation(-979).operation(-979, {1}).operation(-980).finish(1);
    EXPECT_EQ(textOf(3), multiply.text);

    SlotLines screen; // a, b and f in the slots 0 to 2
    screen.texture("a").texture("b").texture("f");
    screen.reference(2).reference(2).reference(2).operation(-980).operation(-979, {1});
    screen.reference(3).reference(3).reference(3).operation(-980).operation(-980);
    screen.operation(-979).finish(3);
    EXPECT_EQ(textOf(4), screen.text);
}

TEST_F(CompositeGpuTest, CompositeWritesDodgeAndBurn)
{
    connectAll();
    SlotLines dodge; // a and b in the slots 0 and 1
    dodge.texture("a").texture("b").reference(1);
    dodge.reference(2).grey("1.000000").reference(3).operation(-979);
    dodge.grey("0.000010").operation(-943, {1}).operation(-956, {2});
    dodge.texture("f").operation(-945);
    dodge.reference(2).reference(2).operation(-951).finish(2);
    EXPECT_EQ(textOf(7), dodge.text);

    SlotLines burn;
    burn.texture("a").texture("b").reference(1).grey("1.000000");
    burn.reference(3).grey("1.000000").reference(4).operation(-979);
    burn.grey("0.000010").operation(-943, {1}).operation(-956, {2}).operation(-979);
    burn.texture("f").operation(-945);
    burn.reference(2).reference(2).operation(-951).finish(2);
    EXPECT_EQ(textOf(8), burn.text);
}

TEST_F(CompositeGpuTest, CompositeWritesNothingForAnUnknownOperation)
{
    connectAll();
    for (int operation : {-1, 9})
        EXPECT_EQ(textOf(operation), "");
}

} // namespace
