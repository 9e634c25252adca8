// The constants of the octaves of the wispy fractals.
#pragma once

#include "kernels/noises/random_tables.h"

namespace nezaiva {

// Lengths are in cells of the lattice, 32 to a unit.
struct WispyLevel {
    alignas(16) float halfDirection[4]; // half of the unit direction; the fourth component is 0
    float shift[4];                     // of the point, grown up to this level; the fourth component is 0
    float number[4];                    // of the level, in every component
};

constexpr int kTabledWispyLevels = 16; // from here on they are computed where they are needed

struct WispyLevels {
    WispyLevel space[kTabledWispyLevels];
    WispyLevel plane[kTabledWispyLevels]; // the third component is 0
};

void fillWispyLevels(const NoiseTables& noise, WispyLevels& levels);

// Moves on to the next level; the first one follows kBeforeFirstWispyLevel.
constexpr WispyLevel kBeforeFirstWispyLevel = {{}, {}, {-1.0f, -1.0f, -1.0f, -1.0f}};
void nextWispyLevel3d(const NoiseTables& noise, WispyLevel& level);
void nextWispyLevel2d(const NoiseTables& noise, WispyLevel& level);

} // namespace nezaiva
