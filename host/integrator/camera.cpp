#include "host/integrator/camera.h"

namespace ombrix {

namespace {

constexpr float kElevation = 16.0f; // of the framing camera, in degrees
constexpr float kSmallestFov = 0.001f, kLargestFov = 179.999f;
constexpr float kMargin = 1.08f; // air around what is framed
constexpr float kSmallestDistance = 1e-3f;

struct Axes {
    Vector right, up, back;
};

Axes axesOf(const Vector& forward, const Vector& wantedUp)
{
    const Vector back = negated(forward);
    Vector right = cross(forward, wantedUp);
    // A camera that looks along its up direction takes another one.
    if (dot(right, right) < 1e-12f * dot(wantedUp, wantedUp) || !isFinite(right))
        right = cross(forward,
                      std::fabs(forward.z) < 0.9f ? Vector{0.0f, 0.0f, -1.0f} : Vector{0.0f, 1.0f, 0.0f});
    right = normalizedOr(right, {1.0f, 0.0f, 0.0f});
    return {right, cross(right, forward), back};
}

} // namespace

float clampedFov(float fov)
{
    return fov >= kSmallestFov ? std::min(fov, kLargestFov) : kSmallestFov;
}

Camera::Camera(const std::vector<CameraPose>& poses, int width, int height)
    : halfWidth(0.5f * static_cast<float>(width)), halfHeight(0.5f * static_cast<float>(height))
{
    for (const CameraPose& pose : poses) {
        Frame frame;
        frame.origin = *pose.position;
        frame.forward = normalizedOr(*pose.target - *pose.position, {0.0f, 0.0f, -1.0f});
        const Axes axes = axesOf(frame.forward, pose.up);
        const float step = std::tan(radians(clampedFov(pose.fov)) * 0.5f) / halfWidth;
        frame.right = axes.right * step;
        frame.down = axes.up * -step;
        frames.push_back(frame);
    }
}

Camera::Frame Camera::frameAt(float time) const
{
    const float scaled = time * static_cast<float>(frames.size() - 1);
    const std::size_t before = std::min(static_cast<std::size_t>(scaled), frames.size() - 2);
    const float t = scaled - static_cast<float>(before);
    const Frame &a = frames[before], &b = frames[before + 1];
    return {mix(a.origin, b.origin, t), mix(a.forward, b.forward, t), mix(a.right, b.right, t),
            mix(a.down, b.down, t)};
}

CameraPose completePose(const CameraPose& given, const std::vector<Vector>& visiblePoints, int width,
                        int height)
{
    Box bounds;
    for (const Vector& point : visiblePoints)
        extend(bounds, point);
    const Vector middle = isEmpty(bounds) ? Vector{} : mix(bounds.lower, bounds.upper, 0.5f);

    CameraPose pose = given;
    if (!pose.target) pose.target = middle;
    if (pose.position) return pose;

    const float elevation = radians(kElevation);
    const Vector back{0.0f, std::sin(elevation), std::cos(elevation)};
    const Axes axes = axesOf(negated(back), pose.up);
    const float tangentX = std::tan(radians(clampedFov(pose.fov)) * 0.5f) / kMargin;
    const float tangentY = tangentX * static_cast<float>(height) / static_cast<float>(width);
    float distance = kSmallestDistance;
    for (const Vector& point : visiblePoints) {
        const Vector offset = point - *pose.target;
        const float sideways = std::fabs(dot(offset, axes.right)) / tangentX;
        const float upwards = std::fabs(dot(offset, axes.up)) / tangentY;
        distance = std::max(distance, dot(offset, axes.back) + std::max(sideways, upwards));
    }
    if (visiblePoints.empty()) distance = 5.0f;
    pose.position = *pose.target + back * distance;
    return pose;
}

} // namespace ombrix
