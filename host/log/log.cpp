#include "host/log/log.h"

#include "host/progress/progress.h"

#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <atomic>
#include <cstdio>
#include <utility>

namespace ombrix {
namespace {

constinit std::atomic<Verbosity> currentVerbosity{Verbosity::Normal};

spdlog::level::level_enum shownFrom(Verbosity verbosity)
{
    switch (verbosity) {
    case Verbosity::Quiet:
        return spdlog::level::err;
    case Verbosity::Normal:
        return spdlog::level::warn;
    case Verbosity::Verbose:
        return spdlog::level::info;
    }
    return spdlog::level::warn;
}

spdlog::level::level_enum levelOf(OUtils::LogLevel level)
{
    switch (level) {
    case OUtils::LogLevel::Info:
        return spdlog::level::info;
    case OUtils::LogLevel::Warning:
        return spdlog::level::warn;
    case OUtils::LogLevel::Error:
        return spdlog::level::err;
    }
    return spdlog::level::err;
}

// Never destroyed: plugins may still talk while the process's statics end.
spdlog::logger& standardError()
{
    static spdlog::logger* const logger = [] {
        auto* made = new spdlog::logger("ombrix", std::make_shared<spdlog::sinks::stderr_sink_mt>());
        made->set_pattern("%l: %v");
        made->set_level(shownFrom(verbosity()));
        return made;
    }();
    return *logger;
}

} // namespace

void setVerbosity(Verbosity verbosity)
{
    currentVerbosity.store(verbosity);
    standardError().set_level(shownFrom(verbosity));
}

Verbosity verbosity()
{
    return currentVerbosity.load(std::memory_order_relaxed);
}

void say(OUtils::LogLevel level, std::string_view text)
{
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    if (standardError().should_log(levelOf(level))) clearProgressLine();
    standardError().log(levelOf(level), spdlog::string_view_t(text.data(), text.size()));
}

void writeErrorLine(std::string line)
{
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void RecordingLogger::log(OUtils::LogLevel level, const char* text)
{
    if (!text) return;
    if (shown) say(level, text);
    const std::lock_guard lock(mutex);
    lines.push_back({level, text});
}

void RecordingLogger::setText(const char* text)
{
    if (!text) return;
    if (shown) say(OUtils::LogLevel::Info, text);
    const std::lock_guard lock(mutex);
    progress.emplace_back(text);
}

std::vector<LogLine> RecordingLogger::takeLines()
{
    const std::lock_guard lock(mutex);
    return std::exchange(lines, {});
}

std::vector<std::string> RecordingLogger::takeProgress()
{
    const std::lock_guard lock(mutex);
    return std::exchange(progress, {});
}

} // namespace ombrix
