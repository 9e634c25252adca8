#include "host/parallel/parallel_for.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

using ombrix::parallelFor;

namespace {

TEST(ParallelFor, DoesEachPieceOnce)
{
    for (const int threads : {1, 3, 8}) {
        std::vector<std::atomic<int>> done(1000);
        parallelFor(1000, threads, [&](int index, int) { ++done[static_cast<std::size_t>(index)]; });
        for (const std::atomic<int>& times : done)
            EXPECT_EQ(times, 1) << threads;
    }
}

TEST(ParallelFor, NothingIsNoWork)
{
    parallelFor(0, 4, [](int, int) { ADD_FAILURE(); });
}

TEST(ParallelFor, AThreadsNumberIsItsOwn)
{
    constexpr int kThreads = 4;
    // Not atomic on purpose: the thread sanitizer sees two calls of one number at a time.
    int calls[kThreads] = {};
    std::atomic<bool> inUse[kThreads] = {};
    std::atomic<int> clashes{0};
    parallelFor(2000, kThreads, [&](int, int thread) {
        ASSERT_GE(thread, 0);
        ASSERT_LT(thread, kThreads);
        if (inUse[thread].exchange(true)) ++clashes;
        ++calls[thread];
        inUse[thread] = false;
    });
    EXPECT_EQ(clashes, 0);
    int sum = 0;
    for (const int number : calls)
        sum += number;
    EXPECT_EQ(sum, 2000);
}

TEST(ParallelFor, StartsAsManyThreadsAsAskedFor)
{
    // Each call waits for the others, so it takes as many threads as there are pieces.
    constexpr int kThreads = 5;
    std::atomic<int> arrived{0};
    parallelFor(kThreads, kThreads, [&](int, int) {
        ++arrived;
        arrived.notify_all();
        for (int seen; (seen = arrived) < kThreads;)
            arrived.wait(seen);
    });
    EXPECT_EQ(arrived, kThreads);
}

TEST(ParallelFor, WhatAPieceThrowsComesOut)
{
    try {
        parallelFor(1000, 2, [](int index, int) {
            if (index == 600) throw std::runtime_error("piece 600");
        });
        FAIL() << "nothing came out";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()), "piece 600");
    }
}

} // namespace
