#include "kernels/color/black_body.h"

#include "kernels/color/brightness.h"
#include "kernels/color/color_matching.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>

namespace nezaiva {

namespace {

constexpr int kWavelengths = kMatchingRows - 1; // the tables' last row is not used
constexpr int kWavelengthStep = 5;              // nanometres

constexpr double kFirstRadiation = 3.7417712843186317e-16;  // 2 pi h c^2
constexpr double kSecondRadiation = 1.9864455003959036e-25; // h c
constexpr double kBoltzmann = 1.3806504e-23;
constexpr double kDaylightEnergy = 8.974227600000001e-20; // kBoltzmann at 6500 kelvin

struct SpacePrimaries {
    float fromXyz[3][3]; // by rows
    bool daylightIsWhite;
};
constexpr SpacePrimaries kSpaces[] = {
    {{{2.370672f, -0.900039f, -0.470634f},
      {-0.513883f, 1.425302f, 0.088581f},
      {0.005298f, -0.014695f, 1.009397f}},
     false},
    {{{3.2407088f, -1.5372593f, -0.4985704f},
      {-0.9692574f, 1.8759952f, 0.041555557f},
      {0.055635083f, -0.20399582f, 1.0570697f}},
     true},
    {{{1.641023f, -0.324803f, -0.236425f},
      {-0.663663f, 1.615332f, 0.016756f},
      {0.011722f, -0.008284f, 0.988395f}},
     true},
};
constexpr int kSpaceCount = 3;

struct Xyz {
    float x, y, z;
};

// e to the power x, of operations in a fixed order: the maths library chooses its own by processor. Within
// one unit in the last place while the result is a normal number; NaN for NaN.
double exponential(double x)
{
    constexpr double kLog2E = 1.4426950408889634;
    constexpr double kLn2High = 0.6931471803691238; // its last 20 bits are zero: products with it are exact
    constexpr double kLn2Low = 1.9082149292705877e-10;
    constexpr double kInverse[] = {0.0,     1.0,     1.0 / 2,  1.0 / 3,  1.0 / 4,  1.0 / 5,  1.0 / 6, 1.0 / 7,
                                   1.0 / 8, 1.0 / 9, 1.0 / 10, 1.0 / 11, 1.0 / 12, 1.0 / 13, 1.0 / 14};
    if (!(std::fabs(x) < 700.0)) return x < 0.0 ? 0.0 : x * std::numeric_limits<double>::infinity();

    const double power = std::nearbyint(x * kLog2E);
    const double r = (x - power * kLn2High) - power * kLn2Low;
    double tail = 0.0; // of the Taylor series, from the square on
    for (std::size_t k = std::size(kInverse) - 1; k >= 2; --k)
        tail = (tail + 1.0) * (r * kInverse[k]);
    return std::ldexp(1.0 + (r + tail * r), static_cast<int>(power));
}

// Planck's law: the radiance at a wavelength in metres, at the energy of Boltzmann's constant times the
// temperature. Infinite where the energy is so large that the exponential is 1.
double radiance(double wavelength, double energy)
{
    const double fifthPower = wavelength * wavelength * wavelength * wavelength * wavelength;
    return kFirstRadiation / (fifthPower * (exponential(kSecondRadiation / (wavelength * energy)) - 1.0));
}

double wavelengthOf(int row)
{
    return (360.0 + kWavelengthStep * row) * 1e-9;
}

// The definition: only the radiance is of double precision.
Xyz summedXyz(double energy)
{
    Xyz sum{0.0f, 0.0f, 0.0f};
    for (int row = 0; row < kWavelengths; ++row) {
        const auto r = static_cast<std::size_t>(row);
        const auto light = static_cast<float>(radiance(wavelengthOf(row), energy));
        sum.x += light * kMatchingX[r];
        sum.y += light * kMatchingY[r];
        sum.z += light * kMatchingZ[r];
    }
    constexpr float kStep = kWavelengthStep;
    return {sum.x * kStep, sum.y * kStep, sum.z * kStep};
}

Color fromXyz(const Xyz& c, int space)
{
    const auto& m = kSpaces[space].fromXyz;
    return {m[0][0] * c.x + m[0][1] * c.y + m[0][2] * c.z, m[1][0] * c.x + m[1][1] * c.y + m[1][2] * c.z,
            m[2][0] * c.x + m[2][1] * c.y + m[2][2] * c.z};
}

Color dividedByMean(const Color& c)
{
    const float mean = intensity(c);
    return mean == 0.0f ? c : Color{c.r / mean, c.g / mean, c.b / mean};
}

// What makes daylight of 6500 kelvin white.
Color whiteScale(int space)
{
    if (!kSpaces[space].daylightIsWhite) return {1.0f, 1.0f, 1.0f};
    const Color daylight = dividedByMean(fromXyz(summedXyz(kDaylightEnergy), space));
    return {1.0f / daylight.r, 1.0f / daylight.g, 1.0f / daylight.b};
}

const Color kWhiteScales[kSpaceCount] = {whiteScale(0), whiteScale(1), whiteScale(2)};

// The scale of the given XYZ does not matter: it ends in the mean.
Color balancedColor(const Xyz& xyz, int space)
{
    const Color c = fromXyz(xyz, space);
    const Color& scale = kWhiteScales[space];
    return dividedByMean({c.r * scale.r, c.g * scale.g, c.b * scale.b});
}

int knownSpace(int colorSpace)
{
    return colorSpace < 0 || colorSpace >= kSpaceCount ? kColorSpace1 : colorSpace;
}

// XYZ as shares of their sum, which are smooth functions of one over the temperature from infinite heat
// down to 1000 kelvin: nodes at equal steps of it, one more at either end, and cubic interpolation.
class ShareTable {
public:
    // Above this the exponential loses its digits against the 1 that is taken from it, and the definition
    // itself, up to its infinities, has to be followed.
    static constexpr float kHighestTemperature = 1e12f;

    ShareTable()
    {
        for (int i = 0; i < kNodes; ++i) {
            // The node of infinite heat stands as near to it as the digits allow.
            const double inverse =
                i == 1 ? 1.0 / static_cast<double>(kHighestTemperature) : (i - 1) / (1000.0 * kIntervals);
            double sums[4] = {};
            for (int row = 0; row < kWavelengths; ++row) {
                const auto r = static_cast<std::size_t>(row);
                const double light = radiance(wavelengthOf(row), kBoltzmann / inverse);
                sums[0] += light * static_cast<double>(kMatchingX[r]);
                sums[1] += light * static_cast<double>(kMatchingY[r]);
                sums[2] += light * static_cast<double>(kMatchingZ[r]);
            }
            const double total = sums[0] + sums[1] + sums[2];
            for (std::size_t k = 0; k < 4; ++k)
                nodes[static_cast<std::size_t>(i)][k] = static_cast<float>(sums[k] / total);
        }
    }

    // temperature: 1000 to kHighestTemperature.
    Xyz at(float temperature) const
    {
        const float place = (1000.0f * kIntervals) / temperature;
        const int cell = std::min(static_cast<int>(place), kIntervals - 1);
        const float t = place - static_cast<float>(cell);
        const float before = t + 1.0f, after = t - 1.0f, last = t - 2.0f;
        const float weights[4] = {t * after * last * (-1.0f / 6.0f), before * after * last * 0.5f,
                                  before * t * last * -0.5f, before * t * after * (1.0f / 6.0f)};
        const auto* const around = &nodes[static_cast<std::size_t>(cell)];
        std::array<float, 4> sum{};
        for (std::size_t i = 0; i < 4; ++i)
            for (std::size_t k = 0; k < 4; ++k)
                sum[k] += weights[i] * around[i][k];
        return {sum[0], sum[1], sum[2]};
    }

private:
    static constexpr int kIntervals = 256;
    static constexpr int kNodes = kIntervals + 3;
    std::array<std::array<float, 4>, kNodes> nodes; // X, Y, Z, and nothing
};

const ShareTable kShares;

} // namespace

Color blackBodyColorBySum(float temperature, int colorSpace)
{
    return balancedColor(summedXyz(kBoltzmann * static_cast<double>(temperature)), knownSpace(colorSpace));
}

Color blackBodyColor(float temperature, int colorSpace)
{
    if (!(temperature >= kLowestTemperature && temperature <= ShareTable::kHighestTemperature))
        return blackBodyColorBySum(temperature, colorSpace);
    return balancedColor(kShares.at(temperature), knownSpace(colorSpace));
}

Color temperatureColor(float temperature, int colorSpace)
{
    if (temperature < kLowestTemperature) temperature = kLowestTemperature;
    const Color c = blackBodyColor(temperature, colorSpace);
    const float largest = std::max(std::max(c.r, c.g), c.b);
    const auto limited = [largest](float channel) {
        const float share = channel / largest;
        return share < 0.0f ? 0.0f : share;
    };
    return {limited(c.r), limited(c.g), limited(c.b)};
}

} // namespace nezaiva
