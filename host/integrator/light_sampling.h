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

// A direction around the unit normal with the density cosine / pi.
Vector cosineDirection(const Vector& normal, Pair random);

} // namespace ombrix
