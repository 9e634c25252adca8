#include "apps/nezaiva/standard_output.h"

#include "host/errors/errors.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

void writeToStandardOutput(const std::string& text)
{
    errno = 0;
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written && errno == EPIPE) throw ombrix::ReaderGone{};
    if (!written)
        throw ombrix::WorkError{fmt::format("cannot write to standard output: {}", std::strerror(errno))};
}

std::size_t outputColumns()
{
    constexpr std::size_t kWithoutTerminal = 100, kNarrowest = 40, kWidest = 120;
    winsize size{};
    if (!::isatty(STDOUT_FILENO) || ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kWithoutTerminal;
    return std::clamp<std::size_t>(size.ws_col, kNarrowest, kWidest);
}
