#include "host/console/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>

namespace ombrix {
namespace {

constexpr const char* kWipe = "\r\x1b[K"; // back to the line's begin, and clear it

constinit std::atomic<Verbosity> currentVerbosity{Verbosity::Normal};

// Both live as long as the process: plugins may still talk while its statics end.
constinit std::mutex mutex;
constinit bool lineStands = false; // a changing line, guarded by the mutex

void write(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

} // namespace

void setVerbosity(Verbosity verbosity)
{
    currentVerbosity.store(verbosity, std::memory_order_relaxed);
}

Verbosity verbosity()
{
    return currentVerbosity.load(std::memory_order_relaxed);
}

void writeErrorLine(std::string_view line)
{
    const std::lock_guard lock(mutex);
    std::string text = lineStands ? kWipe : "";
    lineStands = false;
    text += line;
    text += '\n';
    write(text);
}

bool standardErrorIsTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

int terminalColumns()
{
    constexpr int kUsual = 80;
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

void showChangingLine(std::string_view text)
{
    const std::lock_guard lock(mutex);
    lineStands = true;
    write(kWipe + std::string(text));
}

void clearChangingLine()
{
    const std::lock_guard lock(mutex);
    if (lineStands) write(kWipe);
    lineStands = false;
}

} // namespace ombrix
