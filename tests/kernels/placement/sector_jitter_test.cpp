// The random numbers of a tile.

#include "kernels/placement/sector_jitter.h"

#include "support/tolerances.h"

namespace {

// Computed by a plain script with exact integers; two numbers a tile.
TEST(SectorJitter, IsAFixedPairOfNumbersForATile)
{
    const struct {
        int u, v;
        float first, second;
    } tiles[] = {
        {0, 0, 0.000989199616f, 0.292133301f},      {1, 0, 0.373943716f, 0.0545101166f},
        {0, 1, 0.0603133366f, 0.64625144f},         {-1, 0, 0.0370215848f, 0.859169185f},
        {3, -2, 0.316867232f, 0.968865633f},        {-7, -11, 0.270977736f, 0.716750622f},
        {1000, -1000, 0.0336457565f, 0.478810698f}, {2147483647, -2147483647 - 1, 0.197638378f, 0.765726209f},
    };
    for (const auto& tile : tiles) {
        const nezaiva::SectorJitter jitter = nezaiva::sectorJitter(tile.u, tile.v);
        EXPECT_SAME_BITS(jitter.first, tile.first) << tile.u << ' ' << tile.v;
        EXPECT_SAME_BITS(jitter.second, tile.second) << tile.u << ' ' << tile.v;
    }
}

TEST(SectorJitter, SpreadsOverTheUnitInterval)
{
    double sums[2] = {};
    for (int v = -50; v < 50; ++v)
        for (int u = -50; u < 50; ++u) {
            const nezaiva::SectorJitter jitter = nezaiva::sectorJitter(u, v);
            ASSERT_GE(jitter.first, 0.0f);
            ASSERT_LE(jitter.first, 1.0f);
            ASSERT_GE(jitter.second, 0.0f);
            ASSERT_LE(jitter.second, 1.0f);
            sums[0] += static_cast<double>(jitter.first);
            sums[1] += static_cast<double>(jitter.second);
        }
    // Ten thousand even numbers: the standard error of the mean is 0.003.
    EXPECT_NEAR(sums[0] / 10000, 0.5, 0.02);
    EXPECT_NEAR(sums[1] / 10000, 0.5, 0.02);
}

} // namespace
