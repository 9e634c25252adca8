// Renders scenes given as text, in memory.
#pragma once

#include "host/integrator/default_scene.h"
#include "host/integrator/render.h"
#include "host/scene/scene_life.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace ombrix {

class RenderedScene {
public:
    // plugins: the inside of the object "plugins" of a scene file. settings: of "settings".
    explicit RenderedScene(const std::string& plugins, const std::string& settings = "", int threadCount = 2)
        : threads(threadCount)
    {
        const std::string text =
            R"({"ombrix_scene": 1, "settings": {)" + settings + R"(}, "plugins": {)" + plugins + "}}";
        Diagnostics diagnostics("test");
        scene = Scene::parse(text, ".", registry, diagnostics);
        for (const std::string& line : diagnostics.lines())
            ADD_FAILURE() << line;
        if (!scene) return;
        note = addDefaultObjects(*scene, diagnostics);
        for (const std::string& line : diagnostics.lines())
            ADD_FAILURE() << line;
        logger = std::make_unique<RecordingLogger>(false);
        renderer = std::make_unique<HostRenderer>(scene->settings(), threads, logger.get());
        tracer = std::make_unique<PathTracer>(threads);
        renderer->addInterface(tracer.get(), 0);
        renderLife = std::make_unique<RenderLife>(*scene, *renderer);
        frameLife = std::make_unique<FrameLife>(*renderLife, scene->settings().frame);
        frameLog = logger->takeLines();
    }

    std::unique_ptr<World> world(int width, int height) const
    {
        return std::make_unique<World>(scene->instances(), renderer->getFrameData(), width, height);
    }

    Film film(int width, int height, int samples, std::vector<Layer> layers = {Layer::Beauty})
    {
        Film result(width, height, std::move(layers));
        const auto built = world(width, height);
        RenderOptions options;
        options.threads = threads;
        options.samples = samples;
        statistics = renderWorld(*built, *tracer, options, result);
        return result;
    }
    Image image(int width, int height, int samples, Layer layer = Layer::Beauty)
    {
        return film(width, height, samples, {layer}).image(layer);
    }

    PluginRegistry registry;
    std::unique_ptr<Scene> scene;
    std::unique_ptr<RecordingLogger> logger;
    std::unique_ptr<HostRenderer> renderer;
    std::unique_ptr<PathTracer> tracer;
    std::vector<LogLine> frameLog;
    RenderStatistics statistics;
    std::string note;
    int threads;
    std::unique_ptr<RenderLife> renderLife;
    std::unique_ptr<FrameLife> frameLife;
};

// The mean of a channel over the pixels of a rectangle, right and bottom outside.
inline double meanOf(const Image& image, int channel, int left, int top, int right, int bottom)
{
    double sum = 0.0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            sum += static_cast<double>(image.pixel(x, y)[channel]);
    return sum / ((right - left) * (bottom - top));
}

// A ball of radius 1 around the origin with a surface of these parameters.
inline std::string ball(const std::string& surface, const std::string& node = "")
{
    return R"("mesh": {"type": "Mesh", "params": {"shape": "sphere"}}, "look": {"type": "Surface", "params": {)" +
           surface + R"(}}, "node": {"type": "Node", "params": {"geometry": "mesh", "material": "look")" +
           (node.empty() ? "" : ", " + node) + "}}";
}

// A wide plane at y = 0 with a surface of these parameters, seen from above by a camera close to it.
inline std::string floorFromAbove(const std::string& surface)
{
    return R"("mesh": {"type": "Mesh", "params": {"shape": "plane"}}, "look": {"type": "Surface", "params": {)" +
           surface +
           R"(}}, "node": {"type": "Node", "params": {"geometry": "mesh", "material": "look",
              "transform": {"scale": [100, 1, 100]}}},
              "camera": {"type": "Camera", "params": {"position": [0, 10, 0], "target": [0, 0, 0],
              "up": [0, 0, -1], "fov": 2}})";
}

} // namespace ombrix
