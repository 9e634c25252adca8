#include "host/console/console.h"
#include "host/scene/diagnostics.h"

#include <gtest/gtest.h>

using namespace ombrix;

namespace {

TEST(Diagnostics, PrintsOneLineForEachErrorWithFileAndPlace)
{
    Diagnostics diagnostics("look.json");
    diagnostics.error("/plugins/a", "is wrong");
    diagnostics.warning("/plugins/b", "is odd");
    diagnostics.error("", "ends early");
    testing::internal::CaptureStderr();
    diagnostics.print();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: look.json: /plugins/a: is wrong\n"
                                                      "warning: look.json: /plugins/b: is odd\n"
                                                      "error: look.json: ends early\n");
}

TEST(Diagnostics, ShowsTwentyErrorsAndCountsTheRest)
{
    Diagnostics diagnostics("f");
    for (int i = 0; i < 23; ++i)
        diagnostics.error("/x", "bad");
    EXPECT_EQ(diagnostics.lines().size(), 20u);
    testing::internal::CaptureStderr();
    diagnostics.print();
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 21);
    EXPECT_NE(printed.find("error: f: 3 more errors are not shown\n"), std::string::npos);
}

TEST(Diagnostics, ShowsTwentyWarningsAndCountsTheRest)
{
    Diagnostics diagnostics("f");
    for (int i = 0; i < 21; ++i)
        diagnostics.warning("/x", "odd");
    diagnostics.error("/y", "bad");
    testing::internal::CaptureStderr();
    diagnostics.print();
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 22);
    EXPECT_TRUE(printed.ends_with("error: f: /y: bad\nwarning: f: 1 more warning is not shown\n")) << printed;
}

TEST(Diagnostics, KeepsWarningsToItselfWhenQuiet)
{
    Diagnostics diagnostics("f");
    diagnostics.warning("/x", "odd");
    diagnostics.error("/y", "bad");
    setVerbosity(Verbosity::Quiet);
    testing::internal::CaptureStderr();
    diagnostics.print();
    const std::string printed = testing::internal::GetCapturedStderr();
    setVerbosity(Verbosity::Normal);
    EXPECT_EQ(printed, "error: f: /y: bad\n");
}

TEST(Diagnostics, AWarningIsNoFailure)
{
    Diagnostics diagnostics("f");
    diagnostics.warning("", "odd");
    EXPECT_FALSE(diagnostics.failed());
    diagnostics.error("", "bad");
    EXPECT_TRUE(diagnostics.failed());
}

TEST(Diagnostics, StaysOnOneLineWhateverANameHolds)
{
    Diagnostics diagnostics("f");
    diagnostics.error("/a\nb", std::string("x\ty") + std::string(2000, 'z'));
    const std::string& line = diagnostics.lines()[0];
    EXPECT_EQ(line.substr(0, 25), "error: f: /a\\x0ab: x\\x09y");
    EXPECT_LT(line.size(), 700u);
    EXPECT_TRUE(line.ends_with("..."));
}

TEST(NearestName, FindsSlipsOfAFewLetters)
{
    const std::vector<std::string> names = {"place", "u_color", "value", "ColorValue", "TexMayaCloth"};
    EXPECT_EQ(nearestName("plase", names), "place");
    EXPECT_EQ(nearestName("u_colour", names), "u_color");
    EXPECT_EQ(nearestName("valeu", names), "value"); // two letters changed places
    EXPECT_EQ(nearestName("VALUE", names), "value");
    EXPECT_EQ(nearestName("ColourValue", names), "ColorValue");
    EXPECT_EQ(nearestName("cloth", names), "TexMayaCloth"); // a part of it
}

TEST(NearestName, FindsNothingThatIsFarOff)
{
    EXPECT_EQ(nearestName("half", {"a", "bee", "value"}), "");
    EXPECT_EQ(nearestName("x", {"y"}), "");
    EXPECT_EQ(nearestName("", {"a"}), "");
    EXPECT_EQ(nearestName(std::string(100000, 'a'), {"aa"}), "");
}

} // namespace
