// The colour matching functions of the standard observer: what red-, green- and blue-sensitive light of
// each wavelength adds to X, Y and Z. Two decimals, every 5 nanometres from 360.
#pragma once

#include <array>
#include <cstddef>

namespace nezaiva {

inline constexpr int kMatchingRows = 72;
using MatchingTable = std::array<float, kMatchingRows>;

// The values from a row on; the rows before and behind are zero.
template <std::size_t count>
constexpr MatchingTable matchingTable(std::size_t firstRow, const float (&values)[count])
{
    static_assert(count <= kMatchingRows);
    MatchingTable table{};
    for (std::size_t i = 0; i < count; ++i)
        table[firstRow + i] = values[i];
    return table;
}

inline constexpr MatchingTable kMatchingX = matchingTable(
    7, {0.01f, 0.02f, 0.04f, 0.08f, 0.14f, 0.2f,  0.26f, 0.31f, 0.36f, 0.38f, 0.39f, 0.37f, 0.34f,
        0.3f,  0.25f, 0.2f,  0.13f, 0.08f, 0.04f, 0.02f, 0.01f, 0.0f,  0.02f, 0.04f, 0.07f, 0.12f,
        0.17f, 0.24f, 0.3f,  0.38f, 0.45f, 0.53f, 0.62f, 0.71f, 0.79f, 0.88f, 0.95f, 1.01f, 1.07f,
        1.12f, 1.13f, 1.12f, 1.09f, 1.03f, 0.95f, 0.86f, 0.75f, 0.65f, 0.54f, 0.43f, 0.34f, 0.27f,
        0.2f,  0.15f, 0.11f, 0.08f, 0.06f, 0.04f, 0.03f, 0.02f, 0.01f, 0.01f, 0.01f});

inline constexpr MatchingTable kMatchingY =
    matchingTable(10, {0.01f, 0.01f, 0.02f, 0.03f, 0.04f, 0.05f, 0.06f, 0.07f, 0.09f, 0.11f, 0.13f, 0.15f,
                       0.19f, 0.22f, 0.25f, 0.3f,  0.34f, 0.4f,  0.46f, 0.53f, 0.61f, 0.69f, 0.76f, 0.82f,
                       0.88f, 0.92f, 0.96f, 0.98f, 0.99f, 1.0f,  1.0f,  0.98f, 0.96f, 0.92f, 0.87f, 0.83f,
                       0.78f, 0.72f, 0.66f, 0.59f, 0.53f, 0.46f, 0.4f,  0.34f, 0.28f, 0.23f, 0.18f, 0.14f,
                       0.11f, 0.08f, 0.06f, 0.04f, 0.03f, 0.02f, 0.02f, 0.01f, 0.01f, 0.01f});

inline constexpr MatchingTable kMatchingZ =
    matchingTable(6, {0.01f, 0.03f, 0.09f, 0.2f,  0.39f, 0.66f, 0.97f, 1.28f, 1.55f, 1.8f,  1.97f,
                      2.03f, 1.99f, 1.9f,  1.75f, 1.55f, 1.32f, 1.03f, 0.77f, 0.57f, 0.42f, 0.3f,
                      0.22f, 0.16f, 0.11f, 0.08f, 0.06f, 0.04f, 0.03f, 0.02f, 0.01f, 0.01f});

} // namespace nezaiva
