#include "host/report/json_output.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace ombrix;

namespace {

std::string text(const OutputJson& value)
{
    std::string formatted = formatJson(value);
    formatted.pop_back();
    return formatted;
}

TEST(JsonOutput, FloatsAreTheShortestDecimals)
{
    EXPECT_EQ(text(toJson(0.1f)), "0.1");
    EXPECT_EQ(text(toJson(16777216.0f)), "16777216");
    EXPECT_EQ(text(toJson(-3.0f)), "-3");
    EXPECT_EQ(text(toJson(1e-40f)), "1e-40");
    EXPECT_EQ(text(toJson(std::numeric_limits<float>::max())), "3.4028235e+38");
    EXPECT_EQ(text(toJson(-0.0f)), "-0.0");
    EXPECT_EQ(text(toJson(1.0f / 3.0f)), "0.33333334");
    EXPECT_EQ(text(toJson(0.1)), "0.1");
    EXPECT_EQ(text(toJson(0.30000000000000004)), "0.30000000000000004");
}

TEST(JsonOutput, WordsStandForWhatJsonLacks)
{
    EXPECT_EQ(text(toJson(std::numeric_limits<float>::quiet_NaN())), "\"nan\"");
    EXPECT_EQ(text(toJson(std::numeric_limits<float>::infinity())), "\"inf\"");
    EXPECT_EQ(text(toJson(-std::numeric_limits<double>::infinity())), "\"-inf\"");
}

TEST(JsonOutput, EveryFloatReadsBackAsItself)
{
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        const float number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(number)) continue;
        const double read = nlohmann::json::parse(text(toJson(number))).get<double>();
        EXPECT_SAME_BITS(static_cast<float>(read), number);
    }
}

TEST(JsonOutput, LaysOutWhatDoesNotFitALine)
{
    OutputJson value;
    value["short"] = {1, 2, 3};
    value["long"] = OutputJson::array();
    for (int i = 0; i < 4; ++i)
        value["long"].push_back(std::string(10, 'x'));
    EXPECT_EQ(formatJson(value, 30),
              "{\n  \"short\": [1, 2, 3],\n  \"long\": [\n    \"xxxxxxxxxx\",\n"
              "    \"xxxxxxxxxx\",\n    \"xxxxxxxxxx\",\n    \"xxxxxxxxxx\"\n  ]\n}\n");
    EXPECT_EQ(formatJson(OutputJson::array()), "[]\n");
    EXPECT_EQ(formatJson(value, 1000), "{\"short\": [1, 2, 3], \"long\": [\"xxxxxxxxxx\", \"xxxxxxxxxx\", "
                                       "\"xxxxxxxxxx\", \"xxxxxxxxxx\"]}\n");
}

TEST(JsonOutput, IsJsonWhateverBytesATextHolds)
{
    const std::string printed = formatJson(OutputJson{{"k", "a\xff\"\n"}});
    EXPECT_EQ(nlohmann::json::parse(printed)["k"], "a\xef\xbf\xbd\"\n");
}

} // namespace
