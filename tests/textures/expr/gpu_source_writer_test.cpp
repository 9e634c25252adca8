// The writer of slots, and the helper that plugins use.

#include "textures/expr/gpu_source_helper.h"

#include "gpu_expr_support.h"

namespace {

using namespace nezaiva::expr::gpu;
using namespace expr_test;
using nezaiva::GPUSourceHelper;

class SourceWriter : public testing::Test {
protected:
    support::TextSink sink{support::TextKind::Broken}; // single lines, and no whole source
    support::NoData data;
    GPUSourceWriter writer{"theName", "theTag", "MaterialDescriptor", sink, data};
};

TEST_F(SourceWriter, TheFirstSlotNeedsNoLine)
{
    EXPECT_EQ(writer.getDepth(), 0);
    writer.openSlot();
    EXPECT_EQ(sink.text, "");
    EXPECT_EQ(writer.getDepth(), 0);
    writer.openSlot();
    EXPECT_EQ(writer.getDepth(), 1);
    writer.flush();
    EXPECT_EQ(sink.text, "subtex\n");
    writer.popSlots(3);
    EXPECT_EQ(writer.getDepth(), -2);
}

TEST_F(SourceWriter, WritesItsLines)
{
    writer.writeColor(0.25f, -1.5f, 1e6f, 0.1f);
    writer.writeGray(2.0f);
    writer.writeOperator(static_cast<nezaiva::GpuOperator>(-1), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, -11, 12});
    writer.writeReference(7);
    writer.flush();
    EXPECT_EQ(sink.text, "color 0.250000 -1.500000 1000000.000000 0.100000\n"
                         "color 2.000000 2.000000 2.000000 2.000000\n"
                         "bitmap -1\n"
                         "uvw_transform 1,2,3, 4,5,6, 7,8,9, 10,-11,12\n"
                         "bitmap -952\n"
                         "uvw_transform 7,0,0, 0,0,0, 0,0,0, 0,0,0\n");
    EXPECT_EQ(writer.getDepth(), 0);
}

TEST_F(SourceWriter, FinishOpensASlotAndTakesTheOthers)
{
    writer.openSlot();
    writer.openSlot();
    writer.openSlot();
    writer.writeFinish(2);
    writer.flush();
    EXPECT_EQ(sink.text, "subtex\nsubtex\nsubtex\nbitmap -934\nuvw_transform 2,0,0, 0,0,0, 0,0,0, 0,0,0\n");
    EXPECT_EQ(writer.getDepth(), 0);
}

TEST_F(SourceWriter, HandsTheThreeStringsToATexture)
{
    Texture a("a");
    writer.writeTexture(a);
    writer.writeTexture(nullptr);
    writer.flush();
    EXPECT_EQ(sink.text, "a theName theTag MaterialDescriptor\n");
}

TEST_F(SourceWriter, HoldsItsLinesBackUntilFlush)
{
    Texture a("a");
    writer.openSlot();
    writer.writeGray(2.0f);
    writer.openSlot();
    writer.writeTexture(a);
    EXPECT_EQ(sink.text, "");
    writer.flush();
    EXPECT_EQ(sink.text, slots({gray("2.000000"), source("a")}));
    writer.flush();
    EXPECT_EQ(sink.text, slots({gray("2.000000"), source("a")}));
    writer.openSlot();
    writer.writeGray(3.0f);
    writer.flush();
    EXPECT_EQ(sink.text, slots({gray("2.000000"), source("a"), gray("3.000000")}));
}

class SourceHelper : public testing::Test {
protected:
    Texture a{"a"}, b{"b"};
    support::TextSink sink;
    support::NoData data;
    GPUSourceHelper helper{"theName", "theTag", "MaterialDescriptor", sink, data};
};

TEST_F(SourceHelper, BindsTexturesNumbersAndExpressions)
{
    helper.addPluginVariable("a", a);
    helper.addPluginVariable("unset", nullptr);
    helper.addColorVariable("half", 0.5f);
    helper.addExpressionVariable("product", "(* a half)");
    helper.evaluate("(if unset 1 (+ product 2))");
    EXPECT_EQ(sink.text, slots({source("a"), gray("0.500000"), op(-980), gray("2.000000"), op(-979, {1})}));
}

TEST_F(SourceHelper, AnExpressionMayUseWhatIsAddedLater)
{
    helper.addExpressionVariable("e", "(* a b)");
    helper.addPluginVariable("a", a);
    helper.addPluginVariable("b", b);
    helper.evaluate("e");
    EXPECT_EQ(sink.text, slots({source("a"), source("b"), op(-980)}));
}

// Even a faulty text has a root, so the variable is bound and its faults come again.
TEST_F(SourceHelper, AFaultyExpressionIsToldAtTheTrialAndAtEachUse)
{
    EXPECT_EQ(errorsOf([&] { helper.addExpressionVariable("e", "0.5 (a"); }),
              "[ERR] Unable to parse expression: a\n");
    EXPECT_EQ(errorsOf([&] { helper.evaluate("(* e 2)"); }), "[ERR] Unable to parse expression: a\n");
    EXPECT_EQ(sink.text, slots({gray("0.500000"), gray("2.000000"), op(-980)}));
}

TEST_F(SourceHelper, CopiesNamesAndTexts)
{
    std::string name = "variable", text = "(* variable 2)";
    helper.addPluginVariable(name, a);
    helper.addExpressionVariable("e", text);
    name.assign(name.size(), '!');
    text.assign(text.size(), '!');
    helper.evaluate("e");
    EXPECT_EQ(sink.text, slots({source("a"), gray("2.000000"), op(-980)}));
}

// A text of a colour correction, with what stays when nothing is connected.
TEST_F(SourceHelper, APluginsExpressionFolds)
{
    helper.addPluginVariable("in", a);
    helper.addColorVariable("shouldUnpremultiply", 0.0f);
    helper.addExpressionVariable("unpr", "(if shouldUnpremultiply (manip in a / / / 1 x x x x) in)");
    helper.evaluate("(manip unpr 0.5 +  0 * 0)");
    EXPECT_EQ(sink.text, slots({source("a"), gray("0.500000"), op(-935, {2, 0, 4, 0})}));
}

} // namespace
