// Reading inputs that may be unset, and writing GPU text slot by slot.

#include "plugin_frame/fallbacks.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/slot_text.h"
#include "support/test_node.h"
#include "support/text_sink.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

namespace {

using namespace support;
using OUtils::AColor;

TEST(Fallbacks, UnsetInputsGiveTheFallback)
{
    const TestContext context;
    const AColor fallback{0.1f, 0.2f, 0.3f, 0.4f};
    EXPECT_SAME_COLOR(nezaiva::colorOr(nullptr, fallback, context), fallback);
    AColor written = kUnwrittenColor;
    nezaiva::writeColorOr(&written, nullptr, fallback, context);
    EXPECT_SAME_COLOR(written, fallback);
    EXPECT_SAME_BITS(nezaiva::floatOr(nullptr, 0.5f, context), 0.5f);
}

TEST(Fallbacks, SetInputsGiveTheirValue)
{
    const TestContext context;
    TestColor color({0.5f, 0.6f, 0.7f, 0.8f});
    TestFloat number(0.25f);
    EXPECT_SAME_COLOR(nezaiva::colorOr(&color, {}, context), color.value);
    AColor written = kUnwrittenColor;
    nezaiva::writeColorOr(&written, &color, {}, context);
    EXPECT_SAME_COLOR(written, color.value);
    EXPECT_SAME_BITS(nezaiva::floatOr(&number, 0.5f, context), 0.25f);
}

TEST(GpuText, KnowsOneDescriptorByteForByte)
{
    EXPECT_TRUE(nezaiva::isMaterialDescriptor("MaterialDescriptor"));
    for (const char* other : {"", "materialDescriptor", "MaterialDescriptor ", "MaterialDescripto"})
        EXPECT_FALSE(nezaiva::isMaterialDescriptor(other)) << other;
    EXPECT_FALSE(nezaiva::isMaterialDescriptor(nullptr));
}

TEST(SlotText, EndsEachSlotAndPassesTheArgumentsOn)
{
    TextSink sink(TextKind::Broken); // an operator and strings that no source has
    NoData data;
    TestColor color;
    color.label = "input";
    OUtils::TextureInterface* texture = &color;
    nezaiva::SlotText slots("a", "b", "c", sink, data);
    slots.input(texture);
    slots.inputOr(texture, {});
    slots.inputOr(nullptr, {0.5f, 0.25f, -1.0f, 2.0f});
    slots.input(nullptr);
    slots.builtin(-7);
    EXPECT_EQ(sink.text, "input a b c\nsubtex\n"
                         "input a b c\nsubtex\n"
                         "color 0.500000 0.250000 -1.000000 2.000000\nsubtex\n"
                         "subtex\n"
                         "bitmap -7\n");
}

} // namespace
