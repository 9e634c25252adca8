// The heights of the billow's blobs at a point, on lanes.
#pragma once

#include "kernels/noises/volume/volume_billow_place.h"
#include "kernels/noises/volume/volume_noise.h"

namespace nezaiva {
namespace {

// What the octaves of one evaluation share.
struct Blobs {
    Float8 half;     // of the randomness
    Float8 inverse;  // 2 / density
    Float8 halfSize; // sizeRand / 2
    Float8 sizeRest; // 1 - sizeRand
    Float8 spot;     // spottyness
    Float8 spotRest; // 1 - spottyness
    bool sized;      // whether sizeRand counts at all
    bool dense;      // else every cell sum is 0
    bool far;        // whether blobs can count that lie far along one axis,
    bool corners;    // and along more than one
};

inline Blobs blobsOf(const BillowVolume& noise)
{
    const float room = 2.0f - noise.randomness;
    const float density = room < noise.density ? room : noise.density;
    const float half = noise.randomness * 0.5f;
    const float inverse = 2.0f / density;
    // A far blob is at least a cell less its offset away. Rounding never makes the greater of two numbers
    // the smaller one, so that this holds for distances as they are rounded, too; sizes up to 1 only
    // enlarge them.
    const float gap = 1.0f - (half < 0.0f ? -half : half);
    const bool bounded = gap > 0.0f && !(noise.sizeRand > 1.0f);
    const bool spotted = noise.spottyness > 0.0f;
    return {half,
            inverse,
            noise.sizeRand * 0.5f,
            1.0f - noise.sizeRand,
            spotted ? noise.spottyness : 0.0f,
            spotted ? 1.0f - noise.spottyness : 1.0f,
            noise.sizeRand > 0.0f,
            !(density < 0.0001f),
            !(bounded && gap * gap * inverse >= 1.0f),
            !(bounded && (gap * gap + gap * gap) * inverse >= 1.0f)};
}

// The height of a blob at the relative squared distance d, for d below 1.
template <int Falloff, class Lanes>
[[gnu::always_inline]] inline Lanes heightOf(Lanes d)
{
    const Lanes one = 1.0f;
    if constexpr (Falloff == kBillowLinear) return one - sqrt(d);
    if constexpr (Falloff == kBillowSmooth) return d * (2.0f * sqrt(d) - 3.0f) + one;
    if constexpr (Falloff == kBillowFast) return one - d;
    if constexpr (Falloff == kBillowBubble) {
        const Lanes e = d * 1.1f;
        return select(e <= one, e, one - (e - one) * 10.0f);
    }
    // Kept as is: any other fall-off leaves each blob at the height of the one before, which is 0 at
    // the first.
    return 0.0f;
}

// Where a field of a quad lies behind its first.
template <bool ThreeD>
constexpr int fieldOffset(BillowField f)
{
    constexpr int kLineFloats = (ThreeD ? kBillowLine3d : kBillowLine2d) * kQuadFloats;
    return f / kFieldsOfLine * kLineFloats + f % kFieldsOfLine * 4;
}

// Groups of blobs, as they lie in the quads.

template <bool ThreeD>
struct OneQuad {
    const float* quad;
    Float4 field(BillowField f) const { return Float4::load(quad + fieldOffset<ThreeD>(f)); }
};

struct TwoQuads {
    const float* low;
    const float* high;
    Float8 field(BillowField f) const
    {
        const int at = fieldOffset<true>(f);
        return {Float4::load(low + at), Float4::load(high + at)};
    }
};

// Of quads that begin far along x the two blobs there, and the same along y.
template <class Quads>
struct FarQuads {
    Quads alongX, alongY;
    auto field(BillowField f) const { return shuffled<0, 2, 0, 1>(alongX.field(f), alongY.field(f)); }
};

// The first blobs of up to three quads.
template <bool ThreeD>
struct Corners {
    const float* quads[3];
    Float4 field(BillowField f) const
    {
        const int at = fieldOffset<ThreeD>(f);
        return Float4(quads[0][at], quads[1][at], quads[2][at], 0.0f);
    }
};

constexpr float kNowhere = __builtin_nanf(""); // what is seen from here is not near

template <class Low, class High>
struct TwoGroups {
    Low low;
    High high;
    Float8 field(BillowField f) const { return {low.field(f), high.field(f)}; }
};

// The heights of the blobs of a group at the point, which is seen from their cells at x, y, z; z does
// not count in the plane.
template <int Falloff, Motion Kind, bool ThreeD, class Group, class Lanes>
[[gnu::always_inline]] inline Lanes heights(const Blobs& blobs, const Group& group, const Turns& turns,
                                            Lanes x, Lanes y, Lanes z)
{
    const Lanes reach = like(x, blobs.half);
    const Lanes dx = x - offset<Kind, 0>(group, turns, reach);
    const Lanes dy = y - offset<Kind, 1>(group, turns, reach);
    Lanes d = dx * dx + dy * dy;
    if constexpr (ThreeD) {
        const Lanes dz = z - offset<Kind, 2>(group, turns, reach);
        d = d + dz * dz;
    }
    d = d * like(x, blobs.inverse);
    if (blobs.sized) d = d / (group.field(kSize) * like(x, blobs.halfSize) + like(x, blobs.sizeRest));
    const MaskOf<Lanes> within = d < 1.0f;
    const Lanes spots = group.field(kSpot) * like(x, blobs.spot) + like(x, blobs.spotRest);
    return (heightOf<Falloff>(d) * spots) & within;
}

} // namespace
} // namespace nezaiva
