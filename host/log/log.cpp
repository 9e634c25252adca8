#include "host/log/log.h"

#include "host/console/console.h"

#include <utility>

namespace ombrix {
namespace {

using OUtils::LogLevel;

const char* levelWord(LogLevel level)
{
    switch (level) {
    case LogLevel::Info:
        return "info: ";
    case LogLevel::Warning:
        return "warning: ";
    case LogLevel::Error:
        break;
    }
    return "error: ";
}

bool isShown(LogLevel level)
{
    switch (verbosity()) {
    case Verbosity::Quiet:
        return level != LogLevel::Info && level != LogLevel::Warning;
    case Verbosity::Normal:
        return level != LogLevel::Info;
    case Verbosity::Verbose:
        break;
    }
    return true;
}

} // namespace

void say(LogLevel level, std::string_view text)
{
    if (!isShown(level)) return;
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    writeErrorLine(levelWord(level) + std::string(text));
}

void RecordingLogger::log(LogLevel level, const char* text)
{
    if (!text) return;
    if (shown) say(level, text);
    const std::lock_guard lock(mutex);
    lines.push_back({level, text});
}

void RecordingLogger::setText(const char* text)
{
    if (!text) return;
    if (shown) say(LogLevel::Info, text);
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
