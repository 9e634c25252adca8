#include "host/console/console.h"

#include <gtest/gtest.h>

using namespace ombrix;

namespace {

std::string talkOf(void (*work)())
{
    testing::internal::CaptureStderr();
    work();
    return testing::internal::GetCapturedStderr();
}

TEST(Console, LinesStandWhateverTheVerbosity)
{
    setVerbosity(Verbosity::Quiet);
    EXPECT_EQ(talkOf([] { writeErrorLine("a %s line"); }), "a %s line\n");
    setVerbosity(Verbosity::Normal);
}

TEST(Console, AChangingLineGivesWayToTheNextAndToALine)
{
    EXPECT_EQ(talkOf([] {
                  showChangingLine("10%");
                  showChangingLine("20%");
                  writeErrorLine("something");
                  writeErrorLine("more");
                  clearChangingLine();
              }),
              "\r\x1b[K10%\r\x1b[K20%\r\x1b[Ksomething\nmore\n");
}

TEST(Console, ClearingWipesOnce)
{
    EXPECT_EQ(talkOf([] {
                  showChangingLine("10%");
                  clearChangingLine();
                  clearChangingLine();
              }),
              "\r\x1b[K10%\r\x1b[K");
}

TEST(Console, WhatIsNoTerminalHasTheUsualWidth)
{
    testing::internal::CaptureStderr(); // into a file
    EXPECT_FALSE(standardErrorIsTerminal());
    EXPECT_EQ(terminalColumns(), 80);
    testing::internal::GetCapturedStderr();
}

} // namespace
