// Evaluates a texture over the unit square into a picture.
#pragma once

#include "host/image/image.h"
#include "host/progress/progress.h"
#include "host/scene/scene.h"

#include <cstdint>
#include <optional>

namespace ombrix {

// What a texture gives: its interface and how many numbers a texel has.
struct BakeSource {
    OUtils::PluginInterface* texture = nullptr;
    OUtils::InterfaceId id = 0; // of texture: colour, float, int or vector
};

// The texture interface of a plugin or output, colour before float, int and vector; nothing when it has
// none of them.
std::optional<BakeSource> findBakeSource(const SceneObject& object);

struct BakeResult {
    Image image;                 // colour: 4 channels, straight alpha; float and int: 1; vector: 3, as data
    std::int64_t doneTexels = 0; // below size times size when it was interrupted; the others are 0
};

// Evaluates at the centres of size times size texels, u to the right and v up: row 0 holds the largest v.
// A texel's point is (u, v, 0) with the normal (0, 0, 1), its position differentials are one texel, its
// surface the identity mapping, filtering is off, and its stamp is its own. The same bits at every number
// of threads. Ends early when InterruptGuard::interrupted(). Call between frameBegin and frameEnd, with a
// size from 1 to kLargestBakeSize, and no more threads than the renderer told its plugins.
BakeResult bakeTexture(const BakeSource& source, int size, int threads, ProgressBar& progress);

} // namespace ombrix
