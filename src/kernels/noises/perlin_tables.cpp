#include "kernels/noises/perlin_tables.h"

#include "numeric/random_sequence.h"

#include <cstddef>

namespace OUtils {

namespace {

constexpr std::uint64_t kGradientStream = 4;
constexpr double kShortestSquared = 0.0001; // a triple nearer to 0 has no reliable direction

constexpr std::uint8_t kPermutation[kPerlinTableSize] = {
    160, 255, 147, 103, 61,  86,  90,  116, 230, 19,  104, 70,  225, 173, 32,  169, 51,  78,  84,  11,
    75,  36,  218, 55,  47,  134, 132, 158, 117, 130, 20,  148, 119, 80,  220, 175, 98,  181, 30,  81,
    216, 102, 63,  143, 253, 18,  108, 93,  156, 77,  171, 242, 240, 45,  234, 83,  34,  196, 223, 7,
    73,  145, 185, 67,  249, 3,   88,  231, 0,   41,  42,  29,  59,  237, 244, 187, 139, 194, 79,  9,
    133, 69,  211, 154, 209, 94,  58,  215, 6,   232, 64,  162, 152, 14,  124, 238, 166, 111, 184, 146,
    82,  39,  118, 56,  195, 183, 157, 135, 252, 4,   235, 153, 120, 91,  210, 206, 121, 193, 167, 141,
    212, 107, 25,  37,  163, 248, 89,  113, 137, 217, 233, 105, 198, 176, 123, 24,  10,  92,  214, 28,
    151, 122, 239, 16,  74,  54,  13,  43,  97,  243, 254, 50,  66,  204, 106, 159, 247, 224, 40,  236,
    60,  149, 251, 188, 87,  203, 142, 222, 208, 49,  165, 17,  246, 177, 110, 168, 101, 140, 226, 2,
    170, 95,  250, 144, 48,  65,  221, 205, 57,  62,  174, 201, 5,   129, 207, 52,  33,  46,  100, 76,
    68,  197, 125, 191, 21,  182, 127, 131, 31,  245, 99,  179, 155, 161, 114, 228, 219, 38,  15,  27,
    241, 22,  192, 178, 189, 115, 85,  112, 150, 227, 126, 109, 202, 72,  44,  199, 190, 1,   35,  8,
    213, 26,  164, 186, 12,  200, 172, 138, 53,  71,  229, 23,  180, 96,  136, 128,
};

// The rows that scenes know from before the rule.
constexpr float kFirstRows[4][3] = {
    {-0.215150f, -0.946627f, -0.240017f},
    {-0.779977f, -0.409386f, -0.473328f},
    {0.498366f, -0.800667f, 0.332512f},
    {0.311809f, 0.601349f, -0.735632f},
};
constexpr float kLastRow[3] = {0.707417f, 0.644714f, 0.289663f};

// What a * a lacks of its exact value when rounded (Dekker's product).
constexpr double squareError(double a)
{
    const double split = a * 134217729.0; // 2^27 + 1
    const double high = split - (split - a);
    const double low = a - high;
    return ((high * high - a * a) + 2.0 * high * low) + low * low;
}

// The square root, rounded to nearest, for arguments in 0.0001..1: std::sqrt is not constexpr.
constexpr double squareRoot(double x)
{
    double root = 1.0;
    for (int i = 0; i < 16; ++i)
        root = 0.5 * (root + x / root);
    const double rest = (x - root * root) - squareError(root);
    return root + rest / (2.0 * root);
}

constexpr void setRow(double (&row)[4], float x, float y, float z)
{
    row[0] = static_cast<double>(x);
    row[1] = static_cast<double>(y);
    row[2] = static_cast<double>(z);
    row[3] = 0.0;
}

constexpr PerlinTables makeTables()
{
    PerlinTables tables{};
    for (std::size_t i = 0; i < 2 * kPerlinTableSize; ++i)
        tables.permutation[i] = kPermutation[i % kPerlinTableSize];
    std::size_t row = 0;
    for (const auto& known : kFirstRows)
        setRow(tables.gradients[row++], known[0], known[1], known[2]);
    for (std::uint64_t n = 0; row < kPerlinTableSize - 1; ++n) {
        const double a = nezaiva::streamValue(kGradientStream, 3 * n);
        const double b = nezaiva::streamValue(kGradientStream, 3 * n + 1);
        const double c = nezaiva::streamValue(kGradientStream, 3 * n + 2);
        const double squared = a * a + b * b + c * c;
        if (!(kShortestSquared < squared && squared <= 1.0)) continue;
        const double length = squareRoot(squared);
        setRow(tables.gradients[row++], static_cast<float>(a / length), static_cast<float>(b / length),
               static_cast<float>(c / length));
    }
    setRow(tables.gradients[row], kLastRow[0], kLastRow[1], kLastRow[2]);
    for (std::size_t i = 0; i < 4; ++i)
        tables.gradients[kPerlinTableSize][i] = tables.gradients[0][i];
    return tables;
}

} // namespace

constinit const PerlinTables perlinTables = makeTables();

} // namespace OUtils
