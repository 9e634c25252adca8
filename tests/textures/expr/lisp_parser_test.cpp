// The text form: each row is a text, the tree it gives as printed, and the lines it brings to standard
// error. The trees and lines are written by hand from the grammar.

#include "textures/expr/lisp_parser.h"

#include "expr_reprint.h"
#include "expr_support.h"

#include <ostream>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

struct Row {
    const char* behaviour;
    std::string source;
    std::string tree;
    std::string errors;
};

void PrintTo(const Row& row, std::ostream* stream)
{
    *stream << row.source;
}

const Row kGoodRows[] = {
    {"EmptyTextHasNoForms", "", "[Begin ]", ""},
    {"BlanksHaveNoForms", "  \t\n\v\f\r ", "[Begin ]", ""},
    {"ATopLevelCallIsAFunction", "(+ a 1)", "[Begin [Func + a, 1]]", ""},
    {"ACallMayHaveNoArguments", "(a)", "[Begin [Func a ]]", ""},
    {"AnEmptyListIsLegal", "'()", "[Begin [List ]]", ""},
    {"AListHoldsItsElements", "'(1 a (f 2) '(3))", "[Begin [List 1, a, [Func f 2], [List 3]]]", ""},
    {"AListMayBeginWithABracketedForm", "'((a) b)", "[Begin [List [Func a ], b]]", ""},
    {"ABracketMayBeAName", "((a))", "[Begin [Func ( a], )]", ""},
    {"AClosingBracketMayBeAName", "() a)", "[Begin [Func ) a]]", ""},
    {"AQuoteMayBeAName", "(' a)", "[Begin [Func ' a]]", ""},
    {"ANumberMayBeAName", "(1 2)", "[Begin [Func 1 2]]", ""},
    {"AStrayClosingBracketIsASymbol", ") a )", "[Begin ), a, )]", ""},
    {"AQuoteBeforeASymbolHasNoEffect", "'x", "[Begin x]", ""},
    {"AQuoteBeforeALiteralHasNoEffect", "'5", "[Begin 5]", ""},
    {"AQuotedClosingBracketIsASymbol", "(a ') b)", "[Begin [Func a ), b]]", ""},
    {"OfTwoQuotesTheSecondIsASymbol", "''x", "[Begin ', x]", ""},
    {"AQuoteInsideAWordBelongsToIt", "a'b", "[Begin a'b]", ""},
    {"ATabInsideAWordBelongsToIt", "a\tb", "[Begin a\tb]", ""},
    {"ALineEndInsideAWordBelongsToIt", "a\nb", "[Begin a\nb]", ""},
    {"ATabBeforeAWordIsSkipped", "\ta \tb", "[Begin a, b]", ""},
    {"ATabAfterAWordBelongsToIt", "(f a\t)", "[Begin [Func f a\t]]", ""},
    {"DoubleBlanksHaveNoEffect", "(manip hsv1 satGain  0 * 0 0)",
     "[Begin [Func manip hsv1, satGain, 0, *, 0, 0]]", ""},
    {"BracketsEndAWord", "(f(g a)b)", "[Begin [Func f [Func g a], b]]", ""},
    {"ADigitAfterAMinusMakesALiteral", "-5", "[Begin -5]", ""},
    {"AMinusAloneIsASymbol", "-", "[Begin -]", ""},
    {"AMinusMayBeAName", "(- 5)", "[Begin [Func - 5]]", ""},
    {"OperatorsAreSymbols", "- + * /", "[Begin -, +, *, /]", ""},
    {"ALiteralIsWhatItsWordBeginsWith", "2x", "[Begin 2]", ""},
    {"ALeadingPointMakesASymbol", ".5", "[Begin .5]", ""},
    {"ALeadingPlusMakesASymbol", "+1", "[Begin +1]", ""},
    {"AMinusAndAPointMakeASymbol", "-.5", "[Begin -.5]", ""},
    {"TwoMinusesMakeASymbol", "--1", "[Begin --1]", ""},
    {"ATrailingPointBelongsToTheLiteral", "5.", "[Begin 5]", ""},
    {"ACommaEndsALiteral", "2,5", "[Begin 2]", ""},
    {"SeveralFormsStandInOrder", "a (f) 1", "[Begin a, [Func f ], 1]", ""},
    {"BytesAbove127BelongToWords", "\xc3\xa4\xa0 \xff", "[Begin \xc3\xa4\xa0, \xff]", ""},
    {"TheTextEndsAtItsFirstNul", std::string("a\0b", 3), "[Begin a]", ""},
    {"APluginsTextParses", "(if preserveColor inColor (+ (* inColor (- 1 alpha)) (* mask alpha)))",
     "[Begin [Func if preserveColor, inColor, [Func + [Func * inColor, [Func - 1, alpha]], "
     "[Func * mask, alpha]]]]",
     ""},
};

const Row kBadRows[] = {
    {"ALoneBracketCannotStart", "(", "[Begin ]", "[ERR] Unable to parse expression:\n"},
    {"ABracketAndAWordCannotStart", "(a", "[Begin ]", "[ERR] Unable to parse expression: a\n"},
    {"AnEmptyCallCannotStart", "()", "[Begin ]", "[ERR] Unable to parse expression: )\n"},
    {"WhatCameBeforeSurvives", "a (b) (", "[Begin a, [Func b ]]", "[ERR] Unable to parse expression:\n"},
    {"AnUnclosedCallEndsItsLineAfterTheColon", "(a b", "[Begin ]", "[ERR] Expected ')', got:\n"},
    {"AnUnclosedListEndsItsLineAfterTheColon", "'(a", "[Begin ]", "[ERR] Expected ')', got:\n"},
    {"AnUnclosedEmptyList", "'(", "[Begin ]", "[ERR] Expected ')', got:\n"},
    {"EveryEnclosingLevelReports", "x (a (b (c d", "[Begin x]",
     "[ERR] Expected ')', got:\n[ERR] Unable to parse expression:\n[ERR] Unable to parse expression:\n"},
    {"EveryLevelShowsTheSameTokens", "(a (b (c", "[Begin ]",
     "[ERR] Unable to parse expression: c\n[ERR] Unable to parse expression: c\n"
     "[ERR] Unable to parse expression: c\n"},
    {"ListsReportAsCallsDo", "(a '(b (c", "[Begin ]",
     "[ERR] Unable to parse expression: c\n[ERR] Unable to parse expression: c\n"
     "[ERR] Unable to parse expression: c\n"},
    {"ANestedEmptyCallTakesTheRestAlong", "(a ()", "[Begin ]",
     "[ERR] Unable to parse expression: )\n[ERR] Unable to parse expression: )\n"},
    {"ANestedEmptyCallTakesABracketForItsName", "(a () b)", "[Begin ]", "[ERR] Expected ')', got:\n"},
    {"AQuoteAtTheEndIsAnEmptyExpression", "a '", "[Begin a]", ""},
    {"AQuoteAtTheEndOfAFormFailsIt", "(a '", "[Begin ]", "[ERR] Unable to parse expression:\n"},
    {"AQuotedClosingBracketClosesNothing", "(a ')", "[Begin ]", "[ERR] Expected ')', got:\n"},
};

class ExpressionText : public testing::TestWithParam<Row> {};

TEST_P(ExpressionText, GivesTheTreeAndTheMessages)
{
    const Row& row = GetParam();
    std::string tree;
    const std::string errors = errorsOf([&] {
        LispParser parser(row.source);
        tree = textOf(*parser.getRoot());
    });
    EXPECT_EQ(tree, row.tree);
    EXPECT_EQ(errors, row.errors);
}

// What a tree says in text is a text for the same tree.
TEST_P(ExpressionText, ReprintParsesToTheSameTree)
{
    errorsOf([&] {
        LispParser parser(GetParam().source);
        LispParser again(reprint(*parser.getRoot()));
        EXPECT_EQ(textOf(*again.getRoot()), textOf(*parser.getRoot()));
        EXPECT_EQ(again.getRoot()->compare(*parser.getRoot()), 0);
        EXPECT_EQ(reprint(*again.getRoot()), reprint(*parser.getRoot()));
    });
}

std::string behaviourOf(const testing::TestParamInfo<Row>& info)
{
    return info.param.behaviour;
}

INSTANTIATE_TEST_SUITE_P(Good, ExpressionText, testing::ValuesIn(kGoodRows), behaviourOf);
INSTANTIATE_TEST_SUITE_P(Bad, ExpressionText, testing::ValuesIn(kBadRows), behaviourOf);

TEST(Parser, ParsesOnce)
{
    const std::string errors = errorsOf([] {
        LispParser parser("a (");
        const Node* first = parser.getRoot();
        EXPECT_EQ(parser.getRoot(), first);
    });
    EXPECT_EQ(errors, "[ERR] Unable to parse expression:\n");
}

TEST(Parser, ParseTextGivesATreeThatOutlivesItsParser)
{
    std::unique_ptr<Node> tree;
    {
        LispParser parser("ignored");
        tree = parser.parseText("(f x)");
        EXPECT_EQ(textOf(*parser.getRoot()), "[Begin ignored]");
    }
    EXPECT_EQ(textOf(*tree), "[Begin [Func f x]]");
}

TEST(Parser, CopiesItsText)
{
    std::string text = "(f x)";
    LispParser parser(text);
    text.assign(text.size(), '!');
    EXPECT_EQ(textOf(*parser.getRoot()), "[Begin [Func f x]]");
}

} // namespace
