// Nodes: their data, who owns them, and how they compare.

#include "textures/expr/lisp_parser.h"
#include "textures/expr/node.h"
#include "textures/expr/visitor.h"

#include "expr_support.h"

#include <climits>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

// The first form of a text that has no faults.
class Form {
public:
    explicit Form(const char* text) : parser(text) {}
    const Node& node() { return *static_cast<BeginNode*>(parser.getRoot())->getChildren().at(0); }
    const Node& root() { return *parser.getRoot(); }

private:
    LispParser parser;
};

std::int32_t compared(const char* left, const char* right)
{
    Form leftForm(left), rightForm(right);
    return leftForm.node().compare(rightForm.node());
}

TEST(Node, TypesAreNumbered)
{
    EXPECT_EQ(Form("(f)").root().getType(), 1);
    EXPECT_EQ(Form("5").node().getType(), 2);
    EXPECT_EQ(Form("(f)").node().getType(), 3);
    EXPECT_EQ(Form("'()").node().getType(), 4);
    EXPECT_EQ(Form("x").node().getType(), 5);
}

TEST(Node, AcceptCallsTheOperationOfItsClass)
{
    struct Teller : Visitor {
        void visitSymbol(SymbolNode& node) override { told += "symbol " + textOf(node) + "\n"; }
        void visitList(ListNode& node) override { told += "list " + textOf(node) + "\n"; }
        void visitFunction(FunctionNode& node) override { told += "function " + textOf(node) + "\n"; }
        void visitLiteral(FloatingLiteralNode& node) override { told += "literal " + textOf(node) + "\n"; }
        std::string told;
    } teller;
    LispParser("x '(1) (f y) 2").getRoot()->accept(teller);
    EXPECT_EQ(teller.told, "symbol x\nlist [List 1]\nfunction [Func f y]\nliteral 2\n");
}

TEST(Node, AVisitorGoesNoFurtherThanTheFormsUnlessToldTo)
{
    struct Teller : Visitor {
        void visitSymbol(SymbolNode& node) override { told += textOf(node) + "\n"; }
        std::string told;
    } teller;
    LispParser("x '(inList) (f inCall) 2 y").getRoot()->accept(teller);
    EXPECT_EQ(teller.told, "x\ny\n");
}

TEST(Node, GetArgOutsideTheArgumentsIsNull)
{
    Form form("(f a b)");
    const auto& function = static_cast<const FunctionNode&>(form.node());
    EXPECT_EQ(textOf(*function.getArg(0)), "a");
    EXPECT_EQ(textOf(*function.getArg(1)), "b");
    EXPECT_EQ(function.getArg(2), nullptr);
    EXPECT_EQ(function.getArg(INT_MAX), nullptr);
    EXPECT_EQ(function.getArg(-1), nullptr);
    EXPECT_EQ(function.getArg(INT_MIN), nullptr);
}

template <class... NodeClass>
NodeVector nodes(std::unique_ptr<NodeClass>... node)
{
    NodeVector vector;
    (vector.push_back(std::move(node)), ...);
    return vector;
}

class TracedSymbol : public SymbolNode {
public:
    TracedSymbol(const char* word, std::vector<std::string>& deleted) : SymbolNode(word), log(deleted) {}
    ~TracedSymbol() override { log.push_back(textOf(*this)); }

private:
    std::vector<std::string>& log;
};

TEST(Node, DeletesAllBelowItOnceAndInOrder)
{
    std::vector<std::string> deleted;
    const auto symbol = [&](const char* name) { return std::make_unique<TracedSymbol>(name, deleted); };
    {
        auto call = std::make_unique<FunctionNode>("f", nodes(symbol("b"), symbol("c")));
        auto emptyList = std::make_unique<ListNode>(NodeVector{});
        auto list = std::make_unique<ListNode>(nodes(symbol("d"), std::move(emptyList), symbol("e")));
        const BeginNode root(nodes(symbol("a"), std::move(call), std::move(list), symbol("g")));
        EXPECT_EQ(textOf(root), "[Begin a, [Func f b, c], [List d, [List ], e], g]");
        EXPECT_EQ(deleted, std::vector<std::string>{});
    }
    EXPECT_EQ(deleted, (std::vector<std::string>{"a", "b", "c", "d", "e", "g"}));
}

TEST(Compare, LiteralsByValue)
{
    EXPECT_EQ(compared("1", "2"), -1);
    EXPECT_EQ(compared("2", "2"), 0);
    EXPECT_EQ(compared("2", "1"), 1);
    const FloatingLiteralNode nan(std::numeric_limits<float>::quiet_NaN());
    const FloatingLiteralNode one(1.0f);
    EXPECT_EQ(nan.compare(one), 1);
    EXPECT_EQ(one.compare(nan), 1);
    EXPECT_EQ(nan.compare(nan), 1);
}

TEST(Compare, SymbolsByBytesAndThenByLength)
{
    EXPECT_EQ(compared("a", "b"), -1);
    EXPECT_EQ(compared("b", "a"), 1);
    EXPECT_EQ(compared("abc", "abc"), 0);
    EXPECT_EQ(compared("ab", "abcde"), -1);
    EXPECT_EQ(compared("abcde", "ab"), 1);
    EXPECT_EQ(compared("b", "abc"), 1);
    EXPECT_EQ(compared("a", "\xc3\xa4"), -1); // bytes are not signed
}

TEST(Compare, ListsPairByPairAndThenByCount)
{
    EXPECT_EQ(compared("'(1 2)", "'(1 2)"), 0);
    EXPECT_EQ(compared("'(1 2)", "'(1 3 0 0)"), -1);
    EXPECT_EQ(compared("'(1 2 9 9 9)", "'(1 2)"), 3);
    EXPECT_EQ(compared("'()", "'(a b)"), -2);
    EXPECT_EQ(compared("'('(1 2) 5)", "'('(1) 9)"), 1);
    EXPECT_EQ(compared("'('(1) 5)", "'('(1) 9)"), -1);
    EXPECT_EQ(compared("'('(1) 5)", "'('(1 2 3) 0)"), -2);
}

TEST(Compare, WholeTextsAsLists)
{
    EXPECT_EQ(Form("a b").root().compare(Form("a b").root()), 0);
    EXPECT_EQ(Form("a b c").root().compare(Form("a").root()), 2);
}

TEST(Compare, FunctionsByTheirArgumentsAlone)
{
    EXPECT_EQ(compared("(+ 1 2)", "(* 1 2)"), 0);
    EXPECT_EQ(compared("(+ 1 2)", "(* 1 3)"), -1);
    EXPECT_EQ(compared("(+ 1 2 3)", "(* 1 2)"), 1);
    EXPECT_EQ(compared("'((f 1))", "'((g 1))"), 0);
}

TEST(Compare, ThrowsForDifferentTypes)
{
    const struct {
        const char* left;
        const char* right;
    } rows[] = {
        {"1", "a"}, {"'(1)", "(f 1)"}, {"'(1 a)", "'(1 2)"}, {"(f (g))", "(f '())"}, {"'(x)", "'('())"}};
    for (const auto& row : rows) {
        Form left(row.left), right(row.right);
        const std::string leftText = textOf(left.node()), rightText = textOf(right.node());
        try {
            left.node().compare(right.node());
            ADD_FAILURE() << row.left << " and " << row.right;
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "Unable to compare nodes of different types");
        }
        EXPECT_EQ(textOf(left.node()), leftText);
        EXPECT_EQ(textOf(right.node()), rightText);
    }
}

TEST(Compare, ThrowsForABeginAndAList)
{
    const BeginNode begin{NodeVector{}};
    const ListNode list{NodeVector{}};
    EXPECT_THROW(begin.compare(list), std::invalid_argument);
    EXPECT_THROW(list.compare(begin), std::invalid_argument);
}

TEST(Compare, AnEarlierDifferenceComesBeforeADifferentType)
{
    EXPECT_EQ(compared("'(1 a)", "'(2 3)"), -1);
}

} // namespace
