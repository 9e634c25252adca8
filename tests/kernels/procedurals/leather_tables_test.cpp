#include "kernels/procedurals/leather_tables.h"

#include "support/plain_leather.h"
#include "support/tolerances.h"

#include <bit>
#include <set>
#include <tuple>

using namespace nezaiva;

namespace {

// FNV-1a over 32-bit words. The expected sums come from a calculation of the rules in another language.
class Checksum {
public:
    void add(std::uint32_t word)
    {
        for (int byte = 0; byte < 4; ++byte)
            m_hash = (m_hash ^ (word >> (8 * byte) & 0xFFu)) * 0x100000001b3u;
    }
    void add(float value) { add(std::bit_cast<std::uint32_t>(value)); }
    void add(std::int32_t value) { add(static_cast<std::uint32_t>(value)); }
    std::uint64_t value() const { return m_hash; }

private:
    std::uint64_t m_hash = 0xcbf29ce484222325u;
};

} // namespace

TEST(LeatherTable, BeginsAsItsRuleSays)
{
    EXPECT_SAME_BITS(leatherTable[0], -0.3775167f);
    EXPECT_SAME_BITS(leatherTable[1], 0.00804656744f);
    EXPECT_SAME_BITS(leatherTable[2], -0.92499155f);
}

TEST(LeatherTable, EveryEntryFollowsTheRule)
{
    Checksum sum;
    for (std::size_t i = 0; i < kLeatherTableSize; ++i) {
        ASSERT_PRED2(tolerance::sameBits, leatherTable[i], plain::leatherNumbers()[i]) << i;
        ASSERT_LT(std::fabs(leatherTable[i]), 1.0f);
        sum.add(leatherTable[i]);
    }
    EXPECT_EQ(sum.value(), 0xf5b0a03d0d85c986u);
}

TEST(LeatherTable, HoldsTheFiveNumbersOfTheLastCell)
{
    EXPECT_GE(kLeatherTableSize, kLeatherCells * kLeatherCells * kLeatherCells + 5);
}

TEST(LeatherFalloff, FallsWithTheRootOfTheSquaredDistance)
{
    EXPECT_EQ(leatherFalloff[0], 1.0f);
    EXPECT_EQ(leatherFalloff[1], 0.9375f); // 1 - 1 / 16
    EXPECT_EQ(leatherFalloff[64], 0.5f);
    EXPECT_EQ(leatherFalloff[81], 0.4375f);
    EXPECT_SAME_BITS(leatherFalloff[255], 0.00195503607f);
    Checksum sum;
    for (std::size_t i = 0; i < kLeatherFalloffSize; ++i) {
        ASSERT_PRED2(tolerance::sameBits, leatherFalloff[i], plain::leatherFalloff()[i]) << i;
        sum.add(leatherFalloff[i]);
    }
    EXPECT_EQ(sum.value(), 0x49b2038286f2c3acu);
}

TEST(CellSearchOrder, BeginsAndEndsAsKnown)
{
    const auto expectRow = [](const SearchRow& row, int dx, int dy, int dz, int bound) {
        EXPECT_EQ(row.dx, dx);
        EXPECT_EQ(row.dy, dy);
        EXPECT_EQ(row.dz, dz);
        EXPECT_EQ(row.bound, bound);
    };
    expectRow(cellSearchOrder[0], 0, 0, 0, 0);
    expectRow(cellSearchOrder[1], -1, 0, 0, 0);
    expectRow(cellSearchOrder[26], 1, 1, 1, 0);
    expectRow(cellSearchOrder[27], -2, 0, 0, 1);
    expectRow(cellSearchOrder[342], 3, 3, 3, 12);
}

TEST(CellSearchOrder, IsSortedByBoundThenDistanceThenOffset)
{
    Checksum sum;
    std::set<std::tuple<int, int, int>> offsets;
    for (std::size_t i = 0; i < kSearchRows; ++i) {
        const SearchRow& row = cellSearchOrder[i];
        const plain::SearchRow& expected = plain::cellSearchOrder()[i];
        ASSERT_EQ(row.dx, expected.dx) << i;
        ASSERT_EQ(row.dy, expected.dy) << i;
        ASSERT_EQ(row.dz, expected.dz) << i;
        ASSERT_EQ(row.bound, expected.bound) << i;
        offsets.emplace(row.dx, row.dy, row.dz);
        for (const std::int32_t number : {row.dx, row.dy, row.dz, row.bound})
            sum.add(number);
    }
    EXPECT_EQ(offsets.size(), 343u);
    EXPECT_EQ(sum.value(), 0x3bbab7000a4a517au);
}
