#include "host/gpu/host_gpu.h"

#include "support/comma_locale.h"

#include <gtest/gtest.h>

#include <locale.h>

namespace {

using ombrix::HostShaderSource;

TEST(ShaderSource, CollectsTextInOrder)
{
    HostShaderSource source;
    source.append("subtex\n");
    source.printf("bitmap %i\n", -980);
    source.append(nullptr);
    source.printf("%s", "");
    EXPECT_EQ(source.text, "subtex\nbitmap -980\n");
}

TEST(ShaderSource, NumbersHaveAPointInACommaLocale)
{
    const CommaLocale locale;
    if (!locale.available()) GTEST_SKIP() << "no comma locale on this machine";
    char direct[32];
    std::snprintf(direct, sizeof direct, "%f", 0.5);
    ASSERT_STREQ(direct, "0,500000");
    HostShaderSource source;
    source.printf("color %f %f %f %f\n", 0.5, 1.0, -2.25, 0.0);
    EXPECT_EQ(source.text, "color 0.500000 1.000000 -2.250000 0.000000\n");
    std::snprintf(direct, sizeof direct, "%f", 0.5); // the process's locale stands as it was
    EXPECT_STREQ(direct, "0,500000");
}

TEST(ShaderSource, ThePrintingThreadKeepsItsLocale)
{
    HostShaderSource source;
    source.printf("%f", 0.5);
    EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE); // what a thread starts with
}

TEST(ShaderSource, LinesOfAnyLengthArriveWhole)
{
    for (std::size_t length : {510u, 511u, 512u, 513u, 100000u}) {
        HostShaderSource source;
        source.append("<");
        source.printf("%s>", std::string(length, 'x').c_str());
        EXPECT_EQ(source.text, "<" + std::string(length, 'x') + ">");
    }
}

TEST(ShaderSource, HugeNumbersArriveWhole)
{
    HostShaderSource source;
    source.printf("%f", 1e300);
    EXPECT_EQ(source.text.size(), 301u + 7u);
    EXPECT_EQ(std::stod(source.text), 1e300);
}

} // namespace
