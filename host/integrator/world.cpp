#include "host/integrator/world.h"

namespace ombrix {

namespace {

// Share of a node's largest coordinate that a ray keeps away from the surface it starts from: some units
// in the last place of a float, which is what transforming a hit can be off.
constexpr float kRayOffset = 1.0f / 262144.0f;

} // namespace

World::World(const std::vector<PluginInstance>& instances, const OUtils::FrameData& frame, int width,
             int height, WithoutLights withoutLights)
{
    std::vector<CameraPose> poses{CameraPose{}};
    bool cameraFound = false;
    for (const PluginInstance& instance : instances) {
        OUtils::PluginBase* const plugin = instance.plugin;
        if (auto* node = OUtils::find<SceneNodeInterface>(plugin)) addNode(plugin, *node);
        if (auto* light = OUtils::find<SceneLightInterface>(plugin)) lightList.push_back(light->describe());
        auto* camera = OUtils::find<SceneCameraInterface>(plugin);
        if (camera && !cameraFound) {
            poses.assign(camera->getPoses().begin(), camera->getPoses().end());
            cameraFound = true;
        }
    }
    rayScene.commit();
    if (lightList.empty() && withoutLights == WithoutLights::WhiteDome)
        lightList.push_back(LightDescription{});

    const std::vector<Vector> visible = visiblePoints();
    for (CameraPose& pose : poses)
        pose = completePose(pose, visible, width, height);
    viewer = std::make_unique<Camera>(poses, width, height);
    moving = (moving || poses.size() > 1) && frame.motionBlur;
}

void World::addNode(OUtils::PluginBase* plugin, SceneNodeInterface& node)
{
    const MeshData* mesh = node.getMesh();
    if (!mesh || !node.isVisible()) return;

    WorldNode added;
    added.node = plugin;
    added.mesh = mesh;
    added.material = node.getMaterial();
    added.samples.assign(node.getTransforms().begin(), node.getTransforms().end());
    added.normalMatrix = cofactors(added.samples.front().matrix);
    added.mirrored = determinant(added.samples.front().matrix) < 0.0f;
    if (added.material) {
        auto* surface = OUtils::find<SurfaceMaterialInterface>(added.material->getPlugin());
        added.transmits = !surface || !surface->isOpaque();
    }
    for (const Transform& sample : added.samples)
        for (int i = 0; i < 8; ++i)
            extend(added.bounds, transformPoint(sample, corner(mesh->bounds, i)));
    const Box& bounds = added.bounds;
    added.rayOffset = std::max(largestComponent(bounds.lower), largestComponent(bounds.upper)) * kRayOffset;

    rayScene.addInstance(*mesh, added.samples);
    moving = moving || added.samples.size() > 1;
    transmitting = transmitting || added.transmits;
    worldNodes.push_back(std::move(added));
}

float World::rayOffsetAt(const Vector& point) const
{
    float offset = 0.0f;
    for (const WorldNode& node : worldNodes) {
        const Box& bounds = node.bounds;
        const Vector around{node.rayOffset, node.rayOffset, node.rayOffset};
        if (isWithin({bounds.lower - around, bounds.upper + around}, point))
            offset = std::max(offset, node.rayOffset);
    }
    return offset;
}

std::vector<Vector> World::visiblePoints() const
{
    std::vector<Vector> points;
    for (const WorldNode& node : worldNodes)
        for (const Transform& sample : node.samples)
            for (int i = 0; i < 8; ++i)
                points.push_back(transformPoint(sample, corner(node.mesh->bounds, i)));
    return points;
}

} // namespace ombrix
