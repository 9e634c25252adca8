// Camera: where the picture is taken from.

#include "host/integrator/camera.h"
#include "host/builtin/frame_values.h"
#include "host/builtin/parameter_values.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/builtin_desc.h"
#include "host/scene/contents_check.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using namespace OUtils;

class CameraPlugin final : public Offers<OmbrixPlugin, SceneCameraInterface, ContentsCheckInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        3300000108, "Camera", "Where the picture is taken from [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("position", &CameraPlugin::position, Color{},
          "Where it stands, [x, y, z]; left out, it frames all that is visible from the front, a little "
          "above",
          kPointMetadata);
        p("target", &CameraPlugin::target, Color{},
          "What it looks at, [x, y, z]; left out, the middle of all that is visible", kPointMetadata);
        p("up", &CameraPlugin::up, Color{0.0f, 1.0f, 0.0f}, "What is up in the picture", kDirectionMetadata);
        p("fov", &CameraPlugin::fov, 40.0f, "Horizontal field of view",
          "displayName=(Field of view), units=(degrees), minValue=(0), maxValue=(180)");
    }

    std::span<const CameraPose> getPoses() override { return poses; }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        const FrameData frame = frameOf(renderer);
        const bool moving =
            position.isAnimated() || target.isAnimated() || up.isAnimated() || fov.isAnimated();
        poses.clear();
        for (const double time : shutterTimes(frame, moving))
            poses.push_back(poseAt(time, frame.sceneOrigin));
        if (isFinite(poses.front().position.value_or(Vector{})) &&
            isFinite(poses.front().target.value_or(Vector{})))
            return;
        for (CameraPose& pose : poses)
            pose.position = pose.target = std::nullopt;
        warn(renderer, "camera", *this, "its place is not finite; it frames all that is visible");
    }

    std::optional<ContentsProblem> findProblem() override
    {
        for (const double time : sampleTimes({&fov})) {
            const float angle = fov.at(time);
            if (angle > 0.0f && angle < 180.0f) continue;
            return ContentsProblem{
                "fov", fmt::format("takes an angle above 0 and below 180 degrees, not {}", angle)};
        }
        return {};
    }

private:
    CameraPose poseAt(double time, const VectorD& origin) const
    {
        const auto place = [&](const TimedPoint& point) -> std::optional<Vector> {
            if (!point.isWritten()) return {};
            return relativeTo(origin, point.at(time));
        };
        CameraPose pose;
        pose.position = place(position);
        pose.target = place(target);
        pose.up = normalizedOr(up.at(time), {0.0f, 1.0f, 0.0f});
        pose.fov = clampedFov(fov.at(time));
        return pose;
    }

    TimedPoint position, target, up;
    TimedFloat fov;

    std::vector<CameraPose> poses{CameraPose{}};
};

BuiltinDesc<CameraPlugin> cameraDesc;

} // namespace

} // namespace ombrix
