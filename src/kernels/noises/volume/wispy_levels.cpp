#include "kernels/noises/volume/wispy_levels.h"

#include "kernels/noises/volume/volume_constants.h"
#include "kernels/noises/volume/volume_tables.h"

namespace nezaiva {

namespace {

constexpr auto kCells = static_cast<float>(kLatticeCells);

void fillLevels(const NoiseTables& noise, void (*next)(const NoiseTables&, WispyLevel&), WispyLevel* levels)
{
    WispyLevel level = kBeforeFirstWispyLevel;
    for (int i = 0; i < kTabledWispyLevels; ++i) {
        next(noise, level);
        levels[i] = level;
    }
}

// The shifts are summed up in units and rounded there; the factors are powers of two and round nothing.
void moveOn(WispyLevel& level, const float (&shiftStep)[4],
            void (*findDirection)(const NoiseTables&, int, float*), const NoiseTables& noise)
{
    const float number = level.number[0] + 1.0f;
    float direction[4];
    findDirection(noise, static_cast<int>(number), direction);
    for (int i = 0; i < 4; ++i) {
        level.number[i] = number;
        level.halfDirection[i] = direction[i] * (0.5f * kCells);
        level.shift[i] = (level.shift[i] / kCells + shiftStep[i]) * kCells;
    }
}

} // namespace

void fillWispyLevels(const NoiseTables& noise, WispyLevels& levels)
{
    fillLevels(noise, nextWispyLevel3d, levels.space);
    fillLevels(noise, nextWispyLevel2d, levels.plane);
}

void nextWispyLevel3d(const NoiseTables& noise, WispyLevel& level)
{
    moveOn(level, kPerlinShifts3d, volumeDirection3d, noise);
}

void nextWispyLevel2d(const NoiseTables& noise, WispyLevel& level)
{
    moveOn(level, kPerlinShifts2d, volumeDirection2d, noise);
}

} // namespace nezaiva
