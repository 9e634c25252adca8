#include "kernels/noises/random_tables.h"

#include "support/plain_noise.h"
#include "support/tolerances.h"

#include <bit>
#include <cstdint>
#include <cstdlib>

using namespace nezaiva;

namespace {

// FNV-1a over the bytes of the floats. The expected sums come from a calculation of the tables' rule
// in another language.
std::uint64_t checksum(const RandomTable& table)
{
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const float value : table) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (int byte = 0; byte < 4; ++byte)
            hash = (hash ^ (bits >> (8 * byte) & 0xFFu)) * 0x100000001b3u;
    }
    return hash;
}

double meanOf(const RandomTable& table)
{
    double sum = 0.0;
    for (const float value : table)
        sum += static_cast<double>(value);
    return sum / kRandomTableSize;
}

} // namespace

TEST(RandomTables, CurrentTableBeginsAsScenesKnowIt)
{
    const RandomTable& table = currentNoiseTables.random;
    EXPECT_SAME_BITS(table[0], -0.510765f);
    EXPECT_SAME_BITS(table[1], -0.892593f);
    EXPECT_SAME_BITS(table[2], 0.324582f);
    EXPECT_SAME_BITS(table[3], 0.514013f);
    EXPECT_SAME_BITS(table[4], 0.676386f);
    EXPECT_SAME_BITS(table[5], -0.36570913f);
}

TEST(RandomTables, OldTableBeginsAsScenesKnowIt)
{
    EXPECT_SAME_BITS(oldNoiseTables.random[0], -0.864927f);
    EXPECT_SAME_BITS(oldNoiseTables.random[1], -0.440085f);
}

TEST(RandomTables, ChecksumsHold)
{
    EXPECT_EQ(checksum(currentNoiseTables.random), 0x069e8dc9256072eeu);
    EXPECT_EQ(checksum(oldNoiseTables.random), 0xbe7ff340843a918fu);
}

TEST(RandomTables, EveryEntryFollowsTheRule)
{
    for (std::size_t i = 0; i < kRandomTableSize; ++i) {
        ASSERT_EQ(currentNoiseTables.random[i], plain::currentTable()[i]) << i;
        ASSERT_EQ(oldNoiseTables.random[i], plain::oldTable()[i]) << i;
    }
}

TEST(RandomTables, ValuesAreEvenlySpread)
{
    for (const auto* tables : {&currentNoiseTables, &oldNoiseTables}) {
        int counts[16] = {};
        for (const float value : tables->random) {
            ASSERT_GT(value, -1.0f);
            ASSERT_LT(value, 1.0f);
            ++counts[static_cast<int>((value + 1.0f) * 8.0f)];
        }
        for (const int count : counts)
            EXPECT_NEAR(count, 65535 / 16, 5 * 64); // five standard deviations
        EXPECT_NEAR(meanOf(tables->random), 0.0, 0.01);
    }
}

TEST(RandomTables, LayoutsRepeatTheWrappedNeighbours)
{
    for (const auto* tables : {&currentNoiseTables, &oldNoiseTables})
        for (int x = -1; x <= 32; ++x)
            for (int y = -1; y <= 32; ++y) {
                const int column = (x & 31) | (y & 31) << 5;
                ASSERT_EQ(tables->plane[x + 1][y + 1], tables->random[column]);
                for (int z = -1; z <= 32; ++z)
                    ASSERT_EQ(tables->space[x + 1][y + 1][z + 1], tables->random[column | (z & 31) << 10]);
            }
}

TEST(RandomValue, NegativeIndexReadsItsMagnitude)
{
    EXPECT_SAME_BITS(randomValue(-1), randomValue(1));
    EXPECT_SAME_BITS(randomValue(-1), randomTable[1]);
    EXPECT_SAME_BITS(randomValue(-65534), randomTable[65534]);
}

TEST(RandomValue, IndexWrapsAtTheTableSize)
{
    EXPECT_SAME_BITS(randomValue(65535), randomValue(0));
    EXPECT_SAME_BITS(randomValue(65534), randomTable[65534]);
    EXPECT_SAME_BITS(randomValue(65536), randomTable[1]);
    EXPECT_SAME_BITS(randomValue(-65536), randomTable[1]);
    EXPECT_SAME_BITS(randomValue(INT32_MAX), randomTable[32767]); // 2^31 - 1 = 32768 * 65535 + 32767
    EXPECT_SAME_BITS(randomValue(INT32_MIN), randomTable[32768]);
}

TEST(RandomTableSwitch, TextReadsAsADecimalInteger)
{
    EXPECT_FALSE(wantsOldRandomTable(nullptr));
    EXPECT_FALSE(wantsOldRandomTable(""));
    EXPECT_FALSE(wantsOldRandomTable("0"));
    EXPECT_FALSE(wantsOldRandomTable("000"));
    EXPECT_FALSE(wantsOldRandomTable("yes"));
    EXPECT_FALSE(wantsOldRandomTable("0x10"));
    EXPECT_FALSE(wantsOldRandomTable("0.9"));
    EXPECT_TRUE(wantsOldRandomTable("1"));
    EXPECT_TRUE(wantsOldRandomTable("-1"));
    EXPECT_TRUE(wantsOldRandomTable(" 7 times"));
}

// Registered several times, with different environments: RANDOM_TABLE_EXPECTED says what to find.
TEST(RandomTableSwitch, EnvironmentChoosesTheTableAtLoad)
{
    const char* expected = std::getenv("RANDOM_TABLE_EXPECTED");
    const bool old = expected != nullptr && *expected == 'o';
    EXPECT_SAME_BITS(randomTable[0], old ? -0.864927f : -0.510765f);
    EXPECT_SAME_BITS(randomValue(1), old ? -0.440085f : -0.892593f);
    EXPECT_EQ(&activeNoiseTables(), old ? &oldNoiseTables : &currentNoiseTables);
    setenv("MAYA_RENDERER_OLD_RANDOM_TABLE", old ? "0" : "1", 1);
    EXPECT_SAME_BITS(randomTable[0], old ? -0.864927f : -0.510765f); // read once only
}
