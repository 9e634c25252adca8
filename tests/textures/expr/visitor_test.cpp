// Counting, copying and rewriting trees.

#include "textures/expr/lisp_parser.h"
#include "textures/expr/mirror_visitor.h"

#include "expr_support.h"

#include <memory>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

std::string rewritten(VisitorChain& chain, const char* text)
{
    LispParser parser(text);
    const std::unique_ptr<Node> tree = chain.run(parser.getRoot());
    return textOf(*tree);
}

TEST(SymbolCounter, CountsSymbolsEverywhereButNotNamesOfFunctions)
{
    SymbolCounterVisitor counter;
    LispParser parser("a (f a '(a b (g b))) f 1");
    parser.getRoot()->accept(counter);
    EXPECT_EQ(counter.getCount("a"), 3);
    EXPECT_EQ(counter.getCount("b"), 2);
    EXPECT_EQ(counter.getCount("f"), 1);
    EXPECT_EQ(counter.getCount("g"), 0);
    EXPECT_EQ(counter.getCount("1"), 0);
}

TEST(SymbolCounter, AddsUpOverTrees)
{
    SymbolCounterVisitor counter;
    LispParser first("a b"), second("(f a)");
    first.getRoot()->accept(counter);
    second.getRoot()->accept(counter);
    EXPECT_EQ(counter.getCount("a"), 2);
    EXPECT_EQ(counter.getCount("b"), 1);
}

TEST(MirrorVisitor, CopiesEveryKindOfNode)
{
    LispParser parser("x 1.5 '(1 '() y) (f (g) z)");
    MirrorVisitor visitor;
    const std::unique_ptr<Node> copy = visitor.mirror(*parser.getRoot());
    EXPECT_EQ(textOf(*copy), "[Begin x, 1.5, [List 1, [List ], y], [Func f [Func g ], z]]");
    EXPECT_EQ(copy->compare(*parser.getRoot()), 0);
    const auto& original = *static_cast<BeginNode*>(parser.getRoot());
    const auto& copied = static_cast<const BeginNode&>(*copy);
    for (std::size_t i = 0; i < original.getChildren().size(); ++i)
        EXPECT_NE(copied.getChildren()[i], original.getChildren()[i]);
}

TEST(MirrorVisitor, KeepsItsLastResultOnTop)
{
    MirrorVisitor visitor;
    EXPECT_EQ(visitor.getResult(), nullptr);
    SymbolNode symbol("x");
    EXPECT_EQ(textOf(*visitor.mirror(symbol)), "x");
    EXPECT_EQ(visitor.getResult(), nullptr); // mirror takes its own level away
    symbol.accept(visitor);
    EXPECT_EQ(textOf(*visitor.getResult()), "x");
    visitor.setResult(std::make_unique<SymbolNode>("y"));
    EXPECT_EQ(textOf(*visitor.getResult()), "y");
    EXPECT_EQ(textOf(*visitor.takeResult()), "y");
    EXPECT_EQ(visitor.getResult(), nullptr);
}

// Replaces a symbol, falls through elsewhere, and calls mirror from within.
class Doubler : public MirrorVisitor {
public:
    void visitSymbol(SymbolNode& node) override
    {
        if (node.getName() == "one") {
            setResult(std::make_unique<FloatingLiteralNode>(1.0f));
            return;
        }
        MirrorVisitor::visitSymbol(node);
    }
    void visitFunction(FunctionNode& node) override
    {
        if (node.getName() != "twice") {
            MirrorVisitor::visitFunction(node);
            return;
        }
        NodeVector copies;
        copies.push_back(mirror(*node.getArg(0)));
        copies.push_back(mirror(*node.getArg(0)));
        setResult(std::make_unique<ListNode>(std::move(copies)));
    }
};

TEST(MirrorVisitor, ASubclassRewritesWhatItOverrides)
{
    VisitorChain chain;
    chain.addVisitor(std::make_unique<Doubler>());
    EXPECT_EQ(rewritten(chain, "(f one 'x (g one))"), "[Begin [Func f 1, x, [Func g 1]]]");
}

TEST(MirrorVisitor, MirrorMayBeCalledFromWithin)
{
    VisitorChain chain;
    chain.addVisitor(std::make_unique<Doubler>());
    EXPECT_EQ(rewritten(chain, "(f a (twice (g one (twice b))) c)"),
              "[Begin [Func f a, [List [Func g 1, [List b, b]], [Func g 1, [List b, b]]], c]]");
}

TEST(VisitorChain, OfANullRootGivesNull)
{
    VisitorChain chain;
    EXPECT_EQ(chain.run(nullptr), nullptr);
}

TEST(VisitorChain, WithoutVisitorsCopies)
{
    LispParser parser("(f x)");
    VisitorChain chain;
    const std::unique_ptr<Node> copy = chain.run(parser.getRoot());
    EXPECT_NE(copy.get(), parser.getRoot());
    EXPECT_EQ(textOf(*copy), "[Begin [Func f x]]");
}

class Renamer : public MirrorVisitor {
public:
    Renamer(const char* oldName, const char* newName) : from(oldName), to(newName) {}
    void visitSymbol(SymbolNode& node) override
    {
        setResult(std::make_unique<SymbolNode>(node.getName() == from ? to : node.getName()));
    }

private:
    HostString from, to;
};

TEST(VisitorChain, RunsItsVisitorsInOrder)
{
    VisitorChain chain;
    chain.addVisitor(std::make_unique<Renamer>("a", "b"));
    chain.addVisitor(std::make_unique<Renamer>("b", "c"));
    EXPECT_EQ(rewritten(chain, "(f a b)"), "[Begin [Func f c, c]]");
}

TEST(VisitorChain, LeavesTheRootAndRunsAgain)
{
    LispParser parser("(f a)");
    VisitorChain chain;
    chain.addVisitor(std::make_unique<Renamer>("a", "b"));
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<Node> copy = chain.run(parser.getRoot());
        EXPECT_EQ(textOf(*copy), "[Begin [Func f b]]");
        EXPECT_EQ(textOf(*parser.getRoot()), "[Begin [Func f a]]");
    }
}

TEST(VisitorChain, OutlivesTheParser)
{
    std::unique_ptr<Node> copy;
    {
        LispParser parser("(f a)");
        VisitorChain chain;
        copy = chain.run(parser.getRoot());
    }
    EXPECT_EQ(textOf(*copy), "[Begin [Func f a]]");
}

} // namespace
