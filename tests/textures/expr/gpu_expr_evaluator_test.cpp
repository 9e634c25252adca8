// What an expression writes: slots, operators, references and the finish. Expected sources are put
// together by hand from the rules of the stack.

#include "gpu_expr_support.h"
#include "support/heap_hooks.h"

#include <ombrix/exception_msg.h>

namespace {

using namespace nezaiva::expr::gpu;
using namespace expr_test;
using OUtils::AColor;

// Opcodes.
constexpr int kMultiply = -980, kAdd = -979, kIf = -948, kManip = -935, kReference = -952, kFinish = -934;

class GpuExpression : public testing::Test {
protected:
    Texture a{"a"}, b{"b"};

    Binding varA() { return {"a", a}; }
    Binding varB() { return {"b", b}; }

    void expect(const std::vector<Binding>& bindings, std::string_view expression,
                const std::string& expected, const std::string& errors = "")
    {
        SCOPED_TRACE(expression);
        const Written written = evaluated(bindings, expression, kind);
        EXPECT_EQ(written.source, expected);
        EXPECT_EQ(written.errors, errors);
    }

    support::TextKind kind = support::TextKind::Understood;
};

TEST_F(GpuExpression, APluginAloneIsItsSource)
{
    expect({varA()}, "a", "a theName theTag MaterialDescriptor\n");
}

TEST_F(GpuExpression, AnOperatorFollowsItsArguments)
{
    const Written written = evaluated({varA(), varB()}, "(* a b)");
    EXPECT_EQ(written.source, "a theName theTag MaterialDescriptor\n"
                              "subtex\n"
                              "b theName theTag MaterialDescriptor\n"
                              "subtex\n"
                              "bitmap -980\n"
                              "uvw_transform 0,0,0, 0,0,0, 0,0,0, 0,0,0\n");
    EXPECT_EQ(written.depth, 0);
    EXPECT_EQ(written.errors, "");
}

TEST_F(GpuExpression, ARepeatedPluginIsHoistedAndReferenced)
{
    const Written written = evaluated({varA()}, "(+ (* a a) a)");
    EXPECT_EQ(written.source, slots({source("a"), op(kReference, {0}), op(kReference, {1}), op(kMultiply),
                                     op(kReference, {1}), op(kAdd, {1}), op(kFinish, {1})}));
    EXPECT_EQ(written.depth, 0);
}

TEST_F(GpuExpression, AColorIsNeverHoisted)
{
    expect({{"c", AColor{0.25f, 0.5f, 0.75f, 1.0f}}}, "(* c c)",
           slots({"color 0.250000 0.500000 0.750000 1.000000\n",
                  "color 0.250000 0.500000 0.750000 1.000000\n", op(kMultiply)}));
}

TEST_F(GpuExpression, AnExpressionUsedTwiceIsWrittenOnce)
{
    expect({varA(), varB(), {"e", "(* a b)"}}, "(+ e e)",
           slots({source("a"), source("b"), op(kMultiply), op(kReference, {0}), op(kReference, {1}),
                  op(kAdd, {1}), op(kFinish, {1})}));
}

TEST_F(GpuExpression, AnExpressionUsedOnceIsInlined)
{
    expect({varA(), varB(), {"e", "(* a b)"}}, "(+ 1 e)",
           slots({gray("1.000000"), source("a"), source("b"), op(kMultiply), op(kAdd, {1})}));
}

// Variables' expressions are not counted.
TEST_F(GpuExpression, ASymbolRepeatedOnlyInVariablesIsNotHoisted)
{
    expect({varA(), {"e", "(* a 2)"}, {"f", "(- a 3)"}}, "(+ e f)",
           slots({source("a"), gray("2.000000"), op(kMultiply), source("a"), gray("3.000000"), op(kAdd),
                  op(kAdd, {1})}));
}

TEST_F(GpuExpression, AHoistedExpressionSeesWhatWasHoistedBeforeIt)
{
    // a is hoisted before e, and b after it: e references a and has a source of b of its own.
    expect({varA(), {"e", "(* a b)"}, varB()}, "(+ (+ a a) (+ (+ e e) (+ b b)))",
           slots({source("a"),                                             // depth 0: a
                  op(kReference, {0}), source("b"), op(kMultiply),         // depth 1: e
                  source("b"),                                             // depth 2: b
                  op(kReference, {2}), op(kReference, {3}), op(kAdd, {1}), // depth 3: a + a
                  op(kReference, {2}), op(kReference, {3}), op(kAdd, {1}), // depth 4: e + e
                  op(kReference, {2}), op(kReference, {3}), op(kAdd, {1}), // depth 5: b + b
                  op(kAdd, {1}), op(kAdd, {1}), op(kFinish, {3})}));       // depth 3, then 0
}

TEST_F(GpuExpression, ARepeatedNullPluginIsHoistedAsAnEmptySlot)
{
    expect({{"n", static_cast<OUtils::PluginInterface*>(nullptr)}}, "(+ n n)",
           kNext + slots({op(kReference, {0}), op(kReference, {1}), op(kAdd, {1}), op(kFinish, {1})}));
}

TEST_F(GpuExpression, AHoistedSlotBelowTheFirstIsWrittenAgain)
{
    kind = support::TextKind::Broken;
    // The unknown function leaves no slot, so abs ends at depth -1, three times over.
    expect({{"e", "(abs (nothing))"}}, "(+ e e)", slots({op(-944), op(-944), op(-944), op(kAdd, {1})}),
           "[ERR] Error while calling nothing\n[ERR] Error while calling nothing\n"
           "[ERR] Error while calling nothing\n");
}

TEST_F(GpuExpression, AnUndefinedSymbolIsAnEmptySlotWithoutAMessage)
{
    expect({}, "x", "");
    expect({varA()}, "(+ a x)", source("a") + kNext + kNext + op(kAdd, {1}));
}

TEST_F(GpuExpression, ALiteralIsGray)
{
    expect({}, "0.5", "color 0.500000 0.500000 0.500000 0.500000\n");
}

TEST_F(GpuExpression, SeveralFormsHaveASlotEach)
{
    const Written written = evaluated({varA(), varB()}, "a b (* 1 2)");
    EXPECT_EQ(written.source, slots({source("a"), source("b"), gray("1.000000"), gray("2.000000"),
                                     op(kMultiply), op(kFinish, {2})}));
    EXPECT_EQ(written.depth, 0);
}

TEST_F(GpuExpression, AVariableOfSeveralFormsKeepsTheirOrder)
{
    expect({varA(), {"e", "(* a 2) 3 (abs 4)"}}, "(max 1 e)",
           slots({gray("1.000000"), source("a"), gray("2.000000"), op(kMultiply), gray("3.000000"),
                  gray("4.000000"), op(-944), op(-943, {1}), op(kFinish, {2})}));
}

TEST_F(GpuExpression, AnEmptyTextWritesNothing)
{
    expect({varA()}, "", "");
    expect({varA()}, "(", "", "[ERR] Unable to parse expression:\n");
}

TEST_F(GpuExpression, ATextWithoutASourceWritesNothingForIt)
{
    a.hasSource = false;
    expect({varA()}, "(* a 2)", kNext + slots({gray("2.000000"), op(kMultiply)}));
}

TEST_F(GpuExpression, EveryBuiltinHasItsOpcodeAndOperand)
{
    kind = support::TextKind::Broken; // one argument for each
    const struct {
        const char* name;
        int opcode, operand;
    } rows[] = {
        {"abs", -944, 0}, {"clamp", -951, 0},     {"facingRatio", -971, 4}, {"hsv2rgb", -965, 0},
        {"if", -948, 0},  {"intensity", -973, 1}, {"lerp", -945, 0},        {"luminance", -973, 2},
        {"max", -943, 1}, {"min", -943, 0},       {"overlay", -946, 26},    {"rgb2hsv", -987, 0},
        {"==", -947, 0},  {"!=", -947, 1},        {"<", -947, 2},           {">", -947, 3},
        {"<=", -947, 4},  {">=", -947, 5},        {"+", -979, 1},           {"-", -979, 0},
        {"*", -980, 0},   {"/", -956, 2}, // of its two operands, 3 and 2, the later one
    };
    for (const auto& row : rows)
        expect({varA()}, std::string("(") + row.name + " a)",
               slots({source("a"), op(row.opcode, {row.operand})}));
}

TEST_F(GpuExpression, TheNumberOfArgumentsIsNotTested)
{
    kind = support::TextKind::Broken;
    expect({}, "(lerp)", op(-945));
    expect({}, "(abs 1 2 3)", slots({gray("1.000000"), gray("2.000000"), gray("3.000000"), op(-944)}));
}

TEST_F(GpuExpression, AnUnknownFunctionWritesNothing)
{
    kind = support::TextKind::Broken; // a slot is missing
    expect({varA(), varB()}, "(nothing a (also b))", "", "[ERR] Error while calling nothing\n");
    expect({varA()}, "(+ (nothing a) 1)", slots({gray("1.000000"), op(kAdd, {1})}),
           "[ERR] Error while calling nothing\n");
    expect({}, "(1 2)", "", "[ERR] Error while calling 1\n");
}

TEST_F(GpuExpression, AColorFormIsOneSlot)
{
    expect({varA()}, "(color 1 0 0 1)", "color 1.000000 0.000000 0.000000 1.000000\n");
    expect({varA()}, "(color a 0 0 1)", "color 0.000000 0.000000 0.000000 1.000000\n");
    expect({varA()}, "(color 0.25)", "color 0.250000 0.000000 0.000000 0.000000\n");
    expect({varA()}, "(color 1 2 3 4 5)", "color 1.000000 2.000000 3.000000 4.000000\n");
}

TEST_F(GpuExpression, TheArgumentsOfAColorFormDoNotCount)
{
    expect({varA()}, "(+ (color a a a a) a)", slots({gray("0.000000"), source("a"), op(kAdd, {1})}));
}

TEST_F(GpuExpression, AListIsAConstantColor)
{
    expect({varA()}, "'(1 2)", "color 1.000000 2.000000 0.000000 0.000000\n");
    expect({varA()}, "'(a 2 (abs 3) 4)", "color 0.000000 2.000000 0.000000 4.000000\n");
    expect({varA()}, "'()", gray("0.000000"));
}

TEST_F(GpuExpression, AListHasFourPlaces)
{
    expect({}, "'(1 2 3 4 5 6)", "color 1.000000 2.000000 3.000000 4.000000\n");
}

TEST_F(GpuExpression, ManipWithTwoArgumentsHasTwelveZeros)
{
    const Written written = evaluated({varA(), varB()}, "(manip a b)");
    EXPECT_EQ(written.source, slots({source("a"), source("b"), op(kManip)}));
    EXPECT_EQ(written.depth, 0); // opened to 2, and two less
}

TEST_F(GpuExpression, ManipReadsOperationsAndSelectors)
{
    const auto expectManip = [this](const char* rest, std::vector<int> operands) {
        expect({varA(), varB()}, std::string("(manip a b ") + rest + ")",
               slots({source("a"), source("b"), op(kManip, std::move(operands))}));
    };
    expectManip("/ / / 1 x x x x", {5, 5, 5, 1, 1, 1, 1, 1});
    expectManip("+ 0 0 0", {2});
    expectManip("+ - * / x y z w", {2, 3, 4, 5, 1, 2, 3, 4});
    expectManip("g 2.9 -2.9 0", {6, 2, -2, 0});
    expectManip("x y z w + - * /", {});                       // each set has its own words
    expectManip("0 0 0 0 1 2 x 3", {0, 0, 0, 0, 0, 0, 1, 0}); // literals are no selectors
    expectManip("(f) '(1) ++ G", {});
    expectManip("1e20 -1e20 1e-20 1e999", {2147483647, -2147483648, 0, 0});
}

TEST_F(GpuExpression, ManipReturnsTwoSlotsWhateverItWasGiven)
{
    expect({varA(), varB()}, "(+ (manip a b + + + +) 1)",
           slots({source("a"), source("b"), op(kManip, {2, 2, 2, 2}), gray("1.000000"), op(kAdd, {1})}));
}

TEST_F(GpuExpression, TheWordsOfManipCountAsSymbols)
{
    // A texture of the name of a selector is hoisted, and the selectors still read as words.
    Texture x("x");
    expect({varA(), {"x", x}}, "(manip a 1 0 0 0 0 x x)",
           slots({source("x"), source("a"), gray("1.000000"), op(kManip, {0, 0, 0, 0, 1, 1}),
                  op(kFinish, {1})}));
}

TEST_F(GpuExpression, ManipWithFewerThanTwoArgumentsFails)
{
    kind = support::TextKind::Broken;
    expect({varA()}, "(manip a)", "",
           "[ERR] (manip) expects at least 2 arguments, got1\n[ERR] Error while calling manip\n");
    expect({varA()}, "(abs (manip))", op(-944),
           "[ERR] (manip) expects at least 2 arguments, got0\n[ERR] Error while calling manip\n");
}

TEST_F(GpuExpression, AnIfOfTwoArgumentsIsNotFolded)
{
    kind = support::TextKind::Broken; // an argument is missing
    expect({varA()}, "(if 0 a)", slots({gray("0.000000"), source("a"), op(kIf)}));
}

TEST_F(GpuExpression, OfTwoVariablesOfANameTheFirstStays)
{
    expect({varA(), {"a", AColor{}}}, "a", source("a"));
    expect({varA(), {"e", "a"}, {"e", "(abs a)"}}, "(abs e)", slots({source("a"), op(-944)}));
}

TEST_F(GpuExpression, VariablesAreFoundByTheirExactName)
{
    GPUExpressionEvaluator evaluator;
    std::unique_ptr<GPUVariable> added = varA().variable();
    const GPUVariable* variable = added.get();
    evaluator.addVariable(nullptr);
    evaluator.addVariable(std::move(added));
    evaluator.addVariable(nullptr);
    EXPECT_EQ(evaluator.findVariable("a"), variable);
    EXPECT_EQ(evaluator.findVariable("A"), nullptr);
    EXPECT_EQ(evaluator.findVariable("aa"), nullptr);
    EXPECT_EQ(evaluator.findVariable(""), nullptr);
}

TEST_F(GpuExpression, VariablesHoldWhatTheirTypeSays)
{
    const GPUVariable plugin("p", a), color("c", AColor{1.0f, 2.0f, 3.0f, 4.0f}), expression("e", "(f)");
    EXPECT_EQ(plugin.type, "plugin_interface");
    EXPECT_EQ(plugin.plugin, static_cast<OUtils::PluginInterface*>(a));
    EXPECT_EQ(plugin.color.a, 0.0f);
    EXPECT_EQ(plugin.expression, "");
    EXPECT_EQ(color.type, "color");
    EXPECT_EQ(color.plugin, nullptr);
    EXPECT_EQ(color.color.a, 4.0f);
    EXPECT_EQ(color.expression, "");
    EXPECT_EQ(expression.type, "expression");
    EXPECT_EQ(expression.plugin, nullptr);
    EXPECT_EQ(expression.color.a, 0.0f);
    EXPECT_EQ(expression.expression, "(f)");
}

TEST_F(GpuExpression, FaultsOfAVariableAreToldAtEachUse)
{
    expect({{"e", "1 ("}}, "(+ e 2)", slots({gray("1.000000"), gray("2.000000"), op(kAdd, {1})}),
           "[ERR] Unable to parse expression:\n");
}

// Ends the walk that asks for its bounds once too often.
class Patience : public Texture {
public:
    struct AtAnEnd {};

    Patience() : Texture("c") {}
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (++asked == kMost) throw AtAnEnd{};
        Texture::evalColorBounds(lower, upper);
    }

    static constexpr int kMost = 1000;
    int asked = 0;
};

// Nothing guards against it: only the texture's own patience ends the walk. Its bounds are asked for at each
// time that the expression of e is taken up.
TEST_F(GpuExpression, AVariableThatNamesItselfIsFollowedWithoutBound)
{
    Patience c;
    support::TextSink sink;
    EXPECT_THROW(evaluate({{"c", c}, {"e", "(if c 1 e)"}}, "e", sink), Patience::AtAnEnd);
    EXPECT_EQ(c.asked, Patience::kMost);
}

// Memory ends at another allocation for each size from which on blocks are refused.
TEST_F(GpuExpression, LeavesNothingBehindWhenMemoryEnds)
{
    const std::vector<Binding> bindings = {varA(), varB(), {"e", "(manip a b + + + +)"}};
    const auto endsWithout = [&](std::size_t blockSize) {
        support::TextSink sink(support::TextKind::Broken); // it ends where memory does
        try {
            const support::ExhaustedHeap heap(blockSize);
            evaluate(bindings, "(* e (if a (color 1 0 0) '(0 (abs e) 1)))", sink);
            return false;
        } catch (const OUtils::ExceptionMsg&) {
            return true;
        }
    };
    const std::int64_t before = ombrix::allocationCounters().liveBlocks;
    std::size_t blockSize = 1;
    for (; endsWithout(blockSize); ++blockSize)
        ASSERT_EQ(ombrix::allocationCounters().liveBlocks, before) << "without blocks of " << blockSize;
    EXPECT_EQ(ombrix::allocationCounters().liveBlocks, before);
    EXPECT_GT(blockSize, 200u); // variables, functions and nodes are smaller
}

} // namespace
