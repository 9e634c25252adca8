// The offsets of the billow's blobs, on lanes.
//
// An offset is the sine or the cosine of a table angle that time turns. Both of the table angle are
// constants of the table, both of the turn are constants of the octave, so that no blob needs a
// polynomial of its own.
#pragma once

#include "kernels/noises/volume/volume_tables.h"
#include "kernels/noises/volume/volume_trig_body.h"

namespace nezaiva {
namespace {

// How the offsets of the blobs are found; each way also holds where one before it does.
enum class Motion {
    None,   // time 0: they are constants of the table
    Slow,   // the sum of a table angle and its turn is as good as exact
    Coarse, // the formula rounds that sum to float, visibly; the rounding is taken over
    Late,   // so late a time that the rounding is no small angle: each blob has its polynomial
};

// Up to this turn the rounded angles stay below 9.3 radians; most lie below 8, where their errors are
// below 2.4e-7, the others have errors below 4.8e-7.
constexpr float kLargestSlowTurn = 3.0f;

// Up to this turn the rounding loses at most 1.3e-4, its square halved less than 1e-8.
constexpr float kLargestCoarseTurn = 2048.0f;

inline Motion motionOf(float time)
{
    if (time == 0.0f) return Motion::None;
    const float largest = 2.0f * (time < 0.0f ? -time : time);
    if (largest <= kLargestSlowTurn) return Motion::Slow;
    return largest <= kLargestCoarseTurn ? Motion::Coarse : Motion::Late;
}

// The turns of the offsets along the three axes in one octave. The sines and the cosines are
// multiplied by how far the blobs lie off their cells' centres.
struct Turns {
    alignas(32) float sines[4];
    float cosines[4];
    float angles[4];
};

inline void turnBy(float time, Float8 reach, Motion kind, Turns& turns)
{
    const Float4 angles = time * Float4(2.0f, 1.5f, 1.0f, 0.0f);
    angles.store(turns.angles);
    if (kind == Motion::Late) return;
    // A sine is the cosine of a quarter turn less.
    const Float8 quarters(quarterLessTurns(angles, 0.25), quarterLessTurns(angles));
    (cosineOfQuarters(quarters) * reach).store(turns.sines);
}

// A constant of all lanes, in as many lanes as its first argument has.
inline Float4 like(Float4, Float8 constant)
{
    return lowHalf(constant);
}
inline Float8 like(Float8, Float8 constant)
{
    return constant;
}

struct OffsetFields {
    BillowField sine, cosine, angle;
};
constexpr OffsetFields kOffsetFields[] = {
    {kSine0, kCosine0, kAngle0}, {kSine1, kCosine1, kAngle1}, {kSine2, kCosine2, kAngle2}};

// Takes over into the sine and the cosine of an angle what the formula loses of the angle when it adds
// the turn to it. Subtracting the turn again is exact for turns greater than the angle, and as good as
// the sum of smaller ones for these.
template <class Lanes>
[[gnu::always_inline]] inline void loseOfAngle(Lanes angle, Lanes turn, Lanes& sine, Lanes& cosine)
{
    const Lanes turned = angle + turn;
    const Lanes lost = angle - (turned - turn);
    const Lanes exactSine = sine;
    sine = sine - lost * cosine;
    cosine = cosine + lost * exactSine;
}

// The offsets of the blobs of a group along an axis: sines along the first, cosines along the others.
// The group gives its fields as Float4 or Float8.
template <Motion Kind, int Axis, class Group, class Lanes>
[[gnu::always_inline]] inline Lanes offset(const Group& group, const Turns& turns, Lanes reach)
{
    constexpr OffsetFields kFields = kOffsetFields[Axis];
    if constexpr (Kind == Motion::None) return group.field(Axis == 0 ? kFields.sine : kFields.cosine) * reach;
    const auto all = [](float value) { return Lanes(value); };
    if constexpr (Kind == Motion::Late)
        return anyCosine(group.field(kFields.angle) + all(turns.angles[Axis]), Axis == 0 ? 0.25 : 0.0) *
               reach;
    Lanes sine = group.field(kFields.sine);
    Lanes cosine = group.field(kFields.cosine);
    if constexpr (Kind == Motion::Coarse)
        loseOfAngle(group.field(kFields.angle), all(turns.angles[Axis]), sine, cosine);
    if constexpr (Axis == 0) return sine * all(turns.cosines[Axis]) + cosine * all(turns.sines[Axis]);
    return cosine * all(turns.cosines[Axis]) - sine * all(turns.sines[Axis]);
}

} // namespace
} // namespace nezaiva
