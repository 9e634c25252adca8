// Depth and length: how deep a text may nest, how long a chain of textures may be, and that long texts cost
// no more than their length.

#include "textures/expr/gpu_source_helper.h"
#include "textures/expr/lisp_parser.h"
#include "textures/expr/mirror_visitor.h"

#include "gpu_expr_support.h"
#include "host/gpu/host_gpu.h"
#include "plugin_frame/lib_desc.h"
#include "support/host_doubles.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <memory>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

constexpr std::size_t kDeepest = kDeepestNesting;

std::string writtenBy(const std::string& text, support::TextKind kind = support::TextKind::Understood)
{
    support::TextSink sink(kind);
    support::NoData data;
    nezaiva::GPUSourceHelper helper("theName", "theTag", "MaterialDescriptor", sink, data);
    helper.evaluate(text);
    return sink.text;
}

TEST(DeepestNesting, CallsParsePrintCompareCopyCountAndEnd)
{
    const std::string text = repeated("(f ", kDeepest) + "x" + repeated(")", kDeepest);
    std::string printed;
    std::int32_t order = -1, count = 0;
    onStack(kSmallStack, [&] {
        LispParser parser(text);
        MirrorVisitor visitor;
        const std::unique_ptr<Node> copy = visitor.mirror(*parser.getRoot());
        printed = textOf(*copy);
        order = copy->compare(*parser.getRoot());
        SymbolCounterVisitor counter;
        copy->accept(counter);
        count = counter.getCount("x");
    });
    EXPECT_EQ(printed, "[Begin " + repeated("[Func f ", kDeepest) + "x" + repeated("]", kDeepest + 1));
    EXPECT_EQ(order, 0);
    EXPECT_EQ(count, 1);
}

TEST(DeepestNesting, ListsParsePrintCompareCopyCountAndEnd)
{
    const std::string text = repeated("'(x ", kDeepest) + repeated(")", kDeepest);
    std::string printed;
    std::int32_t order = -1, count = 0;
    onStack(kSmallStack, [&] {
        LispParser parser(text);
        VisitorChain chain;
        const std::unique_ptr<Node> copy = chain.run(parser.getRoot());
        printed = textOf(*copy);
        order = copy->compare(*parser.getRoot());
        SymbolCounterVisitor counter;
        copy->accept(counter);
        count = counter.getCount("x");
    });
    EXPECT_EQ(printed,
              "[Begin " + repeated("[List x, ", kDeepest - 1) + "[List x" + repeated("]", kDeepest + 1));
    EXPECT_EQ(order, 0);
    EXPECT_EQ(count, static_cast<std::int32_t>(kDeepest));
}

TEST(DeepestNesting, CallsAreWritten)
{
    std::string written;
    const std::string text = repeated("(abs ", kDeepest) + "1" + repeated(")", kDeepest);
    onStack(kSmallStack, [&] { written = writtenBy(text); });
    EXPECT_EQ(written, gray("1.000000") + repeated(kNext + op(-944), kDeepest));
}

TEST(DeepestNesting, ManipsAreWritten)
{
    std::string written;
    const std::string text = repeated("(manip ", kDeepest) + "1" + repeated(" 2)", kDeepest);
    onStack(kSmallStack, [&] { written = writtenBy(text); });
    EXPECT_EQ(written, gray("1.000000") + repeated(kNext + gray("2.000000") + kNext + op(-935), kDeepest));
}

TEST(DeepestNesting, KnownConditionsFold)
{
    std::string written;
    const std::string text = repeated("(if 1 ", kDeepest) + "5" + repeated(" 2)", kDeepest);
    onStack(kSmallStack, [&] { written = writtenBy(text); });
    EXPECT_EQ(written, gray("5.000000"));
}

TEST(DeepestNesting, UnknownConditionsAreWritten)
{
    constexpr std::size_t kDepth = kDeepest - 1; // the condition is one deeper
    std::string written;
    const std::string text = repeated("(if (abs 3) ", kDepth) + "1" + repeated(" 2)", kDepth);
    onStack(kSmallStack, [&] { written = writtenBy(text); });
    EXPECT_EQ(written, repeated(gray("3.000000") + kNext + op(-944) + kNext, kDepth) + gray("1.000000") +
                           repeated(kNext + gray("2.000000") + kNext + op(-948), kDepth));
}

TEST(DeepestNesting, OfUnlikeTreesComparesAsFarAsTheyAgree)
{
    onStack(kSmallStack, [] {
        LispParser left(repeated("'(", kDeepest) + "1" + repeated(")", kDeepest));
        LispParser right(repeated("'(", kDeepest) + "2" + repeated(")", kDeepest));
        EXPECT_EQ(left.getRoot()->compare(*right.getRoot()), -1);
        EXPECT_EQ(right.getRoot()->compare(*left.getRoot()), 1);
    });
}

TEST(DeepestNesting, OfFormsSideBySideIsThatOfTheDeepest)
{
    const std::string form = repeated("(f ", kDeepest) + repeated(")", kDeepest) + " ";
    EXPECT_EQ(errorsOf([&] {
                  LispParser parser(repeated(form, 3));
                  EXPECT_EQ(static_cast<BeginNode*>(parser.getRoot())->getChildren().size(), 3u);
              }),
              "");
}

// The lines of a text whose nesting is refused with these tokens left, which are not told again.
std::string refused(const std::string& tokens)
{
    return "[ERR] Expression nested deeper than " + std::to_string(kDeepest) + " forms:" + tokens + "\n" +
           repeated("[ERR] Unable to parse expression:\n", kDeepest);
}

struct Parsed {
    std::string tree;
    std::string errors;
};

Parsed parsed(const std::string& text)
{
    Parsed result;
    result.errors = errorsOf([&] {
        onStack(kSmallStack, [&] {
            LispParser parser(text);
            result.tree = textOf(*parser.getRoot());
        });
    });
    return result;
}

TEST(TooDeepNesting, EndsTheProgramAsOtherFaultsDo)
{
    const std::size_t depth = kDeepest + 1;
    const Parsed calls = parsed("a (b) " + repeated("(f ", depth) + "1" + repeated(")", depth) + " c");
    EXPECT_EQ(calls.tree, "[Begin a, [Func b ]]");
    EXPECT_EQ(calls.errors, refused(" f 1" + repeated(" )", depth) + " c"));
    const Parsed lists = parsed(repeated("'(", depth) + repeated(")", depth));
    EXPECT_EQ(lists.tree, "[Begin ]");
    EXPECT_EQ(lists.errors, refused(repeated(" )", depth)));
}

TEST(TooDeepNesting, OfAnyDepthIsRefusedWithoutHarm)
{
    constexpr std::size_t kDepth = 100000;
    const Parsed unclosed = parsed(repeated("(f (g x) ", kDepth));
    EXPECT_EQ(unclosed.tree, "[Begin ]");
    // The form (g x) after the last one that is taken is itself one too deep.
    EXPECT_EQ(unclosed.errors, refused(" g x )" + repeated(" ( f ( g x )", kDepth - kDeepest)));
    // Every other bracket is a name.
    const Parsed brackets = parsed(repeated("(", kDepth));
    EXPECT_EQ(brackets.tree, "[Begin ]");
    EXPECT_EQ(brackets.errors, refused(repeated(" (", kDepth - 2 * kDeepest - 1)));
}

TEST(TooDeepNesting, WritesWhatCameBefore)
{
    std::string written;
    const std::string errors = errorsOf([&] {
        written = writtenBy("(abs 1) " + repeated("(abs ", kDeepest + 1) + "2" + repeated(")", kDeepest + 1));
    });
    EXPECT_EQ(written, gray("1.000000") + kNext + op(-944));
    EXPECT_EQ(errors, refused(" abs 2" + repeated(" )", kDeepest + 1)));
}

// Sanitizers, and code that is not optimised, take several times the stack.
#if !defined(__OPTIMIZE__) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kChainStack = 8 * kUsualStack;
#else
constexpr std::size_t kChainStack = kUsualStack;
#endif

// A colour correction embeds nine expressions in each other around its input.
TEST(Chain, OfTenThousandColorCorrectionsIsWritten)
{
    using namespace OUtils;
    constexpr std::size_t kNodes = 10000;
    PluginDesc* desc = support::findDescriptor(*getLibDesc(), "TexColorCorrect");
    support::TestRenderer renderer;
    std::vector<PluginBase*> plugins;
    for (std::size_t i = 0; i < kNodes; ++i) {
        PluginBase* plugin = desc->newPlugin(nullptr);
        auto* life = support::interfaceOf<OmbrixPluginInterface>(plugin, EXT_OMBRIX_PLUGIN);
        if (!plugins.empty()) {
            support::WrittenParameter input("in_color", plugins.back());
            life->setParameter(&input);
        }
        life->frameBegin(&renderer);
        plugins.push_back(plugin);
    }
    const auto sourceOf = [](PluginBase* plugin) {
        ombrix::HostShaderSource source;
        ombrix::HostOCLData data(nullptr, false);
        support::interfaceOf<RTTexInterface>(plugin, EXT_RTTEX)
            ->getSource("", "", "MaterialDescriptor", source, data);
        return source.text;
    };
    const std::string firstSource = sourceOf(plugins.front());
    std::string lastSource;
    onStack(kChainStack, [&] { lastSource = sourceOf(plugins.back()); });
    // A source begins with that of its input, which the first one lacks.
    EXPECT_TRUE(firstSource.starts_with(kNext + op(-987))) << firstSource;
    EXPECT_TRUE(lastSource == repeated(firstSource, kNodes)) << lastSource.substr(0, 4000);
    for (PluginBase* plugin : plugins)
        desc->deletePlugin(plugin);
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
    const std::unique_ptr<Node> copy = visitor.mirror(*parser.getRoot());
    EXPECT_EQ(copy->compare(*parser.getRoot()), 0);
    EXPECT_TRUE(copy->toString() == parser.getRoot()->toString());
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
