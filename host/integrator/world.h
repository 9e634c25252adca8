// A frame's scene, ready to be rendered: what rays can hit, the lights and the camera.
#pragma once

#include "host/integrator/camera.h"
#include "host/integrator/scene_interfaces.h"
#include "host/rt/ray_scene.h"
#include "host/scene/scene.h"

#include <ombrix/renderer.h>

#include <memory>
#include <vector>

namespace ombrix {

// A node as shading needs it. Indexed by the ray scene's instances.
struct WorldNode {
    OUtils::PluginBase* node = nullptr;
    OUtils::MaterialInterface* material = nullptr; // null: the default grey
    const MeshData* mesh = nullptr;
    std::vector<Transform> samples;
    Matrix normalMatrix;    // turns normals into the world, up to length; of a node that stands still
    bool mirrored = false;  // its transform turns the inside out
    bool transmits = false; // some of its points may let light through
    Box bounds;             // world space, over the shutter interval
    float rayOffset = 0.0f; // distance that a new ray keeps from its surface
};

// What lights a scene that has no light.
enum class WithoutLights { WhiteDome, Nothing };

class World {
public:
    // Gathers from the scene's plugins, between frameBegin and frameEnd of the frame. Everything stays
    // valid until frameEnd. Without a camera, and for what a camera leaves unset, all that is visible is
    // framed. Throws WorkError when memory is short.
    World(const std::vector<PluginInstance>& instances, const OUtils::FrameData& frame, int width, int height,
          WithoutLights withoutLights = WithoutLights::WhiteDome);

    const std::vector<WorldNode>& nodes() const { return worldNodes; }
    const RayScene& rays() const { return rayScene; }
    const std::vector<LightDescription>& lights() const { return lightList; }
    const Camera& camera() const { return *viewer; }
    bool hasMotion() const { return moving; }
    bool anyTransmits() const { return transmitting; }
    // The distance that a new ray keeps from a point of which nobody knows what surface it lies on.
    float rayOffsetAt(const Vector& point) const;

private:
    void addNode(OUtils::PluginBase* plugin, SceneNodeInterface& node);
    std::vector<Vector> visiblePoints() const;

    std::vector<WorldNode> worldNodes;
    RayScene rayScene;
    std::vector<LightDescription> lightList;
    std::unique_ptr<Camera> viewer;
    bool moving = false;
    bool transmitting = false;
};

} // namespace ombrix
