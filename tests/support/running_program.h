// A program that runs beside the test, with its standard error on a terminal.
#pragma once

#include "support/program.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace support {

class RunningProgram {
public:
    explicit RunningProgram(std::vector<std::string> words)
    {
        int outputEnds[2], errorEnds[2];
        check(::pipe2(outputEnds, O_CLOEXEC));
        openTerminal(errorEnds);
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        check(child = ::fork());
        if (child == 0) {
            ::dup2(outputEnds[1], STDOUT_FILENO);
            ::dup2(errorEnds[1], STDERR_FILENO);
            ::execv(arguments[0], arguments.data());
            ::_exit(127);
        }
        ::close(outputEnds[1]);
        ::close(errorEnds[1]);
        outputEnd = outputEnds[0];
        errorEnd = errorEnds[0];
    }
    ~RunningProgram()
    {
        if (child > 0) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
        }
        ::close(outputEnd);
        ::close(errorEnd);
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    // Waits until standard error holds the text. False when the program ends, or a minute passes, first.
    bool waitForErrors(const std::string& text)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (result.errors.find(text) == std::string::npos)
            if (std::chrono::steady_clock::now() > end || !readSome()) return false;
        return true;
    }
    void send(int signal) { ::kill(child, signal); }
    ProgramRun wait()
    {
        while (readSome())
            continue;
        int status = 0;
        ::waitpid(child, &status, 0);
        child = -1;
        if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
        return std::move(result);
    }

private:
    static void check(int returned)
    {
        if (returned < 0) throw std::system_error(errno, std::generic_category());
    }
    static void openTerminal(int (&ends)[2])
    {
        check(ends[0] = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
        check(::grantpt(ends[0]));
        check(::unlockpt(ends[0]));
        check(ends[1] = ::open(::ptsname(ends[0]), O_RDWR | O_NOCTTY | O_CLOEXEC));
    }
    // False when both ends are closed.
    bool readSome()
    {
        pollfd ends[2] = {{outputOpen ? outputEnd : -1, POLLIN, 0}, {errorOpen ? errorEnd : -1, POLLIN, 0}};
        if (!outputOpen && !errorOpen) return false;
        if (::poll(ends, 2, 1000) <= 0) return true;
        if (ends[0].revents) outputOpen = readInto(outputEnd, result.output);
        if (ends[1].revents) errorOpen = readInto(errorEnd, result.errors);
        return true;
    }
    static bool readInto(int end, std::string& text)
    {
        char buffer[4096];
        const ssize_t count = ::read(end, buffer, sizeof buffer);
        if (count <= 0) return false;
        text.append(buffer, static_cast<std::size_t>(count));
        return true;
    }

    pid_t child = -1;
    int outputEnd = -1, errorEnd = -1;
    bool outputOpen = true, errorOpen = true;
    ProgramRun result;
};

} // namespace support
