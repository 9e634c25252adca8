// nezaiva probe: what the nodes of a scene give at chosen points.

#include "apps/nezaiva/commands.h"
#include "apps/nezaiva/scene_loading.h"
#include "apps/nezaiva/standard_output.h"
#include "host/errors/errors.h"
#include "host/files/output_file.h"
#include "host/probe/probe_run.h"
#include "host/scene/json_text.h"

#include <memory>

using namespace ombrix;

namespace {

struct ProbeOptions {
    std::string scene, probe, file;
};

constexpr const char* kFooter =
    "Runs the whole life of the scene's plugins and answers in JSON, one result for each request of the "
    "probe. Without a probe, the plugins live through one frame. A request that cannot run is answered with "
    "an \"error\", the others as usual; the exit code is 2 then.\n"
    "\n"
    "Example, one request at one point:\n"
    "{\"ombrix_probe\": 1, \"requests\": [{\"plugin\": \"cloth\", \"op\": \"color\", \"contexts\": "
    "[{\"surface\": {\"uvw\": [0.25, 0.5, 0]}}]}]}";

ProbeFile readProbeFile(const std::string& file, const Scene& scene)
{
    if (file.empty()) return emptyProbe(scene);
    Diagnostics diagnostics(shownName(file));
    const std::optional<nlohmann::json> document = parseJsonText(readTextFile(file), diagnostics);
    ProbeFile probe;
    if (document) probe = readProbe(JsonPlace(*document, "", diagnostics), scene);
    diagnostics.print();
    if (diagnostics.failed()) throw WrongInput{};
    return probe;
}

void runProbeCommand(CommandLine& commandLine, const ProbeOptions& options)
{
    if (options.scene == "-" && options.probe == "-")
        throw WrongInput{"only one of the scene and the probe can come from standard input"};
    PluginRegistry registry;
    loadLibraries(commandLine, registry);
    const std::unique_ptr<Scene> scene = loadScene(options.scene, registry);
    const ProbeFile probe = readProbeFile(options.probe, *scene);
    Diagnostics diagnostics(shownName(options.probe));
    const ProbeAnswer answer = runProbe(*scene, probe, diagnostics);
    const std::string text = formatJson(answer.json);
    if (options.file.empty())
        writeToStandardOutput(text);
    else
        writeOutputFile(options.file, text);
    diagnostics.print();
    if (!answer.allAnswered) commandLine.exitCode = kWrongInput;
}

} // namespace

void addProbeCommand(CLI::App& app, CommandLine& commandLine)
{
    const auto options = std::make_shared<ProbeOptions>();
    CLI::App* command = app.add_subcommand("probe", "Ask the nodes of a scene what they give at points");
    command->add_option("scene", options->scene, "The scene file")->required()->type_name("SCENE");
    command->add_option("probe", options->probe, "The probe file; - is standard input")->type_name("PROBE");
    command->add_option("-o,--output", options->file, "Write the answer to a file instead of standard output")
        ->type_name("FILE");
    command->footer(kFooter);
    command->callback([&commandLine, options] { runProbeCommand(commandLine, *options); });
}
