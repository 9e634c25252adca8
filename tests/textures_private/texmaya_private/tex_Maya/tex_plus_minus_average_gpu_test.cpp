// The GPU text of TexPlusMinusAverage.

#include "arithmetic_test.h"

namespace {

using namespace support;

constexpr const char* kPlainOperands = "uvw_transform 0.000000,1.000000,0.000000,0.000000,0.000000,0.000000,"
                                       "0.000000,0.000000,0.000000,0.000000,0.000000,0.000000\n";

struct PlusMinusAverageGpuTest : testing::Test {
    // The source of the node over the first `count` colours.
    WrittenSource colors(int operation, int count)
    {
        OUtils::PluginBase* all[] = {&colorA, &colorB, &colorC, &colorD};
        connectList(node, "input3D", {all, all + count});
        node.set("operation", operation);
        return sourceOf(node.rtTexture());
    }
    WrittenSource floats(int operation, std::vector<OUtils::PluginBase*> entries)
    {
        connectList(node, "input1D", std::move(entries));
        node.set("operation", operation);
        OUtils::PluginBase* output = ombrix::boundOutput(*node.life()->paramList, "output1D")->getPlugin();
        return sourceOf(interfaceOf<OUtils::RTTexInterface>(output, OUtils::EXT_RTTEX));
    }

    TestColor colorA{"colorA", nullptr}, colorB{"colorB", nullptr}, colorC{"colorC", nullptr},
        colorD{"colorD", nullptr};
    TestFloat floatA{"floatA", nullptr}, floatB{"floatB", nullptr};
    TestNode node{descriptor("TexPlusMinusAverage")};
    const std::string slotA = sourceLine("colorA") + "subtex\n", slotB = sourceLine("colorB") + "subtex\n",
                      slotC = sourceLine("colorC") + "subtex\n", slotD = sourceLine("colorD") + "subtex\n";
};

TEST_F(PlusMinusAverageGpuTest, EmptyListsWriteNothing)
{
    for (int operation : {0, 1, 2, 3, 4}) {
        EXPECT_EQ(colors(operation, 0).answer, 0);
        EXPECT_EQ(colors(operation, 0).text, "");
        EXPECT_EQ(floats(operation, {}).answer, 0);
        EXPECT_EQ(floats(operation, {}).text, "");
    }
}

TEST_F(PlusMinusAverageGpuTest, OneInputIsItselfInEveryOperation)
{
    for (int operation : {0, 1, 2, 3, 4}) {
        EXPECT_EQ(colors(operation, 1).answer, 1);
        EXPECT_EQ(colors(operation, 1).text, sourceLine("colorA"));
        EXPECT_EQ(floats(operation, {&floatA}).text, sourceLine("floatA") + "subtex\nbitmap -973\n");
    }
}

TEST_F(PlusMinusAverageGpuTest, OneInputWithoutSourceIsRefused)
{
    colorA.hasSource = false;
    floatA.hasSource = false;
    for (const WrittenSource& written : {colors(1, 1), floats(1, {&floatA}), floats(0, {nullptr})}) {
        EXPECT_EQ(written.answer, 0);
        EXPECT_EQ(written.text, "");
    }
}

TEST_F(PlusMinusAverageGpuTest, NoOperationWritesTheFirstInput)
{
    EXPECT_EQ(colors(0, 3).answer, 1);
    EXPECT_EQ(colors(0, 3).text, sourceLine("colorA"));
    EXPECT_EQ(floats(0, {&floatA, &floatB}).text, sourceLine("floatA") + "subtex\nbitmap -973\n");
}

TEST_F(PlusMinusAverageGpuTest, SumsAddPairwise)
{
    EXPECT_EQ(colors(1, 2).answer, 1);
    EXPECT_EQ(colors(1, 2).text, slotA + slotB + "bitmap -983\n" + kPlainOperands);
    EXPECT_EQ(colors(1, 4).text, slotA + slotB + slotC + slotD +
                                     "bitmap -983\nsubtex\nbitmap -983\nsubtex\nbitmap -983\n" +
                                     kPlainOperands);
}

TEST_F(PlusMinusAverageGpuTest, AveragesDivideByTheListsLength)
{
    EXPECT_EQ(colors(3, 3).text, slotA + slotB + slotC +
                                     "bitmap -983\nsubtex\nbitmap -983\n"
                                     "uvw_transform 0.000000,3.000000,0.000000,0.000000,0.000000,0.000000,"
                                     "0.000000,0.000000,0.000000,0.000000,0.000000,0.000000\n");
}

TEST_F(PlusMinusAverageGpuTest, DifferencesNegateTheSumOfTheOthers)
{
    const std::string tail = "color -1.000000 0.000000 -1.000000 -1.000000\n"
                             "subtex\nbitmap -998\nsubtex\nbitmap -983\n";
    EXPECT_EQ(colors(2, 2).answer, 1);
    EXPECT_EQ(colors(2, 2).text, slotA + slotB + tail);
    EXPECT_EQ(colors(2, 4).text,
              slotA + slotB + slotC + slotD + "bitmap -983\nsubtex\nbitmap -983\nsubtex\n" + tail);
}

TEST_F(PlusMinusAverageGpuTest, FloatsEndAsAFloat)
{
    const std::string slots = sourceLine("floatA") + "subtex\n" + sourceLine("floatB") + "subtex\n";
    EXPECT_EQ(floats(1, {&floatA, &floatB}).text,
              slots + "bitmap -983\n" + kPlainOperands + "subtex\nbitmap -973\n");
    EXPECT_EQ(floats(2, {&floatA, &floatB}).text,
              slots + "color -1.000000 0.000000 -1.000000 -1.000000\n"
                      "subtex\nbitmap -998\nsubtex\nbitmap -983\nsubtex\nbitmap -973\n");
}

TEST_F(PlusMinusAverageGpuTest, OtherOperationsWriteNothingAndAnswer)
{
    for (int operation : {4, -1}) {
        EXPECT_EQ(colors(operation, 2).answer, 1);
        EXPECT_EQ(colors(operation, 2).text, "");
        EXPECT_EQ(floats(operation, {&floatA, &floatB}).answer, 1);
        EXPECT_EQ(floats(operation, {&floatA, &floatB}).text, "subtex\nbitmap -973\n");
    }
}

TEST_F(PlusMinusAverageGpuTest, InputsWithoutSourceLeaveTheirSlotsEmpty)
{
    colorB.hasSource = false;
    EXPECT_EQ(colors(1, 2).text, slotA + "subtex\nbitmap -983\n" + kPlainOperands);
    // A colour adds nothing to the floats, here as when evaluating.
    EXPECT_EQ(floats(1, {&colorA, &floatA}).text, "subtex\n" + sourceLine("floatA") +
                                                      "subtex\nbitmap -983\n" + kPlainOperands +
                                                      "subtex\nbitmap -973\n");
}

TEST_F(PlusMinusAverageGpuTest, ThePluginWritesItsThirdList)
{
    connectList(node, "input2D", {&colorB});
    EXPECT_EQ(colors(1, 1).text, sourceLine("colorA"));
    OUtils::PluginBase* output = ombrix::boundOutput(*node.life()->paramList, "output2D")->getPlugin();
    EXPECT_EQ(sourceOf(interfaceOf<OUtils::RTTexInterface>(output, OUtils::EXT_RTTEX)).text,
              sourceLine("colorB"));
}

TEST_F(PlusMinusAverageGpuTest, ItsOutputsRefuseOtherDescriptors)
{
    connectList(node, "input1D", {&floatA});
    OUtils::PluginBase* output = ombrix::boundOutput(*node.life()->paramList, "output1D")->getPlugin();
    const WrittenSource written =
        sourceOf(interfaceOf<OUtils::RTTexInterface>(output, OUtils::EXT_RTTEX), "Material");
    EXPECT_EQ(written.answer, 0);
    EXPECT_EQ(written.text, "");
}

} // namespace
