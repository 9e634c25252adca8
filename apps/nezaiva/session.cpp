#include "apps/nezaiva/session.h"

#include "host/log/log.h"
#include "host/renderer/setting_limits.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

using namespace ombrix;

void loadLibraries(const CommandLine& commandLine, PluginRegistry& registry)
{
    if (commandLine.quiet)
        setVerbosity(Verbosity::Quiet);
    else
        setVerbosity(commandLine.verbose ? Verbosity::Verbose : Verbosity::Normal);
    if (commandLine.libraries.empty()) {
        registry.loadDefaultLibraries(commandLine.programFolder);
        return;
    }
    for (const std::string& library : commandLine.libraries)
        registry.loadLibrary(library);
}

CLI::Option* addFrameOption(CLI::App& command, std::optional<double>& frame)
{
    const auto problem = [](const std::string& text) {
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        const bool whole = !text.empty() && *end == '\0';
        if (whole && std::isfinite(number)) return std::string();
        return fmt::format("\"{}\" is no frame; write a finite number, as 12 or 2.5", text);
    };
    return command.add_option("--frame", frame, "The frame; else that of the scene")
        ->check(CLI::Validator(problem, ""))
        ->type_name("F");
}

CLI::Option* addThreadsOption(CLI::App& command, std::optional<int>& threads)
{
    return command.add_option("--threads", threads, "Threads, 0 for all processors; else those of the scene")
        ->check(CLI::Range(0, kMostThreads))
        ->type_name("N");
}

std::unique_ptr<Scene> loadScene(const std::string& file, PluginRegistry& registry)
{
    Diagnostics diagnostics(shownName(file));
    std::unique_ptr<Scene> scene = Scene::load(file, registry, diagnostics);
    diagnostics.print();
    if (!scene) throw WrongInput{};
    return scene;
}

std::string shownName(const std::string& file)
{
    return file == "-" ? "standard input" : file;
}

int renderThreads(const SceneSettings& settings)
{
    if (settings.threads > 0) return settings.threads;
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

SceneObject findSceneObject(const Scene& scene, const std::string& reference)
{
    std::string problem;
    const SceneObject object = scene.resolve(reference, problem);
    if (!object.instance) throw WrongInput{problem};
    return object;
}

void writeToStandardOutput(const std::string& text)
{
    errno = 0;
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written && errno == EPIPE) throw ReaderGone{};
    if (!written) throw WorkError{fmt::format("cannot write to standard output: {}", std::strerror(errno))};
}

std::size_t outputColumns()
{
    constexpr std::size_t kWithoutTerminal = 100, kNarrowest = 40, kWidest = 120;
    winsize size{};
    if (!::isatty(STDOUT_FILENO) || ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kWithoutTerminal;
    return std::clamp<std::size_t>(size.ws_col, kNarrowest, kWidest);
}
