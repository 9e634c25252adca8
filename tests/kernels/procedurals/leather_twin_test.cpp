// Both looks of the leather against their plain twins over random points and numbers. Both do the twin's
// operations in the twin's order, so they have its bits, the marks of creases among them.

#include "kernels/procedurals/leather.h"
#include "support/instruction_sets.h"
#include "support/noise_points.h"
#include "support/plain_leather.h"

#include <random>

namespace {

using namespace nezaiva;
using OUtils::AColor;
using OUtils::Vector;

constexpr int kPoints = 200000;

const LeatherColors kColors{{0.9f, 0.5f, 0.2f, 0.3f}, {0.1f, 0.05f, 0.4f, 0.6f}};
constexpr plain::Rgb kCell{0.9f, 0.5f, 0.2f};
constexpr plain::Rgb kCrease{0.1f, 0.05f, 0.4f};

class Inputs {
public:
    explicit Inputs(unsigned seed) : m_generator(seed) {}

    float between(float low, float high)
    {
        return std::uniform_real_distribution<float>(low, high)(m_generator);
    }
    bool coin() { return (m_generator() & 1u) != 0; }
    float either(float usual, float low, float high) { return coin() ? usual : between(low, high); }

    LeatherNumbers numbers()
    {
        return {either(0.5f, 0.0f, 3.0f),  either(1.0f, 0.0f, 6.0f),   either(0.5f, -1.0f, 3.0f),
                either(0.5f, -1.0f, 2.5f), either(0.83f, -0.5f, 1.5f), between(0.0f, 1.0f) < 0.7f};
    }
    // Mostly near the origin, some far away, some whole.
    float coordinate()
    {
        const unsigned choice = m_generator() % 16;
        if (choice == 0) return static_cast<float>(static_cast<int>(m_generator() % 41) - 20) * 0.5f;
        if (choice == 1) return between(-30000.0f, 30000.0f);
        return between(-20.0f, 20.0f);
    }
    Vector point() { return {coordinate(), coordinate(), coordinate()}; }

private:
    std::mt19937 m_generator;
};

plain::LeatherNumbers plainNumbers(const LeatherNumbers& n)
{
    return {n.size, n.density, n.spottyness, n.randomness, n.threshold, n.creases};
}

bool sameColor(const AColor& a, const plain::Rgba& b)
{
    return tolerance::sameBits(a.r, b[0]) && tolerance::sameBits(a.g, b[1]) &&
           tolerance::sameBits(a.b, b[2]) && tolerance::sameBits(a.a, b[3]);
}

class LeatherTwin : public EveryInstructionSet {};
INSTANTIATE_TEST_SUITE_P(Sets, LeatherTwin, kInstructionSets, instructionSetName);

std::string described(const Vector& p, const LeatherNumbers& n)
{
    std::string text = "at";
    for (const float number : {p.x, p.y, p.z})
        text += " " + std::to_string(number);
    text += " with";
    for (const float number : {n.size, n.density, n.spottyness, n.randomness, n.threshold})
        text += " " + std::to_string(number);
    return text + (n.creases ? " and creases" : "");
}

void expectTwinsBits(const Vector& p, const LeatherNumbers& n)
{
    ASSERT_TRUE(sameColor(currentLeather(p, n, kColors),
                          plain::currentLeather(p.x, p.y, p.z, plainNumbers(n), kCell, kCrease)))
        << "current " << described(p, n);
    ASSERT_TRUE(sameColor(legacyLeather(p, n, kColors),
                          plain::legacyLeather(p.x, p.y, p.z, plainNumbers(n), kCell, kCrease)))
        << "legacy " << described(p, n);
}

} // namespace

TEST_P(LeatherTwin, DefaultsHaveTheTwinsBits)
{
    Inputs inputs(1);
    for (int i = 0; i < kPoints && !HasFatalFailure(); ++i)
        expectTwinsBits(inputs.point(), {});
}

TEST_P(LeatherTwin, EveryNumberHasTheTwinsBits)
{
    Inputs inputs(2);
    for (int i = 0; i < kPoints && !HasFatalFailure(); ++i) {
        const Vector point = inputs.point();
        expectTwinsBits(point, inputs.numbers());
    }
}

// The points of cell borders, of the middles of cells and next to them, of many periods.
TEST_P(LeatherTwin, BordersOfCellsHaveTheTwinsBits)
{
    LeatherNumbers numbers;
    for (const float size : {0.5f, 5.0f})
        for (const float randomness : {0.0f, 0.5f, 1.0f})
            for (int i = -45; i <= 45; ++i)
                for (const float offset : {0.0f, 1e-6f, -1e-6f, 0.45f, 0.5f}) {
                    numbers.size = size;
                    numbers.randomness = randomness;
                    const float x = (static_cast<float>(i) + offset) * size * 0.2f;
                    expectTwinsBits({x, 0.05f * size, -0.07f}, numbers);
                    expectTwinsBits({0.3f, x, x}, numbers);
                    if (HasFatalFailure()) return;
                }
}

// Cells beyond 32 bits count as the last that there are, and some neighbours lie behind them.
TEST_P(LeatherTwin, FarPointsHaveTheTwinsBits)
{
    LeatherNumbers numbers;
    for (const float far : {1e6f, 1.7e7f, 2.147483e8f, 2.1474836e8f, 2.2e8f, 1e12f, 1e30f, 3.4e38f})
        for (const float sign : {1.0f, -1.0f}) {
            expectTwinsBits({sign * far, 0.3f, 0.2f}, numbers);
            expectTwinsBits({0.1f, sign * far, -sign * far}, numbers);
        }
}

TEST(LeatherSets, GiveTheSameBitsAtEveryCoordinate)
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
                keep(currentLeather({u, v, 0.3f}, {}, kColors));
                keep(currentLeather({0.3f, v, u}, inputs.numbers(), kColors));
                keep(legacyLeather({u, v, 0.3f}, {}, kColors));
            }
        NoisePoints points(4);
        for (int i = 0; i < kPoints; ++i) {
            const Vector p{points.nextFloat(), points.nextFloat(), points.nextFloat()};
            keep(currentLeather(p, inputs.numbers(), kColors));
            keep(legacyLeather(p, inputs.numbers(), kColors));
        }
        return results;
    });
}
