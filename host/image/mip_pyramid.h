// A picture with its smaller versions, and lookups in it by texture coordinates.
//
// u runs to the right and v up: (0, 0) is the lower left corner of the lower left texel, (1, 1) the upper
// right corner of the picture. Lookups are const, take no lock and allocate nothing.
#pragma once

#include "host/image/image.h"

#include <ombrix/types.h>

#include <vector>

namespace ombrix {

// What stands outside the unit square.
enum class Wrap : int {
    Repeat = 0,
    Mirror = 1, // every other copy is turned over
    Clamp = 2,  // the texels of the edge
    Black = 3,  // transparent black
};

class MipPyramid {
public:
    // A 4-channel picture of at least one pixel. Each smaller level has half the size, rounded down, and
    // holds the mean of what its texels cover, colour and alpha each for itself; the last has one texel.
    explicit MipPyramid(const Image& image);

    int width() const { return levels.front().width; }
    int height() const { return levels.front().height; }
    int levelCount() const { return static_cast<int>(levels.size()); }
    // A texel of a level, row 0 at the top.
    const OUtils::AColor& texel(int level, int x, int y) const { return levels[indexOf(level)].at(x, y); }

    // The texel that holds the point. All coordinates of lookups must be finite.
    OUtils::AColor nearest(float u, float v, Wrap wrap) const;
    // Between the centres of the four nearest texels of the full size.
    OUtils::AColor bilinear(float u, float v, Wrap wrap) const;
    // Bilinear in the two levels whose texels are nearest to a footprint, which is in texels of the full
    // size; below 1, and for a NaN, the full size alone.
    OUtils::AColor trilinear(float u, float v, float footprint, Wrap wrap) const;

    // The smallest and largest value of each channel.
    void bounds(OUtils::AColor* lower, OUtils::AColor* upper) const;

private:
    struct Level {
        int width = 0, height = 0;
        std::vector<OUtils::AColor> texels;

        const OUtils::AColor& at(int x, int y) const
        {
            return texels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                          static_cast<std::size_t>(x)];
        }
    };

    static std::size_t indexOf(int level) { return static_cast<std::size_t>(level); }
    static Level halved(const Level& level);
    static OUtils::AColor sample(const Level& level, float u, float v, Wrap wrap);

    std::vector<Level> levels;
};

} // namespace ombrix
