// The numbers that shape the volume noises; volume_noise.h has the formulas that they stand in.
#pragma once

namespace nezaiva {

constexpr float kPi = 3.1415927f;
constexpr float kTwoPi = 6.2831855f;

// What moves the point in each octave, once more than in the one before, on each axis.
constexpr float kPerlinShifts3d[4] = {0.02f, 0.3f, 0.01f, 0.0f};
constexpr float kPerlinShifts2d[4] = {0.02f, 0.3f, 0.0f, 0.0f};
constexpr float kBlobAndWaveShifts[4] = {0.021f, 0.33f, 0.011f, 0.0f};

// How far a unit of time moves an octave of the Perlin type along its direction, and half a unit for each
// octave before it; and how far it moves one that has time as an axis.
constexpr float kDriftRate = 0.0625f;
constexpr float kDriftOfLevel = 0.5f;
constexpr float kSpaceTimeRate = 0.1f;

// The warp of the wispy form: of a point that is narrowed, drifts at a rate of its own, and is moved by
// the noise there times the warp.
constexpr float kWispyNarrowing = 0.1f;
constexpr float kWispyDriftRate = 0.01875f;
constexpr float kWispyWarp = 0.3125f;

constexpr float kFoldedWaves = 2.3f; // the strength of the waves in space when octaves are folded

} // namespace nezaiva
