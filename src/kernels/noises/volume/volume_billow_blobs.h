// The heights of the billow's blobs at a point, written once on the lanes of volume_lanes_base.h or
// volume_lanes_avx2.h, one of which is included before.
#pragma once

#include "kernels/noises/volume/volume_billow_place.h"
#include "kernels/noises/volume/volume_noise.h"

namespace nezaiva {
namespace {

// What the octaves of one evaluation share.
struct Blobs {
    Eight half;     // of the randomness
    Eight inverse;  // 2 / density
    Eight halfSize; // sizeRand / 2
    Eight sizeRest; // 1 - sizeRand
    Eight spot;     // spottyness
    Eight spotRest; // 1 - spottyness
    bool sized;     // whether sizeRand counts at all
    bool dense;     // else every cell sum is 0
    bool far;       // whether blobs can count that lie far along one axis,
    bool corners;   // and along more than one
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
    return {broadcast(half),
            broadcast(inverse),
            broadcast(noise.sizeRand * 0.5f),
            broadcast(1.0f - noise.sizeRand),
            broadcast(spotted ? noise.spottyness : 0.0f),
            broadcast(spotted ? 1.0f - noise.spottyness : 1.0f),
            noise.sizeRand > 0.0f,
            !(density < 0.0001f),
            !(bounded && gap * gap * inverse >= 1.0f),
            !(bounded && (gap * gap + gap * gap) * inverse >= 1.0f)};
}

// The height of a blob at the relative squared distance d, for d below 1.
template <int Falloff, class Lanes>
[[gnu::always_inline]] inline Lanes heightOf(Lanes d)
{
    const Lanes one = like(d, broadcast(1.0f));
    if constexpr (Falloff == kBillowLinear) return one - squareRoot(d);
    if constexpr (Falloff == kBillowSmooth)
        return d * (like(d, broadcast(2.0f)) * squareRoot(d) - like(d, broadcast(3.0f))) + one;
    if constexpr (Falloff == kBillowFast) return one - d;
    if constexpr (Falloff == kBillowBubble) {
        const Lanes e = d * like(d, broadcast(1.1f));
        return choose(lessEqual(e, one), e, one - (e - one) * like(d, broadcast(10.0f)));
    }
    // Kept as is: any other fall-off leaves each blob at the height of the one before, which is 0 at
    // the first.
    return like(d, broadcast(0.0f));
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
    Four field(BillowField f) const { return _mm_loadu_ps(quad + fieldOffset<ThreeD>(f)); }
};

struct TwoQuads {
    const float* low;
    const float* high;
    Eight field(BillowField f) const
    {
        return loadHalves(low + fieldOffset<true>(f), high + fieldOffset<true>(f));
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
    Four field(BillowField f) const
    {
        const int at = fieldOffset<ThreeD>(f);
        return _mm_setr_ps(quads[0][at], quads[1][at], quads[2][at], 0.0f);
    }
};

constexpr float kNowhere = __builtin_nanf(""); // what is seen from here is not near

template <class Low, class High>
struct TwoGroups {
    Low low;
    High high;
    Eight field(BillowField f) const { return combine(low.field(f), high.field(f)); }
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
    const Lanes within = less(d, like(x, broadcast(1.0f)));
    const Lanes spots = group.field(kSpot) * like(x, blobs.spot) + like(x, blobs.spotRest);
    return bitAnd(heightOf<Falloff>(d) * spots, within);
}

} // namespace
} // namespace nezaiva
