// Both looks of the cloth against their plain twins over random points and numbers. The accurate weave does
// the twin's operations in the twin's order, so it has the twin's bits; so has the legacy weave, but for
// what double precision leaves of another order in the gradient noise, which no point here shows.

#include "kernels/procedurals/cloth.h"
#include "support/instruction_sets.h"
#include "support/noise_points.h"
#include "support/plain_cloth.h"

#include <random>

namespace {

using namespace nezaiva;
using OUtils::AColor;
using OUtils::Vector;

constexpr int kPoints = 200000;

const ClothColors kColors{{0.1f, 0.2f, 0.3f, 0.4f}, {1.0f, 0.9f, 0.8f, 0.7f}, {0.05f, 0.5f, 0.25f, 1.0f}};
const plain::ClothColors kPlainColors{
    {0.1f, 0.2f, 0.3f, 0.4f}, {1.0f, 0.9f, 0.8f, 0.7f}, {0.05f, 0.5f, 0.25f, 1.0f}};

class Inputs {
public:
    explicit Inputs(unsigned seed) : m_generator(seed) {}

    float between(float low, float high)
    {
        return std::uniform_real_distribution<float>(low, high)(m_generator);
    }
    bool coin() { return (m_generator() & 1u) != 0; }
    float orNone(float low, float high) { return coin() ? between(low, high) : 0.0f; }

    ClothWeave weave()
    {
        return {between(-0.1f, 1.2f), between(-0.1f, 1.2f), orNone(-0.5f, 0.5f), orNone(-0.5f, 0.5f),
                orNone(-0.5f, 2.0f),  orNone(-0.5f, 1.5f),  orNone(-1.0f, 2.0f)};
    }
    // Mostly near the origin, some far away, some whole or halves.
    float coordinate()
    {
        const unsigned choice = m_generator() % 16;
        if (choice == 0) return static_cast<float>(static_cast<int>(m_generator() % 41) - 20) * 0.5f;
        if (choice == 1) return between(-30000.0f, 30000.0f);
        return between(-20.0f, 20.0f);
    }

private:
    std::mt19937 m_generator;
};

plain::ClothNumbers plainNumbers(const ClothWeave& w)
{
    return {w.uWidth, w.vWidth, w.uWave, w.vWave, w.randomness, w.widthSpread, w.brightSpread};
}

bool sameColor(const AColor& a, const plain::Channels& b)
{
    return tolerance::sameBits(a.r, b[0]) && tolerance::sameBits(a.g, b[1]) &&
           tolerance::sameBits(a.b, b[2]) && tolerance::sameBits(a.a, b[3]);
}

class ClothTwin : public EveryInstructionSet {};
INSTANTIATE_TEST_SUITE_P(Sets, ClothTwin, kInstructionSets, instructionSetName);

} // namespace

TEST_P(ClothTwin, AccurateWeaveHasTheTwinsBits)
{
    Inputs inputs(1);
    int gaps = 0;
    for (int i = 0; i < kPoints; ++i) {
        const ClothWeave weave = inputs.weave();
        const float u = inputs.coordinate();
        const float v = inputs.coordinate();
        const AColor color = accurateCloth(u, v, weave, kColors);
        const plain::Channels twin = plain::accurateCloth(
            plain::currentTable().data(), u, v, plainNumbers(weave), kPlainColors, plain::RoundedSine());
        ASSERT_TRUE(sameColor(color, twin)) << u << ", " << v << ": " << color.r << " is not " << twin[0];
        gaps += twin == kPlainColors.gap ? 1 : 0;
    }
    EXPECT_GT(gaps, kPoints / 20);
    EXPECT_LT(gaps, kPoints / 2);
}

TEST_P(ClothTwin, LegacyWeaveHasTheTwinsBits)
{
    Inputs inputs(2);
    int gaps = 0;
    for (int i = 0; i < kPoints; ++i) {
        const ClothWeave weave = inputs.weave();
        const Vector p{inputs.coordinate(), inputs.coordinate(), inputs.coordinate()};
        const AColor color = legacyCloth(p, weave, kColors);
        const plain::Channels twin =
            plain::legacyCloth(plain::clothGradientTables(), p.x, p.y, p.z, plainNumbers(weave), kPlainColors,
                               plain::RoundedSine());
        ASSERT_TRUE(sameColor(color, twin)) << p.x << ", " << p.y << ": " << color.r << " is not " << twin[0];
        gaps += twin == kPlainColors.gap ? 1 : 0;
    }
    EXPECT_GT(gaps, kPoints / 20);
    EXPECT_LT(gaps, kPoints / 2);
}

TEST(ClothSets, GiveTheSameBitsAtEveryCoordinate)
{
    expectSameBitsWithEverySet([] {
        std::vector<float> results;
        const auto keep = [&results](const AColor& color) {
            results.insert(results.end(), {color.r, color.g, color.b, color.a});
        };
        Inputs inputs(3);
        const auto edges = edgeCoordinates<float>();
        for (const float u : edges)
            for (const float v : edges) {
                keep(accurateCloth(u, v, {}, kColors));
                keep(accurateCloth(u, v, inputs.weave(), kColors));
                keep(legacyCloth({u, v, u}, inputs.weave(), kColors));
            }
        NoisePoints points(4);
        for (int i = 0; i < kPoints; ++i) {
            const float u = points.nextFloat();
            const float v = points.nextFloat();
            keep(accurateCloth(u, v, inputs.weave(), kColors));
            keep(legacyCloth({u, v, 0.5f}, inputs.weave(), kColors));
        }
        return results;
    });
}
