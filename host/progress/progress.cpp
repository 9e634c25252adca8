#include "host/progress/progress.h"

#include "host/log/log.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>

namespace ombrix {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kTerminalInterval = std::chrono::milliseconds(100);
constexpr auto kPlainInterval = std::chrono::seconds(2); // short work stays short in a log file
constexpr int kPlainStep = 10;                           // percent
constexpr int kBarWidth = 30;
constexpr const char* kWipe = "\r\x1b[K";

int terminalWidth()
{
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return 80;
}

// Whether a bar stands on the terminal's current line.
std::atomic<bool> barStands{false};

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void writeError(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

} // namespace

void clearProgressLine()
{
    if (barStands.exchange(false)) writeError(kWipe);
}

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
      lastShown(start), onTerminal(::isatty(STDERR_FILENO) == 1)
{
    if (verbosity() != Verbosity::Quiet && onTerminal) show(0, false);
}

ProgressBar::~ProgressBar()
{
    if (!finished) clearProgressLine();
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
    if (last) clearProgressLine();
    if (last && steps >= total) {
        writeError(title + ": done in " + durationText(elapsed) + "\n");
    } else if (last) {
        writeError(title + ": stopped at " + std::to_string(percent) + "% after " + durationText(elapsed) +
                   "\n");
    } else if (onTerminal) {
        const std::string tail = " " + std::to_string(percent) + "%  " + left;
        const int room = terminalWidth() - 1 - static_cast<int>(title.size() + tail.size()) - 3;
        const int bar = std::clamp(room, 0, kBarWidth);
        const int full = static_cast<int>(fraction * bar);
        std::string text = title + " [" + std::string(static_cast<std::size_t>(full), '#') +
                           std::string(static_cast<std::size_t>(bar - full), '.') + "]" + tail;
        writeError(kWipe + text.substr(0, static_cast<std::size_t>(terminalWidth() - 1)));
        barStands = true;
    } else {
        writeError(title + ": " + std::to_string(percent) + "%" + (left.empty() ? "" : ", " + left) + "\n");
    }
}

namespace {

std::atomic<int> interruptAsked{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");
int guardCount = 0;
struct sigaction earlierInterrupt, earlierTerminate;

void onSignal(int number)
{
    if (interruptAsked.exchange(1) == 0) return;
    ::signal(number, SIG_DFL);
    ::raise(number);
}

} // namespace

InterruptGuard::InterruptGuard()
{
    if (guardCount++ > 0) return;
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &earlierInterrupt);
    ::sigaction(SIGTERM, &action, &earlierTerminate);
}

InterruptGuard::~InterruptGuard()
{
    if (--guardCount > 0) return;
    ::sigaction(SIGINT, &earlierInterrupt, nullptr);
    ::sigaction(SIGTERM, &earlierTerminate, nullptr);
    interruptAsked = 0;
}

bool InterruptGuard::interrupted()
{
    return interruptAsked != 0;
}

} // namespace ombrix
