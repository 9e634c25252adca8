// Libraries and scenes, as the command line names them.
#pragma once

#include "apps/nezaiva/commands.h"
#include "host/plugins/registry.h"
#include "host/scene/scene.h"

#include <memory>
#include <string>

// Sets the verbosity and loads the libraries that the command line asks for, or the default ones.
// Throws LibraryError.
void loadLibraries(const CommandLine& commandLine, ombrix::PluginRegistry& registry);

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
