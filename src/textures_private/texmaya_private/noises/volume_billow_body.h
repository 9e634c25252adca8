// The billow fractals, written once on the lanes of volume_lanes_base.h or volume_lanes_avx2.h, one
// of which is included before.
//
// A row of three neighbouring cells along x is four lanes, the fourth of which does not count; two
// rows go together. The offsets of the blobs are sines of table angles, turned by time: the sines
// and cosines of the angles are constants of the table, those of the turn constants of the octave.
#pragma once

#include "volume_kernels.h"
#include "volume_trig_body.h"

namespace nezaiva {
namespace {

inline Four ofAll(float value)
{
    return _mm_set1_ps(value);
}

// One turn of time, for all blobs of an octave.
struct Turn {
    Eight angle, sine, cosine;
};

// What fl(a + b) lost.
inline Eight lostInSum(Eight a, Eight b)
{
    const Eight sum = a + b;
    const Eight part = sum - a;
    return (a - (sum - part)) + (b - part);
}

// How the offsets of the blobs are found.
enum class Motion {
    None,   // time 0: they are constants of the table
    Slow,   // the sum of a table angle and its turn is as good as exact
    Coarse, // the formula rounds that sum to float, visibly; the rounding is taken over
    Late,   // so late a time that the square of the rounding counts too
};

// Up to this turn the rounded angles stay below 8 radians, and their errors below 2.4e-7.
constexpr float kLargestSlowTurn = 1.7f;

// Up to this turn the rounding loses at most 1.3e-4, its square halved less than 1e-8.
constexpr float kLargestCoarseTurn = 2048.0f;

// The sine and the cosine of a + turn.angle for table angles a. With a coarse motion it is those of
// fl(a + turn.angle), to the first order of what the rounding lost, with a late one to the second.
template <Motion Kind>
Eight turnedSine(Eight a, Eight sine, Eight cosine, const Turn& turn)
{
    const Eight s = sine * turn.cosine + cosine * turn.sine;
    if constexpr (Kind == Motion::Slow) return s;
    const Eight c = cosine * turn.cosine - sine * turn.sine;
    const Eight lost = lostInSum(a, turn.angle);
    if constexpr (Kind == Motion::Coarse) return s - lost * c;
    return s - lost * (c + lost * broadcast(0.5f) * s);
}

template <Motion Kind>
Eight turnedCosine(Eight a, Eight sine, Eight cosine, const Turn& turn)
{
    const Eight c = cosine * turn.cosine - sine * turn.sine;
    if constexpr (Kind == Motion::Slow) return c;
    const Eight s = sine * turn.cosine + cosine * turn.sine;
    const Eight lost = lostInSum(a, turn.angle);
    if constexpr (Kind == Motion::Coarse) return c + lost * s;
    return c + lost * (s - lost * broadcast(0.5f) * c);
}

// What the octaves of one evaluation share.
struct Blobs {
    Eight half;          // of the randomness
    Eight inverse;       // 2 / density
    Eight halfSize;      // sizeRand / 2
    Eight sizeRest;      // 1 - sizeRand
    Eight spot;          // spottyness
    Eight spotRest;      // 1 - spottyness
    bool sized, spotted; // whether these two count at all
    bool dense;          // else every cell sum is 0
};

inline Blobs blobsOf(const BillowVolume& noise)
{
    const float room = 2.0f - noise.randomness;
    const float density = room < noise.density ? room : noise.density;
    return {broadcast(noise.randomness * 0.5f),
            broadcast(2.0f / density),
            broadcast(noise.sizeRand * 0.5f),
            broadcast(1.0f - noise.sizeRand),
            broadcast(noise.spottyness),
            broadcast(1.0f - noise.spottyness),
            noise.sizeRand > 0.0f,
            noise.spottyness > 0.0f,
            !(density < 0.0001f)};
}

// The height of a blob at the relative squared distance d, for d below 1.
template <int Falloff>
Eight heightOf(Eight d)
{
    const Eight one = broadcast(1.0f);
    if constexpr (Falloff == kBillowLinear) return one - squareRoot(d);
    if constexpr (Falloff == kBillowSmooth)
        return d * (broadcast(2.0f) * squareRoot(d) - broadcast(3.0f)) + one;
    if constexpr (Falloff == kBillowFast) return one - d;
    if constexpr (Falloff == kBillowBubble) {
        const Eight e = d * broadcast(1.1f);
        return choose(lessEqual(e, one), e, one - (e - one) * broadcast(10.0f));
    }
    // Kept as is: any other fall-off leaves each blob at the height of the one before, which is 0 at
    // the first.
    return broadcast(0.0f);
}

// One octave's place among the cells: for each axis the offset within the cell, and the neighbours'
// rows.
struct BillowCell {
    int cell;       // 0..20
    float fraction; // -0.5..0.5
};

inline BillowCell billowCell(float value)
{
    const float c = _mm_cvtss_f32(unitFraction(_mm_set_ss(value))) * 20.0f;
    const int cell = static_cast<int>(c);
    return {cell, c - static_cast<float>(cell) - 0.5f};
}

inline int wrappedCell(int cell)
{
    return cell < 0 ? cell + kBillowCells : cell >= kBillowCells ? cell - kBillowCells : cell;
}

// Two rows of three cells: where their numbers lie, and the point seen from the cells' centres.
struct TwoRows {
    const float* low;
    const float* high;
    Eight x, y, z;
    Eight counted; // the lanes that are cells

    Eight field(BillowField f) const
    {
        return loadHalves(low + f * kBillowRowStride, high + f * kBillowRowStride);
    }
};

// The turns of one octave; without motion they do not count.
struct Turns {
    Turn sine0, cosine1, cosine2;
};

inline Turn turnBy(float angle)
{
    const SineCosine turned = sineCosine(angle);
    return {broadcast(angle), broadcast(turned.sine), broadcast(turned.cosine)};
}

// For times so late that whole turns need many digits.
[[gnu::noinline]] inline void lateTurns(float time, Turns& turns)
{
    turns = {turnBy(2.0f * time), turnBy(1.5f * time), turnBy(time)};
}

template <int Lane>
Turn turnAt(Four angles, Eight sinesAndCosines)
{
    const Four angle = spread<Lane>(angles);
    const Four sine = spread<Lane>(lowHalf(sinesAndCosines));
    const Four cosine = spread<Lane>(highHalf(sinesAndCosines));
    return {combine(angle, angle), combine(sine, sine), combine(cosine, cosine)};
}

inline Turns turnsAt(float time)
{
    const Four angles = _mm_mul_ps(ofAll(time), _mm_setr_ps(2.0f, 1.5f, 1.0f, 0.0f));
    if (anyLane(tooLarge(combine(angles, angles)))) {
        Turns late;
        lateTurns(time, late);
        return late;
    }
    // A sine is the cosine of a quarter turn less.
    const Eight turned = cosineOfQuarters(combine(quarterLessTurns(angles, 0.25), quarterLessTurns(angles)));
    return {turnAt<0>(angles, turned), turnAt<1>(angles, turned), turnAt<2>(angles, turned)};
}

template <Motion Kind, bool ThreeD>
Eight squaredDistances(const TwoRows& rows, Eight half, const Turns& turns)
{
    Eight sine0 = rows.field(kSine0);
    Eight cosine1 = rows.field(kCosine1);
    if constexpr (Kind != Motion::None) {
        sine0 = turnedSine<Kind>(rows.field(kAngle0), sine0, rows.field(kCosine0), turns.sine0);
        cosine1 = turnedCosine<Kind>(rows.field(kAngle1), rows.field(kSine1), cosine1, turns.cosine1);
    }
    const Eight dx = rows.x - sine0 * half;
    const Eight dy = rows.y - cosine1 * half;
    if constexpr (!ThreeD) return dx * dx + dy * dy;
    Eight cosine2 = rows.field(kCosine2);
    if constexpr (Kind != Motion::None)
        cosine2 = turnedCosine<Kind>(rows.field(kAngle2), rows.field(kSine2), cosine2, turns.cosine2);
    const Eight dz = rows.z - cosine2 * half;
    return dx * dx + dy * dy + dz * dz;
}

// The heights of the blobs of two rows at the point.
template <int Falloff, Motion Kind, bool ThreeD>
Eight heights(const Blobs& blobs, const TwoRows& rows, const Turns& turns)
{
    const Eight one = broadcast(1.0f);
    Eight d = squaredDistances<Kind, ThreeD>(rows, blobs.half, turns) * blobs.inverse;
    if (blobs.sized) d = d / ((rows.field(kSize) + one) * blobs.halfSize + blobs.sizeRest);
    const Eight within = bitAnd(less(d, one), rows.counted);
    Eight height = heightOf<Falloff>(d);
    if (blobs.spotted) height = height * ((rows.field(kSpot) + one) * blobs.spot + blobs.spotRest);
    return bitAnd(height, within);
}

inline Four threeLanes()
{
    return _mm_castsi128_ps(_mm_setr_epi32(-1, -1, -1, 0));
}

// The point seen from the three cells along x.
inline Four seenAlongX(float fraction)
{
    return _mm_sub_ps(ofAll(fraction), _mm_setr_ps(-1.0f, 0.0f, 1.0f, 0.0f));
}

template <int Falloff, Motion Kind>
float cellSum3d(const VolumeTables& tables, const Blobs& blobs, const VolumePoint& p, const Turns& turns)
{
    const BillowCell cx = billowCell(p.x);
    const BillowCell cy = billowCell(p.y);
    const BillowCell cz = billowCell(p.z);
    const float* rows[9];
    Four y[3];
    Four z[3];
    for (int k = 0; k < 3; ++k) {
        const int plane = wrappedCell(cz.cell + k - 1) * kBillowCells;
        for (int j = 0; j < 3; ++j)
            rows[k * 3 + j] = tables.billow3d[plane + wrappedCell(cy.cell + j - 1)].fields[0] + cx.cell;
        y[k] = ofAll(cy.fraction - static_cast<float>(k - 1));
        z[k] = ofAll(cz.fraction - static_cast<float>(k - 1));
    }
    const Eight x = combine(seenAlongX(cx.fraction), seenAlongX(cx.fraction));
    const Eight counted = combine(threeLanes(), threeLanes());
    Eight sum = broadcast(0.0f);
    for (int r = 0; r < 8; r += 2) {
        const TwoRows two{
            rows[r], rows[r + 1], x, combine(y[r % 3], y[(r + 1) % 3]), combine(z[r / 3], z[(r + 1) / 3]),
            counted};
        sum = sum + heights<Falloff, Kind, true>(blobs, two, turns);
    }
    const TwoRows last{rows[8],
                       rows[8],
                       x,
                       combine(y[2], y[2]),
                       combine(z[2], z[2]),
                       combine(threeLanes(), _mm_setzero_ps())};
    return sumOfLanes(sum + heights<Falloff, Kind, true>(blobs, last, turns));
}

template <int Falloff, Motion Kind>
float cellSum2d(const VolumeTables& tables, const Blobs& blobs, const VolumePoint& p, const Turns& turns)
{
    const BillowCell cx = billowCell(p.x);
    const BillowCell cy = billowCell(p.y);
    const float* rows[3];
    Four y[3];
    for (int j = 0; j < 3; ++j) {
        rows[j] = tables.billow2d[wrappedCell(cy.cell + j - 1)].fields[0] + cx.cell;
        y[j] = ofAll(cy.fraction - static_cast<float>(j - 1));
    }
    const Eight x = combine(seenAlongX(cx.fraction), seenAlongX(cx.fraction));
    const Eight zero = broadcast(0.0f);
    const TwoRows first{rows[0], rows[1], x, combine(y[0], y[1]), zero, combine(threeLanes(), threeLanes())};
    const TwoRows last{
        rows[2], rows[2], x, combine(y[2], y[2]), zero, combine(threeLanes(), _mm_setzero_ps())};
    return sumOfLanes(heights<Falloff, Kind, false>(blobs, first, turns) +
                      heights<Falloff, Kind, false>(blobs, last, turns));
}

template <int Falloff, bool ThreeD>
float cellSum(const VolumeTables& tables, const Blobs& blobs, const VolumePoint& p, float time)
{
    const auto sum = [&]<Motion Kind>(const Turns& turns) {
        if constexpr (ThreeD)
            return cellSum3d<Falloff, Kind>(tables, blobs, p, turns);
        else
            return cellSum2d<Falloff, Kind>(tables, blobs, p, turns);
    };
    if (time == 0.0f) {
        const Turn none{broadcast(0.0f), broadcast(0.0f), broadcast(1.0f)};
        return sum.template operator()<Motion::None>(Turns{none, none, none});
    }
    const Turns turns = turnsAt(time);
    const float largest = 2.0f * (time < 0.0f ? -time : time);
    if (largest <= kLargestSlowTurn) return sum.template operator()<Motion::Slow>(turns);
    if (largest <= kLargestCoarseTurn) return sum.template operator()<Motion::Coarse>(turns);
    return sum.template operator()<Motion::Late>(turns);
}

// The octaves. Kept as is: in two dimensions time grows by the frequency ratio, in three by its root.
template <int Falloff, bool ThreeD>
float billowFractal(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z,
                    float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const Blobs blobs = blobsOf(noise);
    const float growth = fractal.frequencyRatio <= 0.0f ? 1.0f : fractal.frequencyRatio;
    const float timeGrowth = ThreeD ? rootOf(growth) : growth;
    float factor = 1.0f;
    VolumePoint shift{0.0f, 0.0f, 0.0f};
    float amplitude = 1.0f;
    float total = 0.0f;
    float norm = 0.0f;
    for (int level = 0; level < fractal.depthMax; ++level) {
        shift = {shift.x + 0.021f, shift.y + 0.33f, shift.z + 0.011f};
        float sum = 0.0f;
        if (blobs.dense) {
            const VolumePoint place{x * factor + shift.x, y * factor + shift.y, z * factor + shift.z};
            sum = cellSum<Falloff, ThreeD>(tables, blobs, place, time);
        }
        if (fractal.inflection && sum < 0.0f) sum = -sum;
        total += sum * amplitude;
        norm += amplitude;
        amplitude *= fractal.ratio;
        factor *= growth;
        time *= timeGrowth;
    }
    // Kept as is: no bias, whatever the inflection; without an octave this is 0 / 0.
    const float r = fractal.threshold + total * fractal.amplitude / norm;
    return r > 1.0f ? 1.0f : r;
}

template <bool ThreeD>
float billow(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z, float time)
{
    constexpr int kNone = -1;
    switch (noise.falloff) {
    case kBillowLinear:
        return billowFractal<kBillowLinear, ThreeD>(tables, noise, x, y, z, time);
    case kBillowSmooth:
        return billowFractal<kBillowSmooth, ThreeD>(tables, noise, x, y, z, time);
    case kBillowFast:
        return billowFractal<kBillowFast, ThreeD>(tables, noise, x, y, z, time);
    case kBillowBubble:
        return billowFractal<kBillowBubble, ThreeD>(tables, noise, x, y, z, time);
    default:
        return billowFractal<kNone, ThreeD>(tables, noise, x, y, z, time);
    }
}

} // namespace
} // namespace nezaiva
