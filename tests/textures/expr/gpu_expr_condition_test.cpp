// Conditions that are known while a source is written: the branch that is not taken vanishes.

#include "gpu_expr_support.h"

#include <limits>

namespace {

using namespace nezaiva::expr::gpu;
using namespace expr_test;
using OUtils::AColor;

constexpr int kIf = -948;

// The written form of the whole "if" on a texture c, when it is not folded.
const std::string kUnfolded = slots({source("c"), source("a"), source("b"), op(kIf)});

class TestVector : public OUtils::TextureVectorInterface {
public:
    OUtils::PluginBase* getPlugin() override { return &holder; }
    void evalVector(OUtils::Vector*, const OUtils::OmbrixContext&) override {}
    void evalVectorBounds(OUtils::Vector* lower, OUtils::Vector* upper) override
    {
        *lower = lowerBound;
        *upper = upperBound;
    }

    OUtils::Vector lowerBound, upperBound;
    Texture holder{"c"};
};

class FloatTexture : public support::TestFloat {
public:
    FloatTexture(float lower, float upper) : TestFloat("c", nullptr)
    {
        lowerBound = lower;
        upperBound = upper;
    }
};

// Leaves its bounds as they are.
class Unbounded : public Texture {
public:
    Unbounded() : Texture("c") {}
    void evalColorBounds(AColor*, AColor*) override {}
};

class GpuCondition : public testing::Test {
protected:
    Texture a{"a"}, b{"b"};

    // With a and b bound to textures, and further names.
    Written folded(std::string_view expression, std::vector<Binding> bindings = {})
    {
        bindings.insert(bindings.end(), {{"a", a}, {"b", b}});
        return evaluated(bindings, expression);
    }
    void expect(std::string_view expression, const std::string& expected,
                const std::vector<Binding>& bindings = {})
    {
        SCOPED_TRACE(expression);
        const Written written = folded(expression, bindings);
        EXPECT_EQ(written.source, expected);
        EXPECT_EQ(written.errors, "");
    }
    // "(if c a b)" with c bound to a texture.
    std::string onTexture(OUtils::PluginInterface* texture)
    {
        return folded("(if c a b)", {{"c", texture}}).source;
    }
};

TEST_F(GpuCondition, ALiteralSelects)
{
    expect("(if 0 a b)", source("b"));
    expect("(if 1 a b)", source("a"));
    expect("(if -1 a b)", source("a"));
    expect("(if 0.00005 a b)", source("b"));
    expect("(if -0.00005 a b)", source("b"));
    expect("(if 0.00011 a b)", source("a"));
    expect("(if 0.0001 a b)", source("a")); // the limit itself is not zero
    expect("(if -0.0001 a b)", source("a"));
    expect("(if 1e999 a b)", source("a"));
}

TEST_F(GpuCondition, FurtherArgumentsFallAway)
{
    expect("(if 1 a b 1 2 3)", source("a"));
}

TEST_F(GpuCondition, FoldingRecurses)
{
    expect("(if 1 (if 0 a (if 1 b a)) a)", source("b"));
    expect("(if 1 (* a (if 0 a b)) a)", slots({source("a"), source("b"), op(-980)}));
    expect("(if 1 '(1 2) a)", "color 1.000000 2.000000 0.000000 0.000000\n");
}

TEST_F(GpuCondition, ACallIsNotKnown)
{
    expect("(if (if 1 1 0) a b)", slots({gray("1.000000"), source("a"), source("b"), op(kIf)}));
    expect("(if '(0) a b)", slots({gray("0.000000"), source("a"), source("b"), op(kIf)}));
}

TEST_F(GpuCondition, TheBranchNotTakenNeitherCountsNorSpeaks)
{
    expect("(+ (if 1 1 (* a a)) a)", slots({gray("1.000000"), source("a"), op(-979, {1})}));
    expect("(if 0 (if undefined a b) a)", source("a"));
}

TEST_F(GpuCondition, AnUndefinedSymbolIsToldAndKept)
{
    const Written written = folded("(if nothing a b)");
    EXPECT_EQ(written.source, kNext + slots({source("a"), source("b"), op(kIf)}));
    EXPECT_EQ(written.errors, "[ERR] Undefined variable 'nothing'\n");
}

TEST_F(GpuCondition, OfAColorRedAloneDecides)
{
    expect("(if c a b)", source("b"), {{"c", AColor{0.0f, 1.0f, 1.0f, 1.0f}}});
    expect("(if c a b)", source("a"), {{"c", AColor{0.5f, 0.0f, 0.0f, 0.0f}}});
}

TEST_F(GpuCondition, AnExpressionIsNotKnown)
{
    expect("(if c a b)", slots({gray("0.000000"), source("a"), source("b"), op(kIf)}), {{"c", "0"}});
}

TEST_F(GpuCondition, ANullTextureIsFalse)
{
    EXPECT_EQ(onTexture(nullptr), source("b"));
}

TEST_F(GpuCondition, AColorTextureIsKnownByItsRedBounds)
{
    const auto withBounds = [this](const AColor& lower, const AColor& upper) {
        Texture c("c");
        c.lowerBound = lower;
        c.upperBound = upper;
        return onTexture(c);
    };
    EXPECT_EQ(withBounds({0.0f, 0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f, 0.0f}), kUnfolded);
    EXPECT_EQ(withBounds({0.0f, 0.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 1.0f, 1.0f}), source("b"));
    EXPECT_EQ(withBounds({0.5f, 0.0f, 0.0f, 0.0f}, {0.5f, 1.0f, 1.0f, 1.0f}), source("a"));
    EXPECT_EQ(withBounds({0.5f}, {0.50005f}), source("a")); // close enough
    EXPECT_EQ(withBounds({0.5f}, {0.5002f}), kUnfolded);
    EXPECT_EQ(withBounds({std::numeric_limits<float>::quiet_NaN()}, {0.0f}), kUnfolded);
}

TEST_F(GpuCondition, BoundsLeftUnwrittenAreApart)
{
    Unbounded c;
    EXPECT_EQ(onTexture(c), kUnfolded);
}

TEST_F(GpuCondition, AFloatTextureIsKnownByItsBounds)
{
    const auto withBounds = [this](float lower, float upper) {
        FloatTexture c(lower, upper);
        return onTexture(static_cast<OUtils::TextureFloatInterface*>(&c));
    };
    EXPECT_EQ(withBounds(0.0f, 0.0f), source("b"));
    EXPECT_EQ(withBounds(1.0f, 1.0f), source("a"));
    EXPECT_EQ(withBounds(0.0f, 1.0f), kUnfolded);
}

// The lower x counts against the upper y.
TEST_F(GpuCondition, AVectorTextureIsKnownByXAndY)
{
    const auto withBounds = [this](const OUtils::Vector& lower, const OUtils::Vector& upper) {
        TestVector c;
        c.lowerBound = lower;
        c.upperBound = upper;
        return onTexture(&c);
    };
    EXPECT_EQ(withBounds({0.0f, 5.0f, 5.0f}, {5.0f, 0.0f, 5.0f}), source("b"));
    EXPECT_EQ(withBounds({2.0f, 5.0f, 5.0f}, {5.0f, 2.0f, 5.0f}), source("a"));
    EXPECT_EQ(withBounds({2.0f, 0.0f, 0.0f}, {2.0f, 0.0f, 0.0f}), kUnfolded);
}

TEST_F(GpuCondition, AnotherInterfaceIsNotKnown)
{
    Texture c("c"); // its bounds would be read as constant
    c.upperBound = {};
    EXPECT_EQ(onTexture(static_cast<OUtils::OmbrixPluginInterface*>(&c)), kUnfolded);
}

TEST_F(GpuCondition, VariablesFoldToo)
{
    expect("(* a e)", slots({source("a"), source("b"), op(-980)}), {{"e", "(if 1 b (* a a))"}});
}

} // namespace
