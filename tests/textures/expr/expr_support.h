// What the tests of the expression language share.
#pragma once

#include "textures/expr/node.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
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

// The stack of a host's thread, as small as one makes it and as large as it comes.
inline constexpr std::size_t kSmallStack = std::size_t{512} << 10;
inline constexpr std::size_t kUsualStack = std::size_t{8} << 20;

// Runs an action on a thread of its own.
template <class Action>
void onStack(std::size_t size, Action&& action)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
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
