// nezaiva render: a scene into a picture, or several.

#include "apps/nezaiva/commands.h"
#include "apps/nezaiva/frame_files.h"
#include "apps/nezaiva/scene_loading.h"
#include "apps/nezaiva/shared_options.h"
#include "host/errors/errors.h"
#include "host/integrator/default_scene.h"
#include "host/integrator/render.h"
#include "host/log/log.h"
#include "host/progress/interrupt_guard.h"
#include "host/progress/progress.h"
#include "host/renderer/setting_limits.h"
#include "host/scene/scene_life.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

using namespace ombrix;

namespace {

struct RenderCall {
    std::string scene, frames, size;
    std::vector<std::string> files; // the same picture in each
    std::optional<double> frame;
    std::optional<int> samples, threads;
    std::vector<std::string> layers;
};

constexpr const char* kFooter =
    "Where nothing is hit the picture is black with alpha 0, unless a DomeLight is visible. EXR keeps values "
    "as they are; PNG, JPEG and the like hold 8 bits of sRGB. A scene without a light has a white dome; "
    "without a camera, all that is visible is framed; one texture without any object is shown on the shader "
    "ball.\n"
    "With --frames, the file's name holds the frame's number in place of %04d or ####, or before its "
    "extension. With more than one --aov, each goes into a file of its own, with its name before the "
    "extension. Ctrl-C writes what is done.";

std::vector<Layer> layersOf(const RenderCall& call)
{
    std::vector<Layer> layers;
    for (const std::string& name : call.layers) {
        const std::optional<Layer> layer = layerNamed(name);
        if (!layer)
            throw WrongInput{fmt::format("--aov: there is no \"{}\"; choose from {}", name, layerNames())};
        layers.push_back(*layer);
    }
    if (layers.empty()) layers.push_back(Layer::Beauty);
    return layers;
}

void applySettings(const RenderCall& call, SceneSettings& settings)
{
    if (call.samples) settings.samples = *call.samples;
    if (call.threads) settings.threads = *call.threads;
    if (!call.size.empty()) {
        const std::optional<PictureSize> size = parsePictureSize(call.size);
        if (!size)
            throw WrongInput{
                fmt::format("--size: \"{}\" is no size; write WIDTHxHEIGHT, as 640x360, each 1 to {}",
                            call.size, kLargestPictureSide)};
        settings.width = size->width;
        settings.height = size->height;
    }
    if (static_cast<std::int64_t>(settings.width) * settings.height > kMostPicturePixels)
        throw WrongInput{fmt::format("a picture of {} x {} pixels is too large; it can have {} pixels",
                                     settings.width, settings.height, kMostPicturePixels)};
}

std::vector<double> framesOf(const RenderCall& call, const SceneSettings& settings)
{
    if (call.frames.empty()) return {call.frame.value_or(settings.frame)};
    const std::optional<FrameRange> range = parseFrameRange(call.frames);
    if (!range)
        throw WrongInput{fmt::format("--frames: \"{}\" is no range; write FIRST-LAST, as 1-24", call.frames)};
    const std::int64_t count = std::int64_t{range->last} - range->first + 1;
    if (count > kMostFrames)
        throw WrongInput{fmt::format("--frames: {} are {} frames; one call renders {} at most", call.frames,
                                     count, kMostFrames)};
    std::vector<double> frames;
    for (std::int64_t frame = range->first; frame <= range->last; ++frame)
        frames.push_back(static_cast<double>(frame));
    return frames;
}

// The whole frame that a file is named after.
int frameNumber(double frame)
{
    constexpr double kLowest = std::numeric_limits<int>::min(), kHighest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::floor(frame), kLowest, kHighest));
}

std::vector<std::string> filesOf(const RenderCall& call, double frame, Layer layer, std::size_t layerCount)
{
    std::vector<std::string> files = call.files;
    for (std::string& file : files) {
        if (!call.frames.empty() || hasFramePattern(file)) file = fileOfFrame(file, frameNumber(frame));
        if (layerCount > 1) file = withNameBeforeExtension(file, layerName(layer));
    }
    return files;
}

ImageAttributes attributesOf(const RenderCall& call, const SceneSettings& settings, double frame, Layer layer,
                             int samples)
{
    ImageAttributes attributes = {
        {"Software", "nezaiva"},
        {"nezaivaScene", call.scene},
        {"nezaivaFrame", fmt::format("{}", frame)},
        {"nezaivaFps", fmt::format("{}", settings.fps)},
        {"nezaivaSamples", fmt::format("{}", samples)},
        {"nezaivaLayer", layerName(layer)},
    };
    if (settings.motionBlur.on)
        attributes["nezaivaShutter"] =
            fmt::format("length {} centre {} samples {}", settings.motionBlur.shutterLength,
                        settings.motionBlur.shutterCenter, settings.motionBlur.geometrySamples);
    return attributes;
}

class FrameRenderer {
public:
    FrameRenderer(const RenderCall& ofCall, Scene& ofScene, std::vector<Layer> wantedLayers)
        : call(ofCall), scene(ofScene), layers(std::move(wantedLayers)),
          threads(renderThreads(scene.settings())), renderer(scene.settings(), threads, &logger),
          tracer(threads)
    {
        renderer.addInterface(&tracer, 0);
        life.emplace(scene, renderer);
    }
    FrameRenderer(const FrameRenderer&) = delete;
    FrameRenderer& operator=(const FrameRenderer&) = delete;

    // Ends the life of the plugins, after the last frame.
    void end() { life->end(); }
    // Renders a frame and writes its files. False when it was interrupted.
    bool render(double frame)
    {
        const SceneSettings& settings = scene.settings();
        Film film(settings.width, settings.height, layers);
        FrameLife frameLife(*life, frame);
        const RenderStatistics statistics = renderInto(film, frame);
        frameLife.end();

        int least = settings.samples;
        for (int tile = 0; tile < film.tileCount(); ++tile)
            least = std::min(least, film.sampleCount(tile));
        for (const Layer layer : layers)
            for (const std::string& file : filesOf(call, frame, layer, layers.size())) {
                writeImage(file, film.image(layer), attributesOf(call, settings, frame, layer, least));
                if (!statistics.complete)
                    say(OUtils::LogLevel::Warning,
                        fmt::format("interrupted; {} holds {} of {} samples a pixel", file, least,
                                    settings.samples));
            }
        report(statistics);
        return statistics.complete;
    }

private:
    RenderStatistics renderInto(Film& film, double frame)
    {
        const World world(scene.instances(), renderer.getFrameData(), film.width(), film.height());

        RenderOptions options;
        options.threads = threads;
        options.samples = scene.settings().samples;
        options.stopped = [] { return InterruptGuard::interrupted(); };
        ProgressBar progress(fmt::format("rendering frame {}", frame), renderSteps(film, options));
        options.advanced = [&progress](std::int64_t steps) { progress.advance(steps); };
        const RenderStatistics statistics = renderWorld(world, tracer, options, film);
        progress.finish();
        return statistics;
    }

    static void report(const RenderStatistics& statistics)
    {
        const double rays = static_cast<double>(statistics.rays.total());
        say(OUtils::LogLevel::Info,
            fmt::format("{} rays ({} from the camera, {} scattered, {} to lights), {:.2f} million a second",
                        statistics.rays.total(), statistics.rays.camera, statistics.rays.scattered,
                        statistics.rays.shadow, rays / std::max(statistics.seconds, 1e-9) * 1e-6));
        if (statistics.rays.notFinite > 0)
            say(OUtils::LogLevel::Warning,
                fmt::format("{} samples were infinite or not a number; they count as black",
                            statistics.rays.notFinite));
    }

    const RenderCall& call;
    Scene& scene;
    std::vector<Layer> layers;
    int threads;
    RecordingLogger logger;
    HostRenderer renderer;
    PathTracer tracer;
    std::optional<RenderLife> life; // ends before what the plugins were handed
};

void render(const CommandLine& commandLine, const RenderCall& call)
{
    std::vector<Layer> layers = layersOf(call);
    PluginRegistry registry;
    loadLibraries(commandLine, registry);
    const std::unique_ptr<Scene> scene = loadScene(call.scene, registry);
    applySettings(call, scene->settings());
    const std::vector<double> frames = framesOf(call, scene->settings());
    for (const double frame : frames)
        for (const Layer layer : layers)
            for (const std::string& file : filesOf(call, frame, layer, layers.size()))
                checkImageCanBeWritten(file);

    Diagnostics diagnostics(shownName(call.scene));
    checkForPicture(*scene, diagnostics);
    const std::string note = addDefaultObjects(*scene, diagnostics);
    diagnostics.print();
    if (diagnostics.failed()) throw WrongInput{};
    if (!note.empty()) say(OUtils::LogLevel::Warning, note);

    const InterruptGuard guard;
    FrameRenderer frameRenderer(call, *scene, std::move(layers));
    for (const double frame : frames)
        if (!frameRenderer.render(frame)) break;
    frameRenderer.end();
}

} // namespace

void addRenderCommand(CLI::App& app, CommandLine& commandLine)
{
    const auto call = std::make_shared<RenderCall>();
    CLI::App* command = app.add_subcommand("render", "Render a scene into a picture");
    command->add_option("scene", call->scene, "The scene file")->required()->type_name("SCENE");
    command
        ->add_option("-o,--output", call->files,
                     "The picture; its extension tells the format. May be given several times")
        ->required()
        ->allow_extra_args(false)
        ->take_all()
        ->type_name("FILE");
    CLI::Option* frame = addFrameOption(*command, call->frame);
    command->add_option("--frames", call->frames, "The frames from A to B, each into a file of its own")
        ->type_name("A-B")
        ->excludes(frame);
    command->add_option("--size", call->size, "Pixels; else width and height of the scene")->type_name("WxH");
    command->add_option("--samples", call->samples, "Samples a pixel; else those of the scene")
        ->check(CLI::Range(1, kMostSamples))
        ->type_name("N");
    addThreadsOption(*command, call->threads);
    command
        ->add_option("--aov", call->layers,
                     "What the picture holds: " + layerNames() + ". May be given several times")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->take_all();
    command->footer(kFooter);
    command->callback([&commandLine, call] { render(commandLine, *call); });
}
