// nezaiva source: the GPU text of a texture, and the bitmaps that it refers to.

#include "apps/nezaiva/commands.h"
#include "apps/nezaiva/scene_loading.h"
#include "apps/nezaiva/shared_options.h"
#include "apps/nezaiva/standard_output.h"
#include "host/errors/errors.h"
#include "host/gpu/host_gpu.h"
#include "host/gpu/source_tree.h"
#include "host/image/image.h"
#include "host/log/log.h"
#include "host/scene/scene_life.h"

#include <fmt/format.h>

#include <memory>
#include <optional>
#include <system_error>

using namespace ombrix;

namespace {

struct SourceOptions {
    std::string scene, texture, folder, name, tag, descriptor = "MaterialDescriptor";
    std::optional<double> frame;
    bool tree = false;
};

constexpr const char* kFooter =
    "Bitmaps are written as INDEX_NAME.png, where INDEX is the number that the text refers to. The files "
    "hold "
    "the bytes that the GPU gets.\n"
    "A tree shows the line of the text in front. Text that is not understood is told line by line, and the "
    "exit code is 1.";
constexpr std::size_t kMostProblems = 20;

// The texture's name as a part of a file name.
std::string fileNamePart(const std::string& name)
{
    std::string part;
    for (const char c : name) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        part += plain || c == '-' || c == '.' || c == '_' ? c : '_';
    }
    return part.empty() ? "bitmap" : part;
}

// The bytes as they are: numbers rather than colours, and nothing multiplied.
Image imageOf(const GpuBitmap& bitmap)
{
    Image image;
    image.width = bitmap.width;
    image.height = bitmap.height;
    image.channels = 4;
    image.alpha = AlphaKind::Straight;
    image.isData = true;
    image.pixels.reserve(bitmap.pixels.size() * 4);
    for (const std::uint32_t pixel : bitmap.pixels)
        for (const int shift : {16, 8, 0, 24}) // red, green, blue, alpha
            image.pixels.push_back(static_cast<float>(pixel >> shift & 0xFFu) / 255.0f);
    return image;
}

void writeBitmaps(const std::filesystem::path& folder, const HostOCLData& data)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw WorkError{fmt::format("cannot make the folder {}: {}", folder.string(), error.message())};
    for (std::size_t i = 0; i < data.bitmaps().size(); ++i) {
        const GpuBitmap& bitmap = data.bitmaps()[i];
        const std::filesystem::path file = folder / fmt::format("{:03}_{}.png", i, fileNamePart(bitmap.name));
        writeImage(file, imageOf(bitmap), {{"Software", "nezaiva"}});
        say(OUtils::LogLevel::Info, fmt::format("wrote {}", file.string()));
    }
}

std::string bitmapWords(const HostOCLData& data, int index)
{
    if (static_cast<std::size_t>(index) >= data.bitmaps().size()) return {};
    const GpuBitmap& bitmap = data.bitmaps()[static_cast<std::size_t>(index)];
    return fmt::format("\"{}\" {} x {}", bitmap.name, bitmap.width, bitmap.height);
}

// Prints the tree even of a text that is not understood, as far as it goes.
void printTree(const std::string& text, const HostOCLData& data)
{
    SourceReaderOptions readerOptions;
    readerOptions.bitmaps = data.bitmaps().size();
    const SourceReading reading = readSource(text, readerOptions);
    SourceTreeOptions treeOptions;
    treeOptions.describeBitmap = [&](int index) { return bitmapWords(data, index); };
    writeToStandardOutput(drawSourceTree(reading, treeOptions));
    std::size_t errors = 0;
    for (const SourceProblem& problem : reading.problems) {
        const bool isError = problem.weight == SourceProblem::Weight::Error;
        errors += isError;
        if (!isError || errors <= kMostProblems)
            say(isError ? OUtils::LogLevel::Error : OUtils::LogLevel::Info, problemText(problem));
    }
    if (errors > kMostProblems)
        say(OUtils::LogLevel::Error, fmt::format("and {} more", errors - kMostProblems));
    if (reading.emptyInputs > 0)
        say(OUtils::LogLevel::Warning,
            fmt::format("{} of the operators' inputs are empty: unset, or without a GPU form",
                        reading.emptyInputs));
    if (errors > 0) throw WorkError{"a consumer would not understand this source"};
}

void source(const CommandLine& commandLine, const SourceOptions& options)
{
    PluginRegistry registry;
    loadLibraries(commandLine, registry);
    const std::unique_ptr<Scene> scene = loadScene(options.scene, registry);
    const SceneObject object = findSceneObject(*scene, options.texture);

    RecordingLogger logger;
    HostRenderer renderer(scene->settings(), renderThreads(scene->settings()), &logger);
    HostOCLData data(&renderer, scene->settings().gpuBlockStore);
    RenderLife renderLife(*scene, renderer);
    FrameLife frameLife(renderLife, options.frame.value_or(scene->settings().frame));
    auto* texture = static_cast<OUtils::RTTexInterface*>(object.getInterface(OUtils::EXT_RTTEX));
    if (!texture)
        throw WrongInput{fmt::format("{} \"{}\" has no GPU source: it offers no EXT_RTTEX",
                                     object.instance->kind->desc->getName(), options.texture)};
    HostShaderSource text;
    const int answered =
        texture->getSource(options.name.c_str(), options.tag.c_str(), options.descriptor.c_str(), text, data);
    frameLife.end();
    renderLife.end();
    if (!answered)
        throw WorkError{fmt::format("{} \"{}\" gives no source for \"{}\"",
                                    object.instance->kind->desc->getName(), options.texture,
                                    options.descriptor)};
    if (!options.folder.empty()) writeBitmaps(options.folder, data);
    if (options.tree)
        printTree(text.text, data);
    else
        writeToStandardOutput(text.text);
}

} // namespace

void addSourceCommand(CLI::App& app, CommandLine& commandLine)
{
    const auto options = std::make_shared<SourceOptions>();
    CLI::App* command = app.add_subcommand("source", "Print the GPU source of a texture");
    command->add_option("scene", options->scene, "The scene file")->required()->type_name("SCENE");
    command->add_option("texture", options->texture, "A plugin of the scene, or one of its outputs")
        ->required()
        ->type_name("PLUGIN[.OUTPUT]");
    command->add_option("--bitmaps", options->folder, "Write the baked bitmaps into this folder")
        ->type_name("DIR");
    command->add_flag("--tree", options->tree, "Draw the source as a tree of its slots, and check it");
    addFrameOption(*command, options->frame);
    command->add_option("--name", options->name, "The name that the texture is asked with")
        ->type_name("TEXT");
    command->add_option("--tag", options->tag, "The tag that the texture is asked with")->type_name("TEXT");
    command->add_option("--descriptor", options->descriptor, "The consumer that the source is for")
        ->type_name("TEXT")
        ->capture_default_str();
    command->footer(kFooter);
    command->callback([&commandLine, options] { source(commandLine, *options); });
}
