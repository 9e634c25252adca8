#include "kernels/procedurals/leather.h"

#include "kernels/procedurals/leather_blobs_body.h"
#include "kernels/procedurals/leather_features_body.h"
#include "numeric/cell_index.h"
#include "numeric/simd_dispatch.h"

#include <cmath>

namespace nezaiva {

using namespace OUtils;

constinit const LeatherBlobKernels leatherBlobsBase = kLeatherBlobsOnLanes;
constinit const LeatherFeatureKernels leatherFeaturesBase = kLeatherFeaturesOnLanes;

namespace {

constexpr float kSmallestLegacyNumber = 1e-9f;
constexpr float kLegacyScale = 0.2f;
constexpr float kHighThreshold = 0.5f;

float atLeast(float value, float least)
{
    return value < least ? least : value;
}

float clampedToUnit(float value)
{
    return value < 0.0f ? 0.0f : value > 1.0f ? 1.0f : value;
}

// How much of a cell's blob lies at a squared distance below half the density.
float featurePart(std::uint32_t seed, float distance, float density, float spottyness)
{
    const float spot = (unitNumber(nextSeed(seed)) - 0.75f) * spottyness * 2.0f + 1.0f;
    return spot * (1.0f - std::sqrt(2.0f * distance / density));
}

float valueOfFeatures(const NearestFeatures& found, const LeatherNumbers& numbers)
{
    const float density = atLeast(numbers.density, kSmallestLegacyNumber);
    if (2.0f * found.first >= density) return 1.0f;
    const float a = featurePart(found.firstSeed, found.first, density, numbers.spottyness);
    if (2.0f * found.second >= density) return 1.0f - a;
    const float b = featurePart(found.secondSeed, found.second, density, numbers.spottyness);
    return numbers.creases ? 1.0f - std::fabs(b - a) : 1.0f - a - b;
}

// The part of the crease colour, not yet held in 0..1.
float creasePart(float value, float threshold)
{
    if (threshold > kHighThreshold) {
        const float cut = threshold * threshold * threshold;
        const float rest = 1.0f - cut;
        if (!(value >= cut)) return 0.0f;
        return rest == 0.0f ? 1.0f : (value - cut) / rest;
    }
    const float low = 2.0f * (threshold * threshold);
    return (0.5f - low) + (low + 0.5f) * value;
}

} // namespace

AColor currentLeather(const Vector& uvw, const LeatherNumbers& numbers, const LeatherColors& colors)
{
    AColor result;
    chosen(leatherBlobsBase, leatherBlobsAvx2).leather(uvw, numbers, colors, result);
    return result;
}

AColor legacyLeather(const Vector& uvw, const LeatherNumbers& numbers, const LeatherColors& colors)
{
    const float scale = atLeast(numbers.size * kLegacyScale, kSmallestLegacyNumber);
    const NearestFeatures found = chosen(leatherFeaturesBase, leatherFeaturesAvx2)
                                      .nearest(finiteOrZero(uvw.x / scale), finiteOrZero(uvw.y / scale),
                                               finiteOrZero(uvw.z / scale), numbers.randomness);
    const float c = clampedToUnit(creasePart(valueOfFeatures(found, numbers), numbers.threshold));
    const AColor& cell = colors.cell;
    const AColor& crease = colors.crease;
    return {cell.r + (crease.r - cell.r) * c, cell.g + (crease.g - cell.g) * c,
            cell.b + (crease.b - cell.b) * c, 1.0f - c};
}

} // namespace nezaiva
