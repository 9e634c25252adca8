// nezaiva bake: a texture over the unit square into an image.

#include "apps/nezaiva/commands.h"
#include "apps/nezaiva/scene_loading.h"
#include "apps/nezaiva/shared_options.h"
#include "host/bake/bake.h"
#include "host/errors/errors.h"
#include "host/image/image.h"
#include "host/log/log.h"
#include "host/progress/interrupt_guard.h"
#include "host/renderer/setting_limits.h"
#include "host/scene/scene_life.h"

#include <fmt/format.h>

#include <memory>
#include <optional>

using namespace ombrix;

namespace {

struct BakeOptions {
    std::string scene, texture, file;
    std::optional<int> size, threads;
    std::optional<double> frame;
    bool withoutAlpha = false;
};

constexpr const char* kFooter =
    "u runs to the right and v up: the top row of the image holds the largest v. Each pixel is the\n"
    "texture at the centre of its texel, without filtering. Colors keep their alpha; floats and ints\n"
    "become grey, vectors red, green and blue. EXR keeps values as they are; PNG, JPEG and the like\n"
    "hold 8 bits of sRGB.\n"
    "Ctrl-C writes what is done.";

BakeSource sourceOf(const Scene& scene, const std::string& reference)
{
    const SceneObject object = findSceneObject(scene, reference);
    const auto source = findBakeSource(object);
    if (source) return *source;
    throw WrongInput{
        fmt::format("\"{}\" is a {}, which is no texture that gives colors, floats, ints or vectors",
                    reference, object.instance->kind->desc->getName())};
}

void dropAlpha(Image& image)
{
    if (image.channels != 4) return;
    std::vector<float> colors;
    colors.reserve(image.pixels.size() / 4 * 3);
    for (std::size_t i = 0; i < image.pixels.size(); i += 4)
        colors.insert(colors.end(), &image.pixels[i], &image.pixels[i] + 3);
    image.pixels = std::move(colors);
    image.channels = 3;
}

void bake(CommandLine& commandLine, const BakeOptions& options)
{
    PluginRegistry registry;
    loadLibraries(commandLine, registry);
    const auto scene = loadScene(options.scene, registry);
    if (options.threads) scene->settings().threads = *options.threads;
    const BakeSource source = sourceOf(*scene, options.texture);
    checkImageCanBeWritten(options.file);

    const int size = options.size.value_or(scene->settings().bakeSize);
    const double frame = options.frame.value_or(scene->settings().frame);
    const int threads = renderThreads(scene->settings());
    RecordingLogger logger;
    HostRenderer renderer(scene->settings(), threads, &logger);
    const InterruptGuard guard;
    RenderLife renderLife(*scene, renderer);
    FrameLife frameLife(renderLife, frame);
    ProgressBar progress("baking " + options.texture, static_cast<std::int64_t>(size) * size);
    BakeResult result = bakeTexture(source, size, threads, progress);
    progress.finish();
    frameLife.end();
    renderLife.end();

    if (options.withoutAlpha) dropAlpha(result.image);
    writeImage(options.file, result.image, {{"Software", "nezaiva"}, {"nezaivaTexture", options.texture}});
    const std::int64_t all = static_cast<std::int64_t>(size) * size;
    if (result.doneTexels < all)
        say(OUtils::LogLevel::Warning,
            fmt::format("interrupted; {} holds {} of {} texels", options.file, result.doneTexels, all));
}

} // namespace

void addBakeCommand(CLI::App& app, CommandLine& commandLine)
{
    const auto options = std::make_shared<BakeOptions>();
    CLI::App* command = app.add_subcommand("bake", "Write a texture over the unit square into an image");
    command->add_option("scene", options->scene, "The scene file")->required()->type_name("SCENE");
    command
        ->add_option("texture", options->texture, "The texture: a plugin of the scene, or one of its outputs")
        ->required()
        ->type_name("PLUGIN[.OUTPUT]");
    command->add_option("-o,--output", options->file, "The image; its extension tells the format")
        ->required()
        ->type_name("FILE");
    command->add_option("--size", options->size, "Pixels on a side; else bake_size of the scene")
        ->check(CLI::Range(1, kLargestBakeSize))
        ->type_name("N");
    addFrameOption(*command, options->frame);
    addThreadsOption(*command, options->threads);
    command->add_flag("--no-alpha", options->withoutAlpha, "Leave out the alpha of a color texture");
    command->footer(kFooter);
    command->callback([&commandLine, options] { bake(commandLine, *options); });
}
