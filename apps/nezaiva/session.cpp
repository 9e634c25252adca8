#include "apps/nezaiva/session.h"

#include "host/log/log.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
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

std::unique_ptr<Scene> loadScene(const std::string& file, PluginRegistry& registry)
{
    Diagnostics diagnostics(file == "-" ? "standard input" : file);
    std::unique_ptr<Scene> scene = Scene::load(file, registry, diagnostics);
    diagnostics.print();
    if (!scene) throw WrongInput{};
    return scene;
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
