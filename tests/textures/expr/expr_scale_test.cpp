// Depth and length: deep trees cost no stack, and long ones no more than their length.

#include "textures/expr/gpu_expr_prepare.h"
#include "textures/expr/gpu_source_helper.h"
#include "textures/expr/mirror_visitor.h"
#include "textures/expr/parser.h"

#include "gpu_expr_support.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <memory>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

constexpr std::size_t kDepth = 100000;

std::string deepCall(const char* opening, std::size_t depth)
{
    return repeated(opening, depth) + "1" + repeated(")", depth);
}

std::string writtenBy(const std::string& text, support::TextKind kind = support::TextKind::Understood)
{
    support::TextSink sink(kind);
    support::NoData data;
    nezaiva::GPUSourceHelper helper("theName", "theTag", "MaterialDescriptor", sink, data);
    helper.evaluate(text);
    return sink.text;
}

TEST(DeepNesting, CallsParsePrintCompareCopyCountAndEnd)
{
    const std::string text = deepCall("(f ", kDepth);
    std::string printed;
    std::int32_t order = -1, count = -1;
    onSmallStack([&] {
        LispParser parser(text);
        MirrorVisitor visitor;
        const std::unique_ptr<Node> copy(visitor.mirror(*parser.getRoot()));
        printed = textOf(*copy);
        order = copy->compare(*parser.getRoot());
        SymbolCounterVisitor counter;
        copy->accept(counter);
        count = counter.getCount("1");
    });
    EXPECT_EQ(printed, "[Begin " + repeated("[Func f ", kDepth) + "1" + repeated("]", kDepth + 1));
    EXPECT_EQ(order, 0);
    EXPECT_EQ(count, 0);
}

TEST(DeepNesting, ListsParsePrintCompareCopyCountAndEnd)
{
    const std::string text = repeated("'(x ", kDepth) + repeated(")", kDepth);
    std::string printed;
    std::int32_t order = -1, count = 0;
    onSmallStack([&] {
        LispParser parser(text);
        VisitorChain chain;
        const std::unique_ptr<Node> copy(chain.run(parser.getRoot()));
        printed = textOf(*copy);
        order = copy->compare(*parser.getRoot());
        SymbolCounterVisitor counter;
        copy->accept(counter);
        count = counter.getCount("x");
    });
    EXPECT_EQ(printed, "[Begin " + repeated("[List x, ", kDepth - 1) + "[List x" + repeated("]", kDepth + 1));
    EXPECT_EQ(order, 0);
    EXPECT_EQ(count, static_cast<std::int32_t>(kDepth));
}

TEST(DeepNesting, BracketsAloneFailWithoutHarm)
{
    std::string errors;
    const std::string text = repeated("(", kDepth);
    onSmallStack([&] {
        errors = errorsOf([&] {
            LispParser parser(text);
            EXPECT_EQ(textOf(*parser.getRoot()), "[Begin ]");
        });
    });
    // Every other bracket is a name, but the last one is left over: the form before it cannot start.
    EXPECT_EQ(errors, repeated("[ERR] Unable to parse expression: (\n", kDepth / 2));
}

TEST(DeepNesting, UnclosedFormsFailWithoutHarm)
{
    std::string errors;
    const std::string text = repeated("(f (g x) ", kDepth);
    onSmallStack([&] {
        errors = errorsOf([&] {
            LispParser parser(text);
            EXPECT_EQ(textOf(*parser.getRoot()), "[Begin ]");
        });
    });
    EXPECT_EQ(errors,
              "[ERR] Expected ')', got:\n" + repeated("[ERR] Unable to parse expression:\n", kDepth - 1));
}

TEST(DeepNesting, CallsAreWritten)
{
    std::string written;
    const std::string text = deepCall("(abs ", kDepth);
    onSmallStack([&] { written = writtenBy(text); });
    EXPECT_EQ(written, gray("1.000000") + repeated(kNext + op(-944), kDepth));
}

TEST(DeepNesting, ManipsAreWritten)
{
    std::string written;
    const std::string text = repeated("(manip ", kDepth) + "1" + repeated(" 2)", kDepth);
    onSmallStack([&] { written = writtenBy(text); });
    EXPECT_EQ(written, gray("1.000000") + repeated(kNext + gray("2.000000") + kNext + op(-935), kDepth));
}

TEST(DeepNesting, KnownConditionsFold)
{
    std::string written;
    const std::string text = repeated("(if 1 ", kDepth) + "5" + repeated(" 2)", kDepth);
    onSmallStack([&] { written = writtenBy(text); });
    EXPECT_EQ(written, gray("5.000000"));
}

TEST(DeepNesting, UnknownConditionsAreWritten)
{
    std::string written;
    const std::string text = repeated("(if (abs 3) ", kDepth) + "1" + repeated(" 2)", kDepth);
    onSmallStack([&] { written = writtenBy(text); });
    EXPECT_EQ(written, repeated(gray("3.000000") + kNext + op(-944) + kNext, kDepth) + gray("1.000000") +
                           repeated(kNext + gray("2.000000") + kNext + op(-948), kDepth));
}

TEST(DeepNesting, OfUnlikeTreesComparesAsFarAsTheyAgree)
{
    onSmallStack([&] {
        LispParser left(repeated("'(", kDepth) + "1" + repeated(")", kDepth));
        LispParser right(repeated("'(", kDepth) + "2" + repeated(")", kDepth));
        EXPECT_EQ(left.getRoot()->compare(*right.getRoot()), -1);
        EXPECT_EQ(right.getRoot()->compare(*left.getRoot()), 1);
    });
}

// Of the processor, so that other programs do not count.
double secondsOf(const std::function<void()>& work)
{
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        const std::clock_t start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

// Sixteen times the text takes about sixteen times as long, and up to four times that where the shorter
// one fits the caches; a quadratic step would take 256 times as long.
void expectLinear(const std::function<std::string(std::size_t)>& text,
                  const std::function<void(const std::string&)>& work)
{
    const std::string shorter = text(5000), longer = text(80000);
    const double shortTime = secondsOf([&] { work(shorter); });
    const double longTime = secondsOf([&] { work(longer); });
    EXPECT_LT(longTime, shortTime * 16.0 * 4.0 + 0.01);
}

void write(const std::string& text)
{
    writtenBy(text);
}

void walkAll(const std::string& text)
{
    LispParser parser(text);
    MirrorVisitor visitor;
    const std::unique_ptr<Node> copy(visitor.mirror(*parser.getRoot()));
    EXPECT_EQ(copy->compare(*parser.getRoot()), 0);
    EXPECT_FALSE(copy->toString().empty());
}

TEST(LinearTime, OfDeepTexts)
{
    expectLinear([](std::size_t size) { return deepCall("(f ", size); }, walkAll);
    expectLinear([](std::size_t size) { return deepCall("(abs ", size); }, write);
    expectLinear([](std::size_t size) { return repeated("(if 1 ", size) + "5" + repeated(" 2)", size); },
                 write);
}

TEST(LinearTime, OfWideTexts)
{
    expectLinear([](std::size_t size) { return "(f " + repeated("(g x) ", size) + ")"; }, walkAll);
    expectLinear([](std::size_t size) { return repeated("x ", size); }, walkAll);
    // No consumer takes that many arguments.
    expectLinear([](std::size_t size) { return "(+ " + repeated("(abs x) ", size) + ")"; },
                 [](const std::string& text) { writtenBy(text, support::TextKind::Broken); });
    expectLinear([](std::size_t size) { return repeated("0.25 ", size); }, write);
}

TEST(LinearTime, OfFaultyTexts)
{
    const auto parse = [](const std::string& text) { errorsOf([&] { LispParser(text).getRoot(); }); };
    expectLinear([](std::size_t size) { return repeated("(f (g x) ", size); }, parse);
    expectLinear([](std::size_t size) { return repeated("'(", size); }, parse);
    expectLinear([](std::size_t size) { return repeated("(f x) ", size) + "("; }, parse);
}

} // namespace
