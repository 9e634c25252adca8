#include "host/log/log.h"

#include "host/console/console.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using namespace ombrix;
using OUtils::LogLevel;

std::string saidAt(Verbosity level)
{
    setVerbosity(level);
    testing::internal::CaptureStderr();
    say(LogLevel::Info, "one");
    say(LogLevel::Warning, "two");
    say(LogLevel::Error, "three");
    const std::string text = testing::internal::GetCapturedStderr();
    setVerbosity(Verbosity::Normal);
    return text;
}

TEST(Log, LinesCarryTheirLevel)
{
    EXPECT_EQ(saidAt(Verbosity::Verbose), "info: one\nwarning: two\nerror: three\n");
}

TEST(Log, NormalLeavesOutInformationsAndQuietAllButErrors)
{
    EXPECT_EQ(saidAt(Verbosity::Normal), "warning: two\nerror: three\n");
    EXPECT_EQ(saidAt(Verbosity::Quiet), "error: three\n");
    EXPECT_EQ(verbosity(), Verbosity::Normal);
}

TEST(Log, FormatCharactersAreText)
{
    testing::internal::CaptureStderr();
    say(LogLevel::Error, "{} %s %d {0}");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: {} %s %d {0}\n");
}

TEST(RecordingLogger, KeepsLinesWordForWordUntilTheyAreTaken)
{
    RecordingLogger logger(false);
    testing::internal::CaptureStderr();
    logger.log(LogLevel::Error, "Baking texture failed.\n");
    logger.warning("Texture \"%s\" has %d", "cloth", 3);
    logger.log(LogLevel::Info, nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    const auto lines = logger.takeLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].level, LogLevel::Error);
    EXPECT_EQ(lines[0].text, "Baking texture failed.\n");
    EXPECT_EQ(lines[1].level, LogLevel::Warning);
    EXPECT_EQ(lines[1].text, "Texture \"cloth\" has 3");
    EXPECT_TRUE(logger.takeLines().empty());
}

TEST(RecordingLogger, ShowsLinesWithoutTheirLineEnd)
{
    RecordingLogger logger;
    testing::internal::CaptureStderr();
    logger.log(LogLevel::Error, "Baking texture failed.\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: Baking texture failed.\n");
}

TEST(RecordingLogger, ProgressTextsStandApart)
{
    RecordingLogger logger(false);
    logger.setText("Building");
    logger.setText(nullptr);
    EXPECT_TRUE(logger.takeLines().empty());
    EXPECT_EQ(logger.takeProgress(), std::vector<std::string>{"Building"});
    EXPECT_TRUE(logger.takeProgress().empty());
}

TEST(RecordingLogger, TakesLinesFromManyThreads)
{
    RecordingLogger logger(false);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n)
                logger.error("line %d", n);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(logger.takeLines().size(), 2000u);
}

} // namespace
