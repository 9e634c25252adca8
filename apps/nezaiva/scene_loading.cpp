#include "apps/nezaiva/scene_loading.h"

#include "host/console/console.h"
#include "host/errors/errors.h"

#include <algorithm>
#include <thread>

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
