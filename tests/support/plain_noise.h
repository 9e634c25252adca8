// The noises once more, written straight from their formulas: the oracle of the tests and the measure
// of the benchmarks. Slow on purpose, and sharing nothing with the kernels, tables included.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace plain {

// --- tables

inline double streamNumber(std::uint64_t stream, std::uint64_t i)
{
    std::uint64_t z = stream * 4294967296u + i + 0x9E3779B97F4A7C15u;
    z ^= z >> 30;
    z *= 0xBF58476D1CE4E5B9u;
    z ^= z >> 27;
    z *= 0x94D049BB133111EBu;
    z ^= z >> 31;
    return (static_cast<double>(z >> 40) + 0.5) / 8388608.0 - 1.0;
}

inline std::vector<float> randomNumbers(std::uint64_t stream, const std::vector<float>& beginning)
{
    std::vector<float> numbers(65535);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = i < beginning.size() ? beginning[i] : static_cast<float>(streamNumber(stream, i));
    return numbers;
}

inline const std::vector<float>& currentTable()
{
    static const auto table = randomNumbers(1, {-0.510765f, -0.892593f, 0.324582f, 0.514013f, 0.676386f});
    return table;
}

inline const std::vector<float>& oldTable()
{
    static const auto table = randomNumbers(2, {-0.864927f, -0.440085f});
    return table;
}

// --- lattice

inline float spline(float a, float b, float c, float t)
{
    return a + b + ((a - 2.0f * b + c) * t - 2.0f * (a - b)) * t;
}

template <typename Real>
struct Place {
    int i;
    float t;

    Place(Real d, float cells)
    {
        if (!(std::fabs(d) <= std::numeric_limits<Real>::max())) d = Real(0);
        if (d > Real(1e9)) d = Real(0);
        const float f = static_cast<float>(d - std::floor(d)) * cells;
        i = static_cast<int>(f);
        t = f - static_cast<float>(i);
    }
};

inline float lattice2(const float* table, double x, double y)
{
    const Place<float> px(static_cast<float>(x), 32.0f);
    const Place<float> py(static_cast<float>(y), 32.0f);
    float rows[3];
    for (int j = 0; j < 3; ++j) {
        const int row = ((py.i + j - 1) & 31) << 5;
        rows[j] = spline(table[((px.i - 1) & 31) | row], table[(px.i & 31) | row],
                         table[((px.i + 1) & 31) | row], px.t);
    }
    return spline(rows[0], rows[1], rows[2], py.t) * 0.25f;
}

template <typename Value>
float splineOf27(double x, double y, double z, Value value)
{
    const Place<double> px(x, 32.0f);
    const Place<double> py(y, 32.0f);
    const Place<double> pz(z, 32.0f);
    float planes[3];
    for (int k = 0; k < 3; ++k) {
        float rows[3];
        for (int j = 0; j < 3; ++j) {
            const int base = ((py.i + j - 1) & 31) << 5 | ((pz.i + k - 1) & 31) << 10;
            rows[j] = spline(value(((px.i - 1) & 31) | base), value((px.i & 31) | base),
                             value(((px.i + 1) & 31) | base), px.t);
        }
        planes[k] = spline(rows[0], rows[1], rows[2], py.t);
    }
    return spline(planes[0], planes[1], planes[2], pz.t) * 0.125f;
}

inline float lattice3(const float* table, double x, double y, double z)
{
    return splineOf27(x, y, z, [table](int index) { return table[index]; });
}

inline float fractionByTruncation(float a)
{
    return a - std::trunc(a);
}

inline float lattice4(const float* table, double x, double y, double z, double w, int period)
{
    const Place<double> time(w, static_cast<float>(period < 60000 ? period : 60000));
    const auto m = [table](int i) {
        const long long magnitude = i < 0 ? -static_cast<long long>(i) : i;
        return (table[magnitude % 65535] + 1.0f) * 21568.16f;
    };
    const float m0 = m(time.i);
    const float m1 = m(time.i + 1);
    const float m2 = m(time.i + 2);
    return splineOf27(x, y, z,
                      [=](int index) {
                          const float c = table[index] + 2.0f;
                          return spline(fractionByTruncation(m0 * c), fractionByTruncation(m1 * c),
                                        fractionByTruncation(m2 * c), time.t);
                      }) -
           1.0f;
}

// --- simplex

inline float frac(float a)
{
    return a - std::floor(a);
}

struct SimplexGrid {
    float X, Y, ix, iy, h00, h10, h01, h11;

    SimplexGrid(float scaledX, float scaledY) : X(scaledX), Y(scaledY)
    {
        const float s = (X + Y) * 0.36602542f;
        ix = std::floor(X + s);
        iy = std::floor(s + Y);
        const float a = hash(ix, 26.0f);
        const float b = hash(iy, 161.0f);
        const float c = hash(ix + 1.0f, 26.0f);
        const float d = hash(iy + 1.0f, 161.0f);
        h00 = (a * a) * (b * b);
        h10 = (b * b) * (c * c);
        h01 = (a * a) * (d * d);
        h11 = (c * c) * (d * d);
    }
    static float hash(float a, float k) { return a - std::floor(0.014084507f * a) * 71.0f + k; }
};

inline float corner(float h, float dx, float dy)
{
    const float gx = frac(h * 0.0010513747f) - 0.49999f;
    const float gy = frac(h * 0.0015553312f) - 0.49999f;
    const float rest = 0.5f - (dx * dx + dy * dy);
    const float w = rest > 0.0f ? rest : 0.0f;
    return (w * w) * (w * w) * (dx * gx + dy * gy) / std::sqrt(gx * gx + gy * gy);
}

inline float simplex(float x, float y)
{
    const SimplexGrid grid(x * 0.70710677f, y * 0.70710677f);
    const float t = (grid.ix + grid.iy) * 0.21132487f;
    const float dx = grid.ix - t - grid.X;
    const float dy = grid.iy - t - grid.Y;
    float sum = corner(grid.h00, dx, dy);
    if (dy > dx)
        sum += corner(grid.h10, dx + 0.7886751f, dy - 0.21132487f);
    else
        sum += corner(grid.h01, dx - 0.21132487f, dy + 0.7886751f);
    sum += corner(grid.h11, dx + 0.57735026f, dy + 0.57735026f);
    return sum * 99.20434f;
}

struct Fractal {
    float amplitude, ratio;
    int octaves;
    float frequency, frequencyRatio, du, dv, dr;
};

inline float fractal(float x, float y, const Fractal& p)
{
    float a = p.amplitude;
    float b = p.frequency;
    float du = p.du;
    float dv = p.dv;
    float sum = 0.0f;
    for (int i = 0; i <= p.octaves; ++i) {
        du *= p.dr;
        dv *= p.dr;
        const float n = simplex(x + du, y + dv);
        sum += n * a * std::pow(b, -a * static_cast<float>(i));
        const float turned = y * b - 0.02f;
        y = 0.3f + x * b;
        x = turned;
        a *= p.ratio;
        b *= p.frequencyRatio;
    }
    return 0.5f + sum * 0.5f;
}

inline float ridged(float x, float y, const Fractal& p)
{
    float q = 1.0f - std::fabs(simplex(x, y));
    float acc = q * q;
    float signal = q * q;
    float b = p.frequency;
    float du = p.du;
    float dv = p.dv;
    for (int i = 1; i <= p.octaves - 1; ++i) {
        x *= b;
        y *= b;
        du *= p.dr;
        dv *= p.dr;
        q = 1.0f - std::fabs(simplex(x + du, y + dv));
        const float gained = signal * p.frequencyRatio;
        signal = (gained > 1.0f ? 1.0f : gained > 0.0f ? gained : 0.0f) * (q * q);
        acc += std::pow(b, -p.ratio) * p.amplitude * signal;
        b *= p.frequencyRatio;
    }
    return 0.5f + acc * 0.5f;
}

inline float jitter(float r)
{
    const float a = 2.0f * r - 1.0f;
    const float sign = a > 0.0f ? 1.0f : a < 0.0f ? -1.0f : 0.0f;
    return (a * a * a - sign) * 0.14942925f;
}

inline float cellular(float x, float y, float amplitude, float frequency)
{
    const SimplexGrid grid(x * frequency * 0.70710677f, y * frequency * 0.70710677f);
    const float t = (grid.ix + grid.iy) * 0.21132487f;
    const float dx = (grid.ix - t - grid.X) * 1.4142135f;
    const float dy = (grid.iy - t - grid.Y) * 1.4142135f;
    const auto squared = [&](float h, float offsetX, float offsetY) {
        const float fx = dx + jitter(frac(h * 0.0010513747f)) + offsetX;
        const float fy = dy + jitter(frac(h * 0.0015553312f)) + offsetY;
        return fx * fx + fy * fy;
    };
    float smallest = squared(grid.h00, 0.0f, 0.0f);
    for (const float other :
         {squared(grid.h10, 1.115355f, -0.2988585f), squared(grid.h01, -0.2988585f, 1.115355f),
          squared(grid.h11, 0.81649655f, 0.81649655f)})
        if (other < smallest) smallest = other;
    return smallest * amplitude;
}

// --- gradient noise

struct GradientTables {
    std::array<std::array<float, 3>, 256> gradients;
    std::array<int, 256> permutation; // given: a table of the system, not of a rule
};

inline std::array<std::array<float, 3>, 256> gradientRows()
{
    std::array<std::array<float, 3>, 256> rows{};
    rows[0] = {-0.215150f, -0.946627f, -0.240017f};
    rows[1] = {-0.779977f, -0.409386f, -0.473328f};
    rows[2] = {0.498366f, -0.800667f, 0.332512f};
    rows[3] = {0.311809f, 0.601349f, -0.735632f};
    rows[255] = {0.707417f, 0.644714f, 0.289663f};
    std::uint64_t n = 0;
    for (std::size_t row = 4; row < 255; ++n) {
        const double a = streamNumber(4, 3 * n);
        const double b = streamNumber(4, 3 * n + 1);
        const double c = streamNumber(4, 3 * n + 2);
        const double squared = a * a + b * b + c * c;
        if (squared <= 0.0001 || squared > 1.0) continue;
        const double length = std::sqrt(squared);
        rows[row++] = {static_cast<float>(a / length), static_cast<float>(b / length),
                       static_cast<float>(c / length)};
    }
    return rows;
}

inline int wrap(int n)
{
    const int remainder = n % 256;
    return remainder < 0 ? remainder + 256 : remainder;
}

// The point is already multiplied by the frequency; cells of up to 2^31 - 2.
inline double gradientNoise(const GradientTables& tables, float X, float Y, float Z)
{
    const float point[3] = {X, Y, Z};
    int cell[3];
    double distance[3][2];
    double fade[3];
    for (int axis = 0; axis < 3; ++axis) {
        double d = static_cast<double>(point[axis]);
        if (d < 0.0) d = d - 1.0 + 1e-9;
        cell[axis] = static_cast<int>(d);
        const double f = static_cast<double>(point[axis]) - cell[axis];
        distance[axis][0] = f;
        distance[axis][1] = static_cast<double>(point[axis]) - (cell[axis] + 1);
        fade[axis] = f * f * f * ((6.0 * f - 15.0) * f + 10.0);
    }
    double corners[2][2][2];
    for (int k = 0; k < 2; ++k)
        for (int j = 0; j < 2; ++j)
            for (int i = 0; i < 2; ++i) {
                const auto& perm = tables.permutation;
                const int inner = perm[static_cast<std::size_t>(wrap(cell[2] + k))];
                const int middle = perm[static_cast<std::size_t>(wrap(wrap(cell[1] + j) + inner))];
                const auto& g = tables.gradients[static_cast<std::size_t>(wrap(wrap(cell[0] + i) + middle))];
                corners[k][j][i] = static_cast<double>(g[0]) * distance[0][i] +
                                   static_cast<double>(g[1]) * distance[1][j] +
                                   static_cast<double>(g[2]) * distance[2][k];
            }
    const auto mix = [](double a, double b, double s) { return a + s * (b - a); };
    double planes[2];
    for (int k = 0; k < 2; ++k)
        planes[k] = mix(mix(corners[k][0][0], corners[k][0][1], fade[0]),
                        mix(corners[k][1][0], corners[k][1][1], fade[0]), fade[1]);
    return mix(planes[0], planes[1], fade[2]);
}

} // namespace plain
