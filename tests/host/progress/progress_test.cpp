#include "host/progress/progress.h"

#include "host/console/console.h"
#include "host/log/log.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

using namespace ombrix;

namespace {

class Progress : public testing::Test {
protected:
    void TearDown() override { setVerbosity(Verbosity::Normal); }
};

std::string talkOf(const std::function<void()>& work)
{
    testing::internal::CaptureStderr();
    work();
    return testing::internal::GetCapturedStderr();
}

// What a child process writes to its standard error when that is a terminal.
std::string talkOnTerminal(const std::function<void()>& work)
{
    const int controller = ::posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_GE(controller, 0);
    EXPECT_EQ(::grantpt(controller), 0);
    EXPECT_EQ(::unlockpt(controller), 0);
    const std::string name = ::ptsname(controller);
    const pid_t child = ::fork();
    if (child == 0) {
        const int terminal = ::open(name.c_str(), O_RDWR | O_NOCTTY);
        ::dup2(terminal, STDERR_FILENO);
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    ::fcntl(controller, F_SETFL, O_NONBLOCK);
    std::string text;
    char buffer[4096];
    for (ssize_t count; (count = ::read(controller, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(count));
    ::close(controller);
    return text;
}

} // namespace

TEST_F(Progress, DurationsReadWell)
{
    EXPECT_EQ(durationText(0.0), "0.0 s");
    EXPECT_EQ(durationText(0.44), "0.4 s");
    EXPECT_EQ(durationText(9.94), "9.9 s");
    EXPECT_EQ(durationText(9.96), "10 s");
    EXPECT_EQ(durationText(59.4), "59 s");
    EXPECT_EQ(durationText(59.6), "1 min 00 s");
    EXPECT_EQ(durationText(185.0), "3 min 05 s");
    EXPECT_EQ(durationText(7830.0), "2 h 10 min");
}

TEST_F(Progress, FinishTellsTheTime)
{
    const std::string talk = talkOf([] {
        ProgressBar bar("baking", 10);
        for (int i = 0; i < 10; ++i)
            bar.advance();
        bar.finish();
        bar.finish();
    });
    EXPECT_EQ(talk.substr(0, 16), "baking: done in ");
    EXPECT_EQ(std::count(talk.begin(), talk.end(), '\n'), 1);
}

TEST_F(Progress, WorkThatEndsEarlyTellsHowFarItCame)
{
    const std::string talk = talkOf([] {
        ProgressBar bar("baking", 8);
        bar.advance(3);
        bar.finish();
    });
    EXPECT_EQ(talk.substr(0, 29), "baking: stopped at 37% after ");
}

TEST_F(Progress, QuietShowsNothing)
{
    setVerbosity(Verbosity::Quiet);
    const auto work = [] {
        ProgressBar bar("baking", 1);
        bar.advance();
        bar.finish();
    };
    EXPECT_EQ(talkOf(work), "");
    EXPECT_EQ(talkOnTerminal(work), "");
}

TEST_F(Progress, NoStepsAtAllIsNoDivisionByZero)
{
    const std::string talk = talkOf([] { ProgressBar("baking", 0).finish(); });
    EXPECT_EQ(talk.substr(0, 28), "baking: stopped at 0% after ");
}

TEST_F(Progress, LongWorkGivesPlainLinesOffATerminal)
{
    const std::string talk = talkOf([] {
        ProgressBar bar("baking", 100);
        std::this_thread::sleep_for(std::chrono::milliseconds(2050));
        for (int i = 0; i < 50; ++i)
            bar.advance();
    });
    // The first step over ten percent; half a second later nothing more is due.
    EXPECT_EQ(talk.substr(0, 13), "baking: 10%, ");
    EXPECT_NE(talk.find(" s left\n"), std::string::npos);
    EXPECT_EQ(std::count(talk.begin(), talk.end(), '\n'), 1);
}

TEST_F(Progress, ATerminalSeesABarWithTheTimeLeft)
{
    const std::string talk = talkOnTerminal([] {
        ProgressBar bar("baking", 4);
        std::this_thread::sleep_for(std::chrono::milliseconds(120));
        bar.advance();
        bar.advance(3);
        bar.finish();
    });
    EXPECT_NE(talk.find("baking [#######.......................] 25%  0.4 s left"), std::string::npos)
        << talk;
    EXPECT_NE(talk.find("\r\x1b[Kbaking: done in 0.1 s\r\n"), std::string::npos) << talk;
}

TEST_F(Progress, OtherTalkTakesALineOfItsOwn)
{
    const std::string talk = talkOnTerminal([] {
        ProgressBar bar("baking", 4);
        say(OUtils::LogLevel::Warning, "something");
        say(OUtils::LogLevel::Warning, "more");
        bar.finish();
    });
    // The bar is wiped once, then both lines stand whole.
    EXPECT_NE(talk.find("0%  \r\x1b[Kwarning: something\r\nwarning: more\r\nbaking: stopped"),
              std::string::npos)
        << talk;
}

TEST_F(Progress, ManyThreadsCountTogether)
{
    const std::string talk = talkOf([] {
        ProgressBar bar("baking", 4000);
        std::thread threads[4];
        for (std::thread& thread : threads)
            thread = std::thread([&bar] {
                for (int i = 0; i < 1000; ++i)
                    bar.advance();
            });
        for (std::thread& thread : threads)
            thread.join();
        bar.finish();
    });
    EXPECT_NE(talk.find("baking: done in"), std::string::npos) << talk;
}
