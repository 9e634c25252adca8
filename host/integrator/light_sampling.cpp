#include "host/integrator/light_sampling.h"

#include "host/integrator/environment_map.h"

namespace ombrix {

namespace {

// An even direction in the cone around a unit axis. rest: 1 less the cosine of its half angle. The height
// falls with the square of the disk's radius, as an even cap asks for.
Vector coneDirection(const Vector& axis, float rest, Pair random, float* cosine)
{
    float x, y;
    diskPoint(random, &x, &y);
    const float below = (x * x + y * y) * rest;
    const float scale = std::sqrt(std::max(0.0f, rest * (2.0f - below)));
    *cosine = 1.0f - below;
    return inFrame(axis, x * scale, y * scale, *cosine);
}

Vector turned(const Vector& v, float angle)
{
    if (angle == 0.0f) return v;
    const float c = std::cos(angle), s = std::sin(angle);
    return {c * v.x + s * v.z, v.y, c * v.z - s * v.x};
}

void samplePoint(const LightDescription& light, const Vector& point, const Vector& normal, Pair random,
                 LightSample* sample)
{
    const Vector way = light.position - point;
    if (dot(way, normal) <= -light.radius) return; // all of it lies behind the surface
    const float squared = dot(way, way);
    const float radiusSquared = light.radius * light.radius;
    if (radiusSquared >= squared) {
        // Within the ball, its light comes from everywhere.
        if (!(radiusSquared > 0.0f)) return;
        sample->direction = cosineDirection(normal, random);
        sample->distance = light.radius;
        sample->reflected = light.power * (1.0f / radiusSquared);
        return;
    }
    const float distance = std::sqrt(squared);
    const Vector axis = way * (1.0f / distance);
    if (radiusSquared == 0.0f) {
        const float cosine = dot(axis, normal);
        sample->direction = axis;
        sample->distance = distance;
        if (cosine > 0.0f) sample->reflected = light.power * (cosine / squared);
        return;
    }
    // The ball's radiance is power / radius^2, seen within a cone of sine radius / distance.
    const float sineSquared = radiusSquared / squared;
    const float rest = sineSquared / (1.0f + std::sqrt(1.0f - sineSquared));
    float inCone = 1.0f;
    sample->direction = coneDirection(axis, rest, random, &inCone);
    const float along = distance * inCone;
    sample->distance = along - std::sqrt(std::max(0.0f, radiusSquared - (squared - along * along)));
    const float cosine = dot(sample->direction, normal);
    if (cosine > 0.0f) sample->reflected = light.power * (cosine * 2.0f * rest / radiusSquared);
}

void sampleDistant(const LightDescription& light, const Vector& normal, Pair random, LightSample* sample)
{
    const Vector axis = negated(light.direction);
    float inCone = 1.0f;
    const float sine = std::sin(0.5f * light.halfAngle);
    sample->direction =
        light.halfAngle > 0.0f ? coneDirection(axis, 2.0f * sine * sine, random, &inCone) : axis;
    const float cosine = dot(sample->direction, normal);
    if (cosine > 0.0f) sample->reflected = light.power * cosine;
}

void sampleDome(const LightDescription& light, const Vector& normal, Pair random, LightSample* sample)
{
    if (!light.map) {
        sample->direction = cosineDirection(normal, random);
        sample->density = std::max(0.0f, dot(sample->direction, normal)) / kPi;
        sample->reflected = light.power;
        return;
    }
    const EnvironmentMap::Sample drawn = light.map->sample(random);
    if (!(drawn.density > 0.0f)) return;
    sample->direction = turned(drawn.direction, light.turn);
    sample->density = drawn.density;
    const float cosine = dot(sample->direction, normal);
    if (cosine > 0.0f) sample->reflected = light.power * drawn.radiance * (cosine / (kPi * drawn.density));
}

} // namespace

LightSample sampleLight(const LightDescription& light, const Vector& point, const Vector& normal, Pair random)
{
    LightSample sample;
    switch (light.kind) {
    case LightDescription::Kind::Point:
        samplePoint(light, point, normal, random, &sample);
        break;
    case LightDescription::Kind::Distant:
        sampleDistant(light, normal, random, &sample);
        break;
    case LightDescription::Kind::Dome:
        sampleDome(light, normal, random, &sample);
        break;
    }
    return sample;
}

Color domeRadiance(const LightDescription& light, const Vector& direction)
{
    return light.map ? light.power * light.map->radiance(turned(direction, -light.turn)) : light.power;
}

float domeDensity(const LightDescription& light, const Vector& direction, float scatterDensity)
{
    return light.map ? light.map->density(turned(direction, -light.turn)) : scatterDensity;
}

Color domeBackground(const LightDescription& light, const Vector& direction)
{
    return light.map ? light.power * light.map->smoothRadiance(turned(direction, -light.turn)) : light.power;
}

} // namespace ombrix
