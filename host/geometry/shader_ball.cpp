// The outline of the shader ball: a ball with a groove that shows an inner ball, on a turned foot. It is
// given in four pieces that meet end to end, from the middle of the foot's underside to the top.

#include "host/geometry/shapes.h"

#include <initializer_list>
#include <iterator>

namespace ombrix {

namespace {

constexpr float kGrooveBottom = -33.0f; // latitudes of the groove's rims, in degrees
constexpr float kGrooveTop = -24.0f;
constexpr float kNeck = -64.0f; // latitude where the ball ends and the foot's neck begins
constexpr float kInnerRadius = 0.9f;
constexpr float kLip = 0.02f; // radius of the groove's rounded rims

using Outline = std::vector<LathePoint>;

void addPoint(Outline& outline, float radius, float height)
{
    if (!outline.empty()) {
        const float dr = outline.back().radius - radius, dh = outline.back().height - height;
        if (dr * dr + dh * dh < 1e-10f) return;
    }
    outline.push_back({radius, height, 0.0f});
}

// An arc around a centre, from one angle to another, both in degrees and included.
void addArc(Outline& outline, float centerRadius, float centerHeight, float radius, float from, float to,
            int steps)
{
    for (int i = 0; i <= steps; ++i) {
        const float angle = radians(from + (to - from) * static_cast<float>(i) / static_cast<float>(steps));
        addPoint(outline, centerRadius + radius * std::cos(angle), centerHeight + radius * std::sin(angle));
    }
}

// v as the share of the outline's length, so that coordinates are even along it.
Outline withLengths(Outline outline)
{
    float total = 0.0f;
    for (std::size_t i = 1; i < outline.size(); ++i) {
        const float dr = outline[i].radius - outline[i - 1].radius;
        const float dh = outline[i].height - outline[i - 1].height;
        total += std::sqrt(dr * dr + dh * dh);
        outline[i].v = total;
    }
    for (LathePoint& point : outline)
        point.v /= total;
    return outline;
}

// v by latitude, so that the shell is mapped as a sphere is.
Outline withLatitudes(Outline outline)
{
    for (LathePoint& point : outline)
        point.v = std::atan2(point.height, point.radius) / kPi + 0.5f;
    return outline;
}

float onBall(float latitude, float radius, bool height)
{
    return radius * (height ? std::sin(radians(latitude)) : std::cos(radians(latitude)));
}

} // namespace

std::vector<LathePoint> shaderBallBaseOutline()
{
    Outline outline;
    addPoint(outline, 0.0f, -1.35f);
    addPoint(outline, 0.35f, -1.35f);
    addPoint(outline, 0.66f, -1.35f);
    addArc(outline, 0.66f, -1.32f, 0.03f, -90.0f, 0.0f, 8); // the foot's rounded rim
    addArc(outline, 0.66f, -1.3f, 0.03f, 0.0f, 90.0f, 8);
    // A hollow from the foot's top up to the ball, a quarter of an ellipse.
    const float neckRadius = onBall(kNeck, 1.0f, false), neckHeight = onBall(kNeck, 1.0f, true);
    constexpr float kFootRadius = 0.62f, kFootHeight = -1.27f;
    for (int i = 0; i <= 24; ++i) {
        const float angle = 0.5f * kPi * static_cast<float>(i) / 24.0f;
        addPoint(outline, kFootRadius + (neckRadius - 0.04f - kFootRadius) * std::sin(angle),
                 kFootHeight + (neckHeight - 0.02f - kFootHeight) * (1.0f - std::cos(angle)));
    }
    addPoint(outline, neckRadius, neckHeight);
    return withLengths(outline);
}

std::vector<LathePoint> shaderBallLowerShellOutline()
{
    Outline outline;
    addArc(outline, 0.0f, 0.0f, 1.0f, kNeck, kGrooveBottom - 1.5f, 16);
    const float middle = kGrooveBottom - 1.5f;
    addArc(outline, onBall(middle, 1.0f - kLip, false), onBall(middle, 1.0f - kLip, true), kLip, middle,
           kGrooveBottom + 90.0f, 8);
    return withLatitudes(outline);
}

std::vector<LathePoint> shaderBallGrooveOutline()
{
    Outline outline;
    outline.push_back(shaderBallLowerShellOutline().back());
    addArc(outline, 0.0f, 0.0f, kInnerRadius, kGrooveBottom, kGrooveTop, 12);
    const LathePoint last = shaderBallUpperShellOutline().front();
    addPoint(outline, last.radius, last.height);
    return withLengths(outline);
}

std::vector<LathePoint> shaderBallUpperShellOutline()
{
    Outline outline;
    const float middle = kGrooveTop + 1.5f;
    addArc(outline, onBall(middle, 1.0f - kLip, false), onBall(middle, 1.0f - kLip, true), kLip,
           kGrooveTop - 90.0f, middle, 8);
    addArc(outline, 0.0f, 0.0f, 1.0f, middle, 89.0f, 80);
    addPoint(outline, 0.0f, 1.0f);
    return withLatitudes(outline);
}

} // namespace ombrix
