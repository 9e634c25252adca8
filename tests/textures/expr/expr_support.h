// What the tests of the expression language share.
#pragma once

#include "textures/expr/node.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <string>
#include <string_view>
#include <utility>

namespace expr_test {

// What an action writes to the standard error stream.
template <class Action>
std::string errorsOf(Action&& action)
{
    testing::internal::CaptureStderr();
    std::forward<Action>(action)();
    return testing::internal::GetCapturedStderr();
}

inline std::string textOf(const nezaiva::expr::Node& node)
{
    const nezaiva::expr::HostString text = node.toString();
    return std::string(text.data(), text.size());
}

inline std::string repeated(std::string_view piece, std::size_t count)
{
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

// Runs an action on a thread whose stack has room for a few hundred calls within each other, and not
// for thousands.
template <class Action>
void onSmallStack(Action&& action)
{
    constexpr std::size_t kStackSize = 512 * 1024;
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackSize), 0);
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::remove_reference_t<Action>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &action), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

} // namespace expr_test
