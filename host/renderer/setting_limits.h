// The largest settings, the same in a scene file and on the command line. They are far beyond what is of
// use; they keep a slip of the keyboard from asking for more memory or threads than there are.
#pragma once

#include <cstdint>

namespace ombrix {

inline constexpr int kMostThreads = 4096;
inline constexpr int kLargestPictureSide = 65536;
inline constexpr std::int64_t kMostPicturePixels = std::int64_t{1} << 28;
inline constexpr int kMostSamples = 1 << 20;
// Every texel of a bake has a stamp of its own.
inline constexpr int kLargestBakeSize = 16384;
// Of one call.
inline constexpr int kMostFrames = 100000;
inline constexpr int kMostGeometrySamples = 1024;

} // namespace ombrix
