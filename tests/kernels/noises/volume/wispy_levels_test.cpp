#include "kernels/noises/volume/wispy_levels.h"

#include "support/plain_volume_noise.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

using namespace nezaiva;

namespace {

const WispyLevels& filledLevels()
{
    static const auto levels = [] {
        WispyLevels made;
        fillWispyLevels(activeNoiseTables(), made);
        return made;
    }();
    return levels;
}

} // namespace

TEST(WispyLevels, HoldTheirShiftsAndHalfDirectionsInCells)
{
    WispyLevel level = kBeforeFirstWispyLevel;
    float x = 0.0f, y = 0.0f, z = 0.0f;
    for (int number = 0; number < 3 * kTabledWispyLevels; ++number) {
        nextWispyLevel3d(activeNoiseTables(), level);
        x += 0.02f;
        y += 0.3f;
        z += 0.01f;
        const VolumePoint direction = plain::levelDirection3(number);
        const float shift[] = {32.0f * x, 32.0f * y, 32.0f * z, 0.0f};
        const float half[] = {16.0f * direction.x, 16.0f * direction.y, 16.0f * direction.z, 0.0f};
        for (int i = 0; i < 4; ++i) {
            EXPECT_SAME_BITS(level.number[i], static_cast<float>(number));
            EXPECT_SAME_BITS(level.shift[i], shift[i]);
            EXPECT_SAME_BITS(level.halfDirection[i], half[i]);
            if (number >= kTabledWispyLevels) continue;
            EXPECT_SAME_BITS(filledLevels().space[number].number[i], level.number[i]);
            EXPECT_SAME_BITS(filledLevels().space[number].shift[i], level.shift[i]);
            EXPECT_SAME_BITS(filledLevels().space[number].halfDirection[i], level.halfDirection[i]);
        }
    }
}

TEST(WispyLevels, OfThePlaneHaveTwoComponents)
{
    float x = 0.0f, y = 0.0f;
    for (int number = 0; number < kTabledWispyLevels; ++number) {
        const WispyLevel& level = filledLevels().plane[number];
        x += 0.02f;
        y += 0.3f;
        const VolumePoint direction = plain::levelDirection2(number);
        const float shift[] = {32.0f * x, 32.0f * y, 0.0f, 0.0f};
        const float half[] = {16.0f * direction.x, 16.0f * direction.y, 0.0f, 0.0f};
        for (int i = 0; i < 4; ++i) {
            EXPECT_SAME_BITS(level.number[i], static_cast<float>(number));
            EXPECT_SAME_BITS(level.shift[i], shift[i]);
            EXPECT_SAME_BITS(level.halfDirection[i], half[i]);
        }
    }
}
