// Writing GPU text slot by slot.

#include "plugin_frame/source_text.h"
#include "support/test_node.h"
#include "support/text_sink.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

namespace {

using namespace support;
using OUtils::AColor;

TEST(SourceText, KnowsOneDescriptorByteForByte)
{
    EXPECT_TRUE(nezaiva::isMaterialDescriptor("MaterialDescriptor"));
    for (const char* other : {"", "materialDescriptor", "MaterialDescriptor ", "MaterialDescripto"})
        EXPECT_FALSE(nezaiva::isMaterialDescriptor(other)) << other;
    EXPECT_FALSE(nezaiva::isMaterialDescriptor(nullptr));
}

TEST(SourceText, EndsEachSlotAndPassesTheArgumentsOn)
{
    TextSink sink(TextKind::Broken); // strings that no source has
    NoData data;
    TestColor color, refusing;
    color.label = "input";
    refusing.hasSource = false;
    OUtils::TextureInterface* texture = &color;
    nezaiva::SourceText text("a", "b", "c", sink, data);
    text.slot(texture);
    text.slotOrUnset(texture, AColor{});
    text.slotOrUnset(nullptr, {0.5f, 0.25f, -1.0f, 2.0f});
    text.slot(static_cast<OUtils::PluginInterface*>(nullptr));
    text.slotOr(static_cast<OUtils::TextureInterface*>(&refusing), "instead\n");
    text.slotOr(static_cast<OUtils::TextureInterface*>(&refusing), AColor{1.0f, 0.0f, 0.0f, 0.0f});
    text.slotOrUnset(static_cast<OUtils::TextureInterface*>(&refusing), AColor{});
    EXPECT_TRUE(text.input(texture, "x", "y"));
    EXPECT_FALSE(text.input(nullptr));
    text.op(nezaiva::GpuOperator::Condition);
    EXPECT_EQ(sink.text, "input a b c\nsubtex\n"
                         "input a b c\nsubtex\n"
                         "color 0.500000 0.250000 -1.000000 2.000000\nsubtex\n"
                         "subtex\n"
                         "instead\nsubtex\n"
                         "color 1.000000 0.000000 0.000000 0.000000\nsubtex\n"
                         "subtex\n"
                         "input x y c\n"
                         "bitmap -948\n");
}

TEST(SourceText, FillsTheOperandsWithZeros)
{
    TextSink sink(TextKind::Broken);
    NoData data;
    nezaiva::SourceText text("", "", "", sink, data);
    text.operands({1.5f, -2.0f});
    text.bareOperands({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    EXPECT_EQ(sink.text, "uvw_transform 1.500000,-2.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
                         "0.000000,0.000000,0.000000,0.000000,0.000000\n"
                         "1.000000,2.000000,3.000000,4.000000,5.000000,6.000000,7.000000,8.000000,"
                         "9.000000,10.000000,11.000000,12.000000\n");
}

} // namespace
