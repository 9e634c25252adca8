// Neither the parser nor the texts follow the process's locale.

#include "textures/expr/gpu_source_helper.h"
#include "textures/expr/lisp_parser.h"

#include "expr_support.h"
#include "gpu_expr_support.h"
#include "host/gpu/host_gpu.h"
#include "support/comma_locale.h"

#include <memory>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

class ExpressionLocale : public testing::Test {
protected:
    static void SetUpTestSuite() { locale = std::make_unique<CommaLocale>(); }
    static void TearDownTestSuite() { locale.reset(); }
    void SetUp() override
    {
        if (!locale->available()) GTEST_SKIP() << "no locale with a decimal comma could be made here";
    }

private:
    static inline std::unique_ptr<CommaLocale> locale;
};

TEST_F(ExpressionLocale, LiteralsHavePoints)
{
    LispParser parser("1.5 1,5 -0.25 12345.5 0x1.8");
    EXPECT_EQ(textOf(*parser.getRoot()), "[Begin 1.5, 1, -0.25, 12345.5, 1.5]");
}

TEST_F(ExpressionLocale, WordsEndWhereTheyDo)
{
    // Neither no-break spaces nor other letters are blanks.
    LispParser parser("\xc2\xa0 a\xc2\x85 \xe2\x80\x83x");
    EXPECT_EQ(textOf(*parser.getRoot()), "[Begin \xc2\xa0, a\xc2\x85, \xe2\x80\x83x]");
}

TEST_F(ExpressionLocale, SourcesHavePoints)
{
    ombrix::HostShaderSource sink;
    support::NoData data;
    nezaiva::GPUSourceHelper helper("theName", "theTag", "MaterialDescriptor", sink, data);
    helper.addColorVariable("half", 0.5f);
    helper.evaluate("(* half (color 0.25 1.5 0 1))");
    EXPECT_EQ(sink.text, slots({gray("0.500000"), "color 0.250000 1.500000 0.000000 1.000000\n", op(-980)}));
    support::expectUnderstood(sink.text);
}

} // namespace
