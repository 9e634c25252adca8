// The commands of the program: each adds its options to the command line and runs when it is named.
#pragma once

#include <CLI/CLI.hpp>

#include <filesystem>
#include <string>
#include <vector>

// Exit codes of the program.
enum ExitCode : int {
    kDone = 0,
    kWorkFailed = 1, // a file that cannot be read or written, memory
    kWrongInput = 2, // the call, or a file's contents
};

// What holds for every command.
struct CommandLine {
    std::vector<std::string> libraries; // --library, in their order
    bool quiet = false;
    bool verbose = false;
    std::filesystem::path programFolder;
    int exitCode = kDone;
};

// A command's callback runs after the whole command line was read. It sets exitCode. What it throws ends
// in main as one "error: " line, with the exit code kWrongInput for WrongInput, else kWorkFailed.
void addListCommand(CLI::App& app, CommandLine& commandLine);
void addDescribeCommand(CLI::App& app, CommandLine& commandLine);
void addProbeCommand(CLI::App& app, CommandLine& commandLine);
void addSourceCommand(CLI::App& app, CommandLine& commandLine);
void addBakeCommand(CLI::App& app, CommandLine& commandLine);
void addRenderCommand(CLI::App& app, CommandLine& commandLine);
