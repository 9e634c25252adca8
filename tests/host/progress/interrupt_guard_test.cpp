#include "host/progress/interrupt_guard.h"

#include <gtest/gtest.h>

#include <csignal>

using namespace ombrix;

TEST(InterruptGuard, TurnsTheFirstSignalIntoAQuestion)
{
    EXPECT_FALSE(InterruptGuard::interrupted());
    {
        const InterruptGuard outer;
        const InterruptGuard inner;
        EXPECT_FALSE(InterruptGuard::interrupted());
        std::raise(SIGINT);
        EXPECT_TRUE(InterruptGuard::interrupted());
    }
    EXPECT_FALSE(InterruptGuard::interrupted());
    const InterruptGuard next;
    EXPECT_FALSE(InterruptGuard::interrupted());
    std::raise(SIGTERM);
    EXPECT_TRUE(InterruptGuard::interrupted());
}

TEST(InterruptGuard, ASecondSignalEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // the image library's parts start threads
    EXPECT_EXIT(
        {
            const InterruptGuard guard;
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(InterruptGuard, GivesTheEarlierBehaviourBack)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // the image library's parts start threads
    EXPECT_EXIT(
        {
            {
                const InterruptGuard guard;
            }
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}
