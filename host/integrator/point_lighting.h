// The light of a scene at single points, without a picture.
#pragma once

#include "host/integrator/path_tracer.h"
#include "host/scene/scene.h"

#include <memory>

namespace ombrix {

// While one lives the renderer offers it to materials: the scene's lights, and nothing else, light each
// point that they shade, and its visible objects shadow it and light it back. Make it before frameBegin of
// a frame, and let it go after frameEnd. On one thread alone.
class PointLighting : public SurfaceLightingInterface {
public:
    PointLighting(const Scene& scene, HostRenderer& renderer);
    PointLighting(const PointLighting&) = delete;
    PointLighting& operator=(const PointLighting&) = delete;
    ~PointLighting() override;

    OUtils::PluginBase* getPlugin() override { return nullptr; }
    // Throws WorkError when memory is short.
    void shadeSurface(const OUtils::OmbrixContext& context, const SurfaceSample& surface,
                      OUtils::ShadeResult* result) override;

private:
    const Scene& scene;
    HostRenderer& renderer;
    std::unique_ptr<World> world; // made for the first point that asks
    PathTracer tracer;
    bool atPoint = false; // while a point's rays are followed
};

} // namespace ombrix
