// Literals: how they are read and printed.

#include "textures/expr/node.h"
#include "textures/expr/tokens.h"

#include "expr_support.h"
#include "support/tolerances.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

namespace {

using namespace nezaiva::expr;
using namespace expr_test;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(Literal, IsReadAsDecimalOrHexadecimal)
{
    const struct {
        const char* token;
        float value;
    } rows[] = {
        {"0", 0.0f},
        {"-0", -0.0f},
        {"2x", 2.0f},
        {"1.5", 1.5f},
        {"5.", 5.0f},
        {"-5e-1", -0.5f},
        {"1E+2", 100.0f},
        {"1e", 1.0f},
        {"1e+", 1.0f},
        {"1.2.3", 1.2f},
        {"2,5", 2.0f},
        {"0x10", 16.0f},
        {"-0X1.8p1", -3.0f},
        {"0x.8", 0.5f},
        {"0x", 0.0f},
        {"0xg", 0.0f},
        {"0x.g", 0.0f},
        {"16777217", 16777216.0f}, // no float lies between: ties to even
        {"1e39", kInfinity},
        {"-1e39", -kInfinity},
        {"1e400", kInfinity},
        {"0.00001e400", kInfinity},
        {"-1e99999999999999999999", -kInfinity},
        {"0x1p99999", kInfinity},
        {"1e-60", 0.0f},
        {"1e-400", 0.0f},
        {"-1e-99999999999999999999", -0.0f},
        {"0x1p-99999", 0.0f},
        {"0e99999999999999999999", 0.0f},
        {"1e-45", 1.40129846e-45f}, // the smallest above zero
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.token);
        EXPECT_SAME_BITS(readNumber(row.token), row.value);
    }
}

TEST(Literal, IsReadAsTheCLibraryReadsIt)
{
    // The process is in the C locale here, so atof reads what a literal is to be.
    std::mt19937 random(20);
    constexpr std::string_view kAlphabet = "0123456789012345678900..ee-+xXpPaf,";
    for (int i = 0; i < 20000; ++i) {
        std::string token = i % 2 ? "-" : "";
        if (i % 5 == 0) token += "0x";
        token += static_cast<char>('0' + random() % 10);
        for (std::size_t length = random() % 14; length > 0; --length)
            token += kAlphabet[random() % kAlphabet.size()];
        if (i % 3 == 0) token += "e" + std::to_string(static_cast<int>(random() % 800) - 400);
        SCOPED_TRACE(token);
        EXPECT_SAME_BITS(readNumber(token), static_cast<float>(std::atof(token.c_str())));
        if (HasFailure()) return;
    }
}

TEST(Literal, OfAMillionDigitsIsRead)
{
    EXPECT_SAME_BITS(readNumber("0." + repeated("3", 1000000)), 0.333333333f);
    EXPECT_SAME_BITS(readNumber(repeated("9", 1000000)), kInfinity);
    EXPECT_SAME_BITS(readNumber("0." + repeated("0", 1000000) + "1e1000001"), 1.0f);
    EXPECT_SAME_BITS(readNumber("0." + repeated("0", 1000000) + "1"), 0.0f);
}

TEST(Literal, PrintsSixDigitsInTheShorterForm)
{
    const struct {
        float value;
        const char* text;
    } rows[] = {
        {1.0f, "1"},
        {0.0f, "0"},
        {-0.0f, "-0"},
        {0.5f, "0.5"},
        {0.00001f, "1e-05"},
        {0.0001f, "0.0001"},
        {123456.0f, "123456"},
        {1234567.0f, "1.23457e+06"},
        {1e20f, "1e+20"},
        {0.1f, "0.1"},
        {-1.0f / 3.0f, "-0.333333"},
        {std::numeric_limits<float>::max(), "3.40282e+38"},
        {std::numeric_limits<float>::denorm_min(), "1.4013e-45"},
        {kInfinity, "inf"},
        {-kInfinity, "-inf"},
        {std::numeric_limits<float>::quiet_NaN(), "nan"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(textOf(FloatingLiteralNode(row.value)), row.text);
}

TEST(Literal, PrintsAsTheCLibraryPrintsIt)
{
    std::mt19937 random(21);
    for (int i = 0; i < 200000; ++i) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isnan(value)) continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
        ASSERT_EQ(textOf(FloatingLiteralNode(value)), expected);
    }
}

} // namespace
