#include "host/integrator/sampler.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace {

using ombrix::Pair;
using ombrix::Sampler;

std::vector<Pair> pairs(std::uint32_t pixel, int count, int dimension)
{
    std::vector<Pair> result;
    for (int i = 0; i < count; ++i) {
        Sampler sampler;
        sampler.start(pixel, static_cast<std::uint32_t>(i));
        Pair pair;
        for (int d = 0; d <= dimension; ++d)
            pair = sampler.nextPair();
        result.push_back(pair);
    }
    return result;
}

TEST(Sampler, DependsOnPixelSampleAndDimensionAlone)
{
    const auto a = pairs(17, 8, 3), b = pairs(17, 8, 3);
    for (std::size_t i = 0; i < a.size(); ++i)
        EXPECT_EQ(a[i].u, b[i].u);
    EXPECT_NE(pairs(17, 1, 3)[0].u, pairs(18, 1, 3)[0].u);
    EXPECT_NE(pairs(17, 1, 3)[0].u, pairs(17, 1, 4)[0].u);
}

TEST(Sampler, NumbersLieInTheUnitInterval)
{
    for (const Pair& pair : pairs(5, 4096, 2)) {
        ASSERT_TRUE(pair.u >= 0.0f && pair.u < 1.0f);
        ASSERT_TRUE(pair.v >= 0.0f && pair.v < 1.0f);
    }
}

// The first 2^n points of a (0, 2) sequence have one point in each cell of every grid of 2^a by 2^b cells
// with a + b = n.
TEST(Sampler, PairsFillEveryGridOfCellsEvenly)
{
    for (std::uint32_t pixel : {1u, 99u, 123456u}) {
        for (int dimension : {0, 1, 6}) {
            for (int n : {2, 4, 6}) {
                const auto points = pairs(pixel, 1 << n, dimension);
                for (int a = 0; a <= n; ++a) {
                    std::set<int> cells;
                    for (const Pair& p : points) {
                        const int x = static_cast<int>(p.u * static_cast<float>(1 << a));
                        const int y = static_cast<int>(p.v * static_cast<float>(1 << (n - a)));
                        cells.insert(x * 4096 + y);
                    }
                    EXPECT_EQ(cells.size(), points.size())
                        << "pixel " << pixel << " dimension " << dimension << " grid " << a << "," << n - a;
                }
            }
        }
    }
}

TEST(Sampler, DimensionsAreNotCorrelated)
{
    const int count = 4096;
    const auto a = pairs(3, count, 0), b = pairs(3, count, 1);
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += (static_cast<double>(a[i].u) - 0.5) * (static_cast<double>(b[i].u) - 0.5);
    EXPECT_NEAR(sum / count * 12.0, 0.0, 0.06);
}

} // namespace
