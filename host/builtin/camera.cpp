// Camera: where the picture is taken from.

#include "host/integrator/camera.h"
#include "host/builtin/parameter_values.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/registry.h"
#include "host/scene/contents_check.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using namespace OUtils;

constexpr float kDefaultFov = 40.0f;

class CameraParams : public OmbrixParameterListDesc {
public:
    CameraParams()
    {
        addParamColor(
            "position", Color{}, -1,
            "Where it stands, [x, y, z]; left out, it frames all that is visible from the front, a little "
            "above",
            kPointMetadata);
        addParamColor("target", Color{}, -1,
                      "What it looks at, [x, y, z]; left out, the middle of all that is visible",
                      kPointMetadata);
        addParamColor("up", Color{0.0f, 1.0f, 0.0f}, -1, "What is up in the picture", kDirectionMetadata);
        addParamFloat("fov", kDefaultFov, -1, "Horizontal field of view",
                      "displayName=(Field of view), units=(degrees), minValue=(0), maxValue=(180)");
    }
};

class CameraPlugin : public OmbrixPlugin, public SceneCameraInterface, public ContentsCheckInterface {
public:
    explicit CameraPlugin(OmbrixPluginDesc* desc) : OmbrixPlugin(desc) {}

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kSceneCameraId) return static_cast<SceneCameraInterface*>(this);
        if (id == kContentsCheckId) return static_cast<ContentsCheckInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    std::span<const CameraPose> getPoses() override { return poses; }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        const FrameData frame = renderer ? renderer->getFrameData() : FrameData{};
        bool moving = false;
        for (const char* name : {"position", "target", "up", "fov"})
            moving = moving || isAnimated(*paramList, name);
        const int samples = moving && frame.motionBlur ? std::max(frame.geometrySamples, 1) : 1;
        poses.clear();
        for (int i = 0; i < samples; ++i) {
            const double t = samples > 1 ? static_cast<double>(i) / (samples - 1) : 0.0;
            const double between = frame.intervalStart + (frame.intervalEnd - frame.intervalStart) * t;
            poses.push_back(poseAt(samples > 1 ? between : frame.time, frame.sceneOrigin));
        }
        if (!isFinite(poses.front().position.value_or(Vector{})) ||
            !isFinite(poses.front().target.value_or(Vector{})))
            reportBadPlace(renderer);
    }

    std::optional<ContentsProblem> findProblem() override
    {
        for (const double time : sampleTimes(*paramList, {"fov"})) {
            const float fov = fovAt(time);
            if (fov > 0.0f && fov < 180.0f) continue;
            return ContentsProblem{"fov",
                                   fmt::format("takes an angle above 0 and below 180 degrees, not {}", fov)};
        }
        return {};
    }

private:
    float fovAt(double time) { return paramList->getParam("fov")->getFloat(-1, time); }

    CameraPose poseAt(double time, const VectorD& origin)
    {
        const auto place = [&](const char* name) -> std::optional<Vector> {
            if (!isWritten(*paramList, name)) return {};
            const Vector p = readPoint(*paramList, name, time);
            return Vector{static_cast<float>(static_cast<double>(p.x) - origin.x),
                          static_cast<float>(static_cast<double>(p.y) - origin.y),
                          static_cast<float>(static_cast<double>(p.z) - origin.z)};
        };
        CameraPose pose;
        pose.position = place("position");
        pose.target = place("target");
        pose.up = normalizedOr(readPoint(*paramList, "up", time), {0.0f, 1.0f, 0.0f});
        pose.fov = clampedFov(fovAt(time));
        return pose;
    }

    void reportBadPlace(OmbrixRenderer* renderer)
    {
        for (CameraPose& pose : poses)
            pose.position = pose.target = std::nullopt;
        const char* name = getPluginName();
        if (RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
            logger->warning("camera \"%s\": its place is not finite; it frames all that is visible",
                            name ? name : "");
    }

    std::vector<CameraPose> poses{CameraPose{}};
};

BuiltinDesc<CameraPlugin, CameraParams>
    cameraDesc({3300000108, "Camera", "Where the picture is taken from [gpuSupport=(none)]", {}});

} // namespace

} // namespace ombrix
