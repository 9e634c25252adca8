#include "color_correct_fixture.h"
#include "support/gpu_slots.h"

namespace {

using namespace support;

// The slots from the input colour to the offset, without and with division by alpha.
void writeChain(SlotLines& slots)
{
    slots.operation(-987);
    slots.texture("hue_shift").operation(-935, {2, 0, 0, 0});
    slots.texture("sat_gain").operation(-935, {0, 4, 0, 0});
    slots.texture("val_gain").operation(-935, {0, 0, 4, 0});
    slots.operation(-965);
    slots.texture("col_gain").operation(-980);
    slots.texture("col_offset").operation(-979, {1});
}

TEST_F(ColorCorrectTest, WritesTheChainWhileAllFlagsAreZero)
{
    connectAll();
    SlotLines expected;
    expected.texture("in_color");
    writeChain(expected);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, expected.text);
}

TEST_F(ColorCorrectTest, WritesBothBranchesOfFlagsThatVary)
{
    connectAll();
    for (const char* flag : {"col_clamp", "premultiply_result", "unpremultiply_input"})
        number(flag).upperBound = 1.0f;
    SlotLines expected;
    const auto writeColor = [&] {
        expected.texture("unpremultiply_input");
        expected.texture("in_color").texture("in_alpha").operation(-935, {5, 5, 5, 1, 1, 1, 1, 1});
        expected.texture("in_color").operation(-948);
        writeChain(expected);
    };
    // "clamped" is used twice and hoisted into slot 0.
    expected.texture("col_clamp");
    writeColor();
    expected.texture("col_clamp_min").texture("col_clamp_max").operation(-951);
    writeColor();
    expected.operation(-948);
    expected.texture("premultiply_result");
    expected.reference(1).texture("in_alpha").operation(-935, {4, 4, 4, 1, 1, 1, 1, 1});
    expected.reference(2).operation(-948);
    expected.finish(1);
    EXPECT_EQ(sourceOf(node.rtTexture()).text, expected.text);
}

TEST_F(ColorCorrectTest, WritesTheTakenBranchOfConstantFlags)
{
    connectAll();
    for (const char* flag : {"col_clamp", "premultiply_result", "unpremultiply_input"})
        number(flag).lowerBound = number(flag).upperBound = 1.0f;
    SlotLines expected;
    expected.texture("in_color").texture("in_alpha").operation(-935, {5, 5, 5, 1, 1, 1, 1, 1});
    writeChain(expected);
    expected.texture("col_clamp_min").texture("col_clamp_max").operation(-951);
    expected.texture("in_alpha").operation(-935, {4, 4, 4, 1, 1, 1, 1, 1});
    EXPECT_EQ(sourceOf(node.rtTexture()).text, expected.text);
}

TEST_F(ColorCorrectTest, WritesEmptySlotsForUnsetInputs)
{
    const SlotLines expected = SlotLines()
                                   .empty()
                                   .operation(-987)
                                   .empty()
                                   .operation(-935, {2})
                                   .empty()
                                   .operation(-935, {0, 4})
                                   .empty()
                                   .operation(-935, {0, 0, 4})
                                   .operation(-965)
                                   .empty()
                                   .operation(-980)
                                   .empty()
                                   .operation(-979, {1});
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, expected.text);
}

} // namespace
