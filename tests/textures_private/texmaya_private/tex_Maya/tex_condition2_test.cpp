#include "arithmetic_test.h"

namespace {

using namespace support;
using OUtils::AColor;

constexpr AColor kTrue{0.1f, 0.2f, 0.3f, 0.4f};
constexpr AColor kFalse{0.5f, 0.6f, 0.7f, 0.8f};

struct Condition2Test : testing::Test {
    Condition2Test()
    {
        ifTrue.value = kTrue;
        ifFalse.value = kFalse;
    }
    void connectAll()
    {
        node.connect("first_term", first).connect("second_term", second);
        node.connect("color_if_true", ifTrue).connect("color_if_false", ifFalse);
    }
    bool holds(float a, float b, int operation)
    {
        first.value = a;
        second.value = b;
        node.set("operation", operation);
        const AColor color = node.color();
        EXPECT_TRUE(color.r == kTrue.r || color.r == kFalse.r);
        return color.r == kTrue.r;
    }

    CallLog log;
    TestFloat first{"first_term", &log}, second{"second_term", &log};
    TestColor ifTrue{"color_if_true", &log}, ifFalse{"color_if_false", &log};
    TestNode node{descriptor("TexCondition2")};
};

TEST_F(Condition2Test, NothingConnectedComparesZeroWithZero)
{
    constexpr AColor kBlack{0.0f, 0.0f, 0.0f, 1.0f}, kWhite{1.0f, 1.0f, 1.0f, 1.0f};
    const AColor expected[] = {kBlack, kWhite, kWhite, kBlack, kWhite, kBlack};
    EXPECT_SAME_COLOR(node.color(), kBlack);
    for (int operation = 0; operation < 6; ++operation) {
        node.set("operation", operation);
        EXPECT_SAME_COLOR(node.color(), expected[operation]);
    }
}

TEST_F(Condition2Test, ComparesWithEachOperation)
{
    connectAll();
    // Rows: below, equal, above. Columns: the operations.
    const bool expected[3][6] = {{false, true, false, false, true, true},
                                 {true, false, false, true, false, true},
                                 {false, true, true, true, false, false}};
    const float terms[3][2] = {{1.0f, 2.0f}, {2.0f, 2.0f}, {3.0f, 2.0f}};
    for (int row = 0; row < 3; ++row)
        for (int operation = 0; operation < 6; ++operation)
            EXPECT_EQ(holds(terms[row][0], terms[row][1], operation), expected[row][operation])
                << row << ", " << operation;
}

TEST_F(Condition2Test, TermsWithinTheToleranceCountAsEqual)
{
    connectAll();
    EXPECT_TRUE(holds(0.9999999f, 1.0f, 3));
    const bool expected[] = {true, false, false, true, false, true};
    for (int operation = 0; operation < 6; ++operation) {
        EXPECT_EQ(holds(0.5e-6f, 0.0f, operation), expected[operation]) << operation;
        EXPECT_EQ(holds(-0.5e-6f, 0.0f, operation), expected[operation]) << operation;
    }
    EXPECT_FALSE(holds(2e-6f, 0.0f, 0));
    EXPECT_TRUE(holds(2e-6f, 0.0f, 2));
    EXPECT_TRUE(holds(-2e-6f, 0.0f, 4));
}

TEST_F(Condition2Test, OtherOperationsNeverHold)
{
    connectAll();
    for (int operation : {6, -1, 1000})
        for (float a : {0.0f, 1.0f, 2.0f})
            EXPECT_FALSE(holds(a, 1.0f, operation)) << operation;
}

TEST_F(Condition2Test, NothingHoldsForNaN)
{
    connectAll();
    for (int operation = 0; operation < 6; ++operation) {
        EXPECT_FALSE(holds(kNaN, 1.0f, operation)) << operation;
        EXPECT_FALSE(holds(1.0f, kNaN, operation)) << operation;
    }
}

TEST_F(Condition2Test, EvaluatesTheChosenColorOnly)
{
    connectAll();
    node.color();
    EXPECT_EQ(log, (CallLog{"first_term.evalFloat", "second_term.evalFloat", "color_if_true.evalColor"}));
    log.clear();
    first.value = 1.0f;
    EXPECT_SAME_COLOR(node.color(), kFalse);
    EXPECT_EQ(log, (CallLog{"first_term.evalFloat", "second_term.evalFloat", "color_if_false.evalColor"}));
}

TEST_F(Condition2Test, FallsBackOnEachUnsetColor)
{
    first.value = 5.0f;
    node.connect("first_term", first).connect("color_if_true", ifTrue);
    EXPECT_SAME_COLOR(node.color(), {1.0f, 1.0f, 1.0f, 1.0f});
    first.value = 0.0f;
    EXPECT_SAME_COLOR(node.color(), kTrue);
}

TEST_F(Condition2Test, BoundsHoldBothColorsWhateverTheCondition)
{
    ColorBounds bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 1.0f, 1.0f, 1.0f});
    connectAll();
    ifTrue.lowerBound = {-1.0f, 0.5f, 0.0f, 0.25f};
    ifTrue.upperBound = {1.0f, 2.0f, 0.0f, 0.5f};
    ifFalse.lowerBound = {0.0f, 0.0f, 3.0f, 0.5f};
    ifFalse.upperBound = {0.5f, 3.0f, 4.0f, 0.75f};
    bounds = colorBounds(node);
    EXPECT_SAME_COLOR(bounds.lower, {-1.0f, 0.0f, 0.0f, 0.25f});
    EXPECT_SAME_COLOR(bounds.upper, {1.0f, 3.0f, 4.0f, 0.75f});
}

TEST_F(Condition2Test, GradientIsZero)
{
    connectAll();
    expectZeroGradient(node);
}

TEST_F(Condition2Test, WritesItsFourSlotsAndTheMappedOperation)
{
    connectAll();
    const std::string slots = sourceLine("first_term") + "subtex\n" + sourceLine("second_term") + "subtex\n" +
                              sourceLine("color_if_true") + "subtex\n" + sourceLine("color_if_false") +
                              "subtex\nbitmap -947\nuvw_transform ";
    const struct {
        int operation;
        const char* mapped;
    } rows[] = {{0, "0.000000"}, {1, "1.000000"}, {2, "3.000000"}, {3, "5.000000"},
                {4, "2.000000"}, {5, "4.000000"}, {6, "0.000000"}, {-1, "0.000000"}};
    for (const auto& row : rows) {
        node.set("operation", row.operation);
        const WrittenSource written = sourceOf(node.rtTexture());
        EXPECT_EQ(written.answer, 1);
        EXPECT_EQ(written.text, slots + row.mapped +
                                    ",1.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,"
                                    "0.000000,0.000000,0.000000,0.000000\n");
    }
}

TEST_F(Condition2Test, LeavesTheSlotsOfInputsWithoutSourceEmpty)
{
    ifFalse.hasSource = false;
    node.connect("color_if_false", ifFalse).connect("second_term", second);
    const WrittenSource written = sourceOf(node.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, "subtex\n" + sourceLine("second_term") +
                                "subtex\nsubtex\nsubtex\nbitmap -947\n"
                                "uvw_transform 0.000000,1.000000,0.000000,0.000000,0.000000,0.000000,"
                                "0.000000,0.000000,0.000000,0.000000,0.000000,0.000000\n");
}

} // namespace
