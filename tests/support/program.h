// Runs a program as a person would: with arguments, standard input and a folder.
#pragma once

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace support {

struct ProgramRun {
    int exitCode = -1; // -1 for a program that a signal ended
    std::string output, errors;
};

// Reads all of a pipe.
inline std::string drained(int descriptor)
{
    std::string text;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(descriptor, buffer, sizeof buffer)) != 0;) {
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) break;
        text.append(buffer, static_cast<std::size_t>(count));
    }
    ::close(descriptor);
    return text;
}

inline ProgramRun runProgram(const std::vector<std::string>& arguments, const std::string& input = {},
                             const std::filesystem::path& folder = {})
{
    int in[2], out[2], err[2];
    if (::pipe(in) || ::pipe(out) || ::pipe(err))
        throw std::system_error(errno, std::generic_category(), "pipe");
    const pid_t child = ::fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        ::dup2(in[0], 0);
        ::dup2(out[1], 1);
        ::dup2(err[1], 2);
        for (const int descriptor : {in[0], in[1], out[0], out[1], err[0], err[1]})
            ::close(descriptor);
        if (!folder.empty() && ::chdir(folder.c_str()) != 0) ::_exit(126);
        std::vector<char*> argv;
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    ::close(err[1]);
    std::signal(SIGPIPE, SIG_IGN); // the program may not read its input
    ProgramRun run;
    std::thread errors([&] { run.errors = drained(err[0]); });
    std::thread writer([&] {
        for (std::size_t done = 0; done < input.size();) {
            const ssize_t count = ::write(in[1], input.data() + done, input.size() - done);
            if (count <= 0) break;
            done += static_cast<std::size_t>(count);
        }
        ::close(in[1]);
    });
    run.output = drained(out[0]);
    errors.join();
    writer.join();
    int status = 0;
    ::waitpid(child, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace support
