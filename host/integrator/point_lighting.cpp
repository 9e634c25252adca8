#include "host/integrator/point_lighting.h"

namespace ombrix {

namespace {

// Outside of the plugins' tables: they keep what they computed by thread and stamp, and the stamps of the
// rays' hits may be those of points that the caller made up.
constexpr int kThreadOfRays = -1;

} // namespace

PointLighting::PointLighting(const Scene& of, HostRenderer& by)
    : scene(of), renderer(by), tracer(1, kThreadOfRays)
{
    renderer.addInterface(this, 0);
}

PointLighting::~PointLighting()
{
    renderer.removeInterface(this);
}

void PointLighting::shadeSurface(const OUtils::OmbrixContext& context, const SurfaceSample& surface,
                                 OUtils::ShadeResult* result)
{
    if (atPoint) {
        tracer.shadeSurface(context, surface, result);
        return;
    }
    if (!world) {
        const SceneSettings& settings = scene.settings();
        world = std::make_unique<World>(scene.instances(), renderer.getFrameData(), settings.width,
                                        settings.height, WithoutLights::Nothing);
        tracer.setWorld(world.get());
    }
    atPoint = true;
    tracer.shadePoint(context, surface, result);
    atPoint = false;
}

} // namespace ombrix
