// A latitude-longitude image as a light: its radiance by direction, and directions by its radiance.
#pragma once

#include "host/geometry/vector_math.h"
#include "host/integrator/sampler.h"

#include <vector>

namespace ombrix {

// The image's middle lies towards -z, its right half towards +x, its upper edge at +y.
class EnvironmentMap {
public:
    // pixels: red, green, blue and alpha by rows from the top; alpha is not read. Numbers that are
    // negative or not finite count as 0. width and height are 1 or above.
    EnvironmentMap(int width, int height, const float* pixels);

    // The radiance from a unit direction: that of the pixel it falls into, the one that sample follows.
    Color radiance(const Vector& direction) const;
    // The same, interpolated between pixels, for the eye.
    Color smoothRadiance(const Vector& direction) const;

    // A direction, drawn in proportion to the radiance's mean of channels and the solid angle; its density
    // over solid angle; and its radiance. The density is 0 for a black image.
    struct Sample {
        Vector direction;
        float density = 0.0f;
        Color radiance;
    };
    Sample sample(Pair random) const;
    // The density of sample at a unit direction.
    float density(const Vector& direction) const;

private:
    struct Place {
        float x, y; // in pixels
    };
    Place placeOf(const Vector& direction) const;
    std::size_t pixelAt(int x, int y) const;

    int width, height;
    std::vector<Color> pixels;
    std::vector<float> rowSums;    // cumulative over rows, height + 1 numbers, from 0 to 1
    std::vector<float> columnSums; // for each row cumulative, width + 1 numbers, from 0 to 1
    float densityScale = 0.0f;     // density of a pixel = mean radiance * densityScale
};

} // namespace ombrix
