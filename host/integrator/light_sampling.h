// Drawing directions towards lights.
#pragma once

#include "host/integrator/sampler.h"
#include "host/integrator/scene_interfaces.h"

namespace ombrix {

inline constexpr float kFarAway = 1e30f;

struct LightSample {
    Vector direction;          // from the point to the light, unit length
    float distance = kFarAway; // how far the way has to be free
    // What a white diffuse surface reflects, divided by the sample's density; black: nothing to see.
    Color reflected;
    // Over solid angle, of a dome: a direction that a surface scatters light into can reach it too. 0: none
    // can.
    float density = 0.0f;
};

// Draws a sample for a point with this unit normal. Directions behind the surface give black.
LightSample sampleLight(const LightDescription& light, const Vector& point, const Vector& normal,
                        Pair random);

// A dome's radiance from a unit direction, and the density of sampleLight there. scatterDensity: that of
// a cosine-distributed direction, which an even dome is sampled by.
Color domeRadiance(const LightDescription& light, const Vector& direction);
float domeDensity(const LightDescription& light, const Vector& direction, float scatterDensity);
// The same radiance for the eye, without the steps between an image's pixels.
Color domeBackground(const LightDescription& light, const Vector& direction);

// The vector (x, y, z) in the frame whose third axis is the unit axis.
inline Vector inFrame(const Vector& axis, float x, float y, float z)
{
    Vector tangent, bitangent;
    orthonormalFrame(axis, &tangent, &bitangent);
    return tangent * x + bitangent * y + axis * z;
}

// An even point of the unit disk out of one of the unit square, so that near points stay near (Shirley and
// Chiu, "A Low Distortion Map Between Disk and Square", 1997). It is worked out in the wedge between the
// first axis and its diagonal, where few terms of the series of sine and cosine give all bits but the
// last, and without branches, which half of all points would take the other way than foreseen.
inline void diskPoint(Pair random, float* x, float* y)
{
    const float a = 2.0f * random.u - 1.0f, b = 2.0f * random.v - 1.0f;
    const float large = std::max(std::fabs(a), std::fabs(b)), small = std::min(std::fabs(a), std::fabs(b));
    const float angle = (0.25f * kPi) * (small / std::max(large, 1e-30f));
    const float square = angle * angle;
    const float sine =
        angle * (1.0f + square * (-1.0f / 6.0f + square * (1.0f / 120.0f + square * (-1.0f / 5040.0f))));
    const float cosine =
        1.0f +
        square * (-0.5f + square * (1.0f / 24.0f + square * (-1.0f / 720.0f + square * (1.0f / 40320.0f))));
    const float along = large * cosine, across = large * sine;
    const float first = static_cast<float>(std::fabs(a) > std::fabs(b)); // 1: nearer to the first axis
    *x = std::copysign(across + first * (along - across), a);
    *y = std::copysign(along + first * (across - along), b);
}

// A direction around the unit normal with the density cosine / pi.
inline Vector cosineDirection(const Vector& normal, Pair random)
{
    float x, y;
    diskPoint(random, &x, &y);
    return inFrame(normal, x, y, std::sqrt(std::max(0.0f, 1.0f - x * x - y * y)));
}

} // namespace ombrix
