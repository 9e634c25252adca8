#include "kernels/procedurals/cloth_table.h"

#include "kernels/noises/random_tables.h"
#include "support/plain_noise.h"
#include "support/tolerances.h"

#include <bit>

using namespace nezaiva;

TEST(ClothTable, BeginsAsTheCurrentRandomTable)
{
    EXPECT_EQ(clothTable[0], static_cast<double>(-0.510765f));
    EXPECT_EQ(clothTable[1], static_cast<double>(-0.892593f));
    EXPECT_EQ(clothTable[2], static_cast<double>(0.324582f));
    EXPECT_EQ(clothTable[3], static_cast<double>(0.514013f));
    EXPECT_EQ(clothTable[4], static_cast<double>(0.676386f));
    EXPECT_EQ(clothTable[5], static_cast<double>(-0.36570913f));
}

TEST(ClothTable, EveryEntryFollowsTheRuleOfTheCurrentTable)
{
    for (std::size_t i = 0; i < kClothTableSize; ++i) {
        ASSERT_EQ(clothTable[i], static_cast<double>(plain::currentTable()[i])) << i;
        ASSERT_EQ(clothTable[i], static_cast<double>(currentNoiseTables.random[i])) << i;
    }
}

// FNV-1a over the bytes of the doubles, from a calculation of the rule in another language.
TEST(ClothTable, ChecksumHolds)
{
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const double value : clothTable) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        for (int byte = 0; byte < 8; ++byte)
            hash = (hash ^ (bits >> (8 * byte) & 0xFFu)) * 0x100000001b3u;
    }
    EXPECT_EQ(hash, 0x8781c03a5859537cu);
}

TEST(ClothValue, WrapsAtTheTableSize)
{
    EXPECT_SAME_BITS(clothValue(0), -0.510765f);
    EXPECT_SAME_BITS(clothValue(32768), -0.510765f);
    EXPECT_SAME_BITS(clothValue(32767 + 65536), currentNoiseTables.random[32767]);
    EXPECT_SAME_BITS(clothValue(-1), currentNoiseTables.random[32767]);
    EXPECT_SAME_BITS(clothValue(-32767), -0.892593f);
    EXPECT_SAME_BITS(clothValue(INT32_MIN), -0.510765f);
}

// Registered with the environment variable of the other table set.
TEST(ClothTable, KeepsToTheCurrentTableWhateverTheEnvironmentChose)
{
    const bool old = &activeNoiseTables() == &oldNoiseTables;
    EXPECT_SAME_BITS(randomTable[0], old ? -0.864927f : -0.510765f);
    EXPECT_SAME_BITS(clothValue(0), -0.510765f);
}
