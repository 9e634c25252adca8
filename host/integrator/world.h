// A frame's scene, ready to be rendered: what rays can hit, the lights and the camera.
#pragma once

#include "host/integrator/camera.h"
#include "host/integrator/scene_interfaces.h"
#include "host/rt/ray_scene.h"

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
    float rayOffset = 0.0f; // distance that a new ray keeps from its surface
};

class World {
public:
    // Gathers from the scene's plugins, between frameBegin and frameEnd of the frame. Everything stays
    // valid until frameEnd. Without a light there is a white dome; without a camera, and for what a camera
    // leaves unset, all that is visible is framed. Throws WorkError when memory is short.
    World(const std::vector<OUtils::PluginBase*>& plugins, const OUtils::FrameData& frame, int width,
          int height);

    const std::vector<WorldNode>& nodes() const { return worldNodes; }
    const RayScene& rays() const { return rayScene; }
    const std::vector<LightDescription>& lights() const { return lightList; }
    const Camera& camera() const { return *viewer; }
    bool hasMotion() const { return moving; }
    bool anyTransmits() const { return transmitting; }

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
