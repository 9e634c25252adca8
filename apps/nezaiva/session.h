// What several commands begin with: the talk's verbosity, the libraries, a scene.
#pragma once

#include "apps/nezaiva/commands.h"
#include "host/plugins/registry.h"
#include "host/scene/scene.h"

#include <memory>
#include <optional>
#include <string>

// Thrown when the call or a file's contents are wrong; main prints the message as an "error: " line,
// unless it is empty because the errors stand on standard error already, and exits with kWrongInput.
struct WrongInput {
    std::string message;
};

// Sets the verbosity and loads the libraries that the command line asks for, or the default ones.
// Throws LibraryError.
void loadLibraries(const CommandLine& commandLine, ombrix::PluginRegistry& registry);

// The options that several commands have: --frame, a finite number, and --threads.
CLI::Option* addFrameOption(CLI::App& command, std::optional<double>& frame);
CLI::Option* addThreadsOption(CLI::App& command, std::optional<int>& threads);

// Reads a scene and prints its warnings and errors. Never null. Throws WrongInput when the scene holds
// errors, WorkError when the file cannot be read.
std::unique_ptr<ombrix::Scene> loadScene(const std::string& file, ombrix::PluginRegistry& registry);

// What messages call a file: its name, "standard input" for "-".
std::string shownName(const std::string& file);

// settings.threads, or the number of processors for 0.
int renderThreads(const ombrix::SceneSettings& settings);

// Splits "name" or "name.output" as a reference in a scene does. Throws WrongInput, with the nearest
// name, when the scene has no such plugin or the plugin no such output.
ombrix::SceneObject findSceneObject(const ombrix::Scene& scene, const std::string& reference);

// Thrown when the reader of standard output has gone away, as in `nezaiva list | head`. main ends the
// program silently then, as the signal SIGPIPE ends other programs.
struct ReaderGone {};

// Writes data to standard output. Throws ReaderGone, or WorkError when it does not take it all.
void writeToStandardOutput(const std::string& text);
// The columns of the terminal that standard output goes to, within what reads well; 100 without one.
std::size_t outputColumns();
