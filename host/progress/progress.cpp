#include "host/progress/progress.h"

#include "host/console/console.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ombrix {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kTerminalInterval = std::chrono::milliseconds(100);
constexpr auto kPlainInterval = std::chrono::seconds(2); // short work stays short in a log file
constexpr int kPlainStep = 10;                           // percent
constexpr int kBarWidth = 30;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// "title [###...]tail", as wide as the terminal lets it.
std::string barText(const std::string& title, double fraction, const std::string& tail)
{
    const int columns = terminalColumns() - 1;
    const int room = columns - static_cast<int>(title.size() + tail.size()) - 3;
    const int bar = std::clamp(room, 0, kBarWidth);
    const int full = static_cast<int>(fraction * bar);
    const std::string text = title + " [" + std::string(static_cast<std::size_t>(full), '#') +
                             std::string(static_cast<std::size_t>(bar - full), '.') + "]" + tail;
    return text.substr(0, static_cast<std::size_t>(columns));
}

} // namespace

std::string durationText(double seconds)
{
    char text[64];
    const long long tenths = std::llround(std::min(seconds, 1e15) * 10.0);
    const long long whole = std::llround(std::min(seconds, 1e15));
    if (tenths < 100)
        std::snprintf(text, sizeof text, "%lld.%lld s", tenths / 10, tenths % 10);
    else if (whole < 60)
        std::snprintf(text, sizeof text, "%lld s", whole);
    else if (whole < 3600)
        std::snprintf(text, sizeof text, "%lld min %02lld s", whole / 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%lld h %02lld min", whole / 3600, whole / 60 % 60);
    return text;
}

ProgressBar::ProgressBar(std::string what, std::int64_t totalSteps)
    : title(std::move(what)), total(std::max<std::int64_t>(totalSteps, 1)), start(Clock::now()),
      lastShown(start), onTerminal(standardErrorIsTerminal())
{
    if (verbosity() != Verbosity::Quiet && onTerminal) show(0, false);
}

ProgressBar::~ProgressBar()
{
    if (!finished && onTerminal) clearChangingLine();
}

void ProgressBar::advance(std::int64_t steps)
{
    const std::int64_t now = done.fetch_add(steps, std::memory_order_relaxed) + steps;
    if (verbosity() == Verbosity::Quiet) return;
    // A thread that finds the display busy goes on with its work.
    const std::unique_lock lock(mutex, std::try_to_lock);
    if (!lock || finished) return;
    const auto elapsed = Clock::now() - lastShown;
    if (onTerminal) {
        if (elapsed >= kTerminalInterval) show(now, false);
        return;
    }
    const int percent = static_cast<int>(std::min(now, total) * 100 / total);
    if (elapsed >= kPlainInterval && percent >= shownPercent + kPlainStep && now < total) show(now, false);
}

void ProgressBar::finish()
{
    const std::lock_guard lock(mutex);
    if (finished) return;
    finished = true;
    if (verbosity() != Verbosity::Quiet) show(done.load(), true);
}

void ProgressBar::show(std::int64_t steps, bool last)
{
    const double fraction = static_cast<double>(std::min(steps, total)) / static_cast<double>(total);
    const double elapsed = secondsSince(start);
    const int percent = static_cast<int>(fraction * 100.0);
    const std::string left =
        fraction > 0.0 ? durationText(elapsed * (1.0 - fraction) / fraction) + " left" : std::string();
    lastShown = Clock::now();
    shownPercent = percent - percent % kPlainStep;
    if (last && steps >= total)
        writeErrorLine(title + ": done in " + durationText(elapsed));
    else if (last)
        writeErrorLine(title + ": stopped at " + std::to_string(percent) + "% after " +
                       durationText(elapsed));
    else if (onTerminal)
        showChangingLine(barText(title, fraction, " " + std::to_string(percent) + "%  " + left));
    else
        writeErrorLine(title + ": " + std::to_string(percent) + "%" + (left.empty() ? "" : ", " + left));
}

} // namespace ombrix
