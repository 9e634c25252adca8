#include "host/integrator/environment_map.h"

namespace ombrix {

namespace {

float sanitized(float value)
{
    return value > 0.0f && std::isfinite(value) ? value : 0.0f;
}

// The cell of a cumulative row that a number from 0 to 1 falls into, and the place within it.
int findCell(const float* sums, int cells, float number, float* fraction)
{
    const float* above = std::upper_bound(sums + 1, sums + cells, number);
    const int cell = static_cast<int>(above - sums) - 1;
    const float size = sums[cell + 1] - sums[cell];
    *fraction = size > 0.0f ? std::clamp((number - sums[cell]) / size, 0.0f, 1.0f) : 0.5f;
    return cell;
}

// Turns sums into shares of the last one; evenly rising ones when all are 0.
void normalize(float* sums, int cells)
{
    const float total = sums[cells];
    for (int i = 1; i <= cells; ++i)
        sums[i] = total > 0.0f ? sums[i] / total : static_cast<float>(i) / static_cast<float>(cells);
    sums[cells] = 1.0f;
}

} // namespace

EnvironmentMap::EnvironmentMap(int mapWidth, int mapHeight, const float* source)
    : width(mapWidth), height(mapHeight)
{
    const auto w = static_cast<std::size_t>(width), h = static_cast<std::size_t>(height);
    pixels.resize(w * h);
    rowSums.assign(h + 1, 0.0f);
    columnSums.assign((w + 1) * h, 0.0f);
    double total = 0.0;
    for (std::size_t y = 0; y < h; ++y) {
        // The solid angle of a row's pixels, exactly: the difference of the cosines at its edges.
        const double top = std::cos(M_PI * static_cast<double>(y) / height);
        const double bottom = std::cos(M_PI * static_cast<double>(y + 1) / height);
        double rowTotal = 0.0;
        for (std::size_t x = 0; x < w; ++x) {
            const float* pixel = source + (y * w + x) * 4;
            pixels[y * w + x] = {sanitized(pixel[0]), sanitized(pixel[1]), sanitized(pixel[2])};
            rowTotal += static_cast<double>(mean(pixels[y * w + x]));
            columnSums[y * (w + 1) + x + 1] = static_cast<float>(rowTotal);
        }
        normalize(&columnSums[y * (w + 1)], width);
        total += rowTotal * (top - bottom) * (2.0 * M_PI / width);
        rowSums[y + 1] = static_cast<float>(total);
    }
    normalize(rowSums.data(), height);
    if (total > 0.0) densityScale = static_cast<float>(1.0 / total);
}

EnvironmentMap::Place EnvironmentMap::placeOf(const Vector& direction) const
{
    const float u = 0.5f + std::atan2(direction.x, -direction.z) * (0.5f / kPi);
    const float v = std::acos(std::clamp(direction.y, -1.0f, 1.0f)) * (1.0f / kPi);
    return {u * static_cast<float>(width), v * static_cast<float>(height)};
}

std::size_t EnvironmentMap::pixelAt(int x, int y) const
{
    // Columns go around, rows end at the poles.
    x = x < 0 ? x + width : x >= width ? x - width : x;
    y = std::clamp(y, 0, height - 1);
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

Color EnvironmentMap::radiance(const Vector& direction) const
{
    const Place place = placeOf(direction);
    return pixels[pixelAt(std::min(static_cast<int>(place.x), width - 1), static_cast<int>(place.y))];
}

Color EnvironmentMap::smoothRadiance(const Vector& direction) const
{
    const Place place = placeOf(direction);
    const float x = place.x - 0.5f, y = place.y - 0.5f;
    const int column = static_cast<int>(std::floor(x)), row = static_cast<int>(std::floor(y));
    const float fx = x - static_cast<float>(column), fy = y - static_cast<float>(row);
    const Color upper = pixels[pixelAt(column, row)] * (1.0f - fx) + pixels[pixelAt(column + 1, row)] * fx;
    const Color lower =
        pixels[pixelAt(column, row + 1)] * (1.0f - fx) + pixels[pixelAt(column + 1, row + 1)] * fx;
    return upper * (1.0f - fy) + lower * fy;
}

EnvironmentMap::Sample EnvironmentMap::sample(Pair random) const
{
    float fractionX = 0.0f, fractionY = 0.0f;
    const int row = findCell(rowSums.data(), height, random.v, &fractionY);
    const float* columns = &columnSums[static_cast<std::size_t>(row) * static_cast<std::size_t>(width + 1)];
    const int column = findCell(columns, width, random.u, &fractionX);

    // Even over the pixel's solid angle: the height, not the angle, is interpolated.
    const float angleStep = kPi / static_cast<float>(height);
    const float top = std::cos(angleStep * static_cast<float>(row));
    const float bottom = std::cos(angleStep * static_cast<float>(row + 1));
    const float y = top + (bottom - top) * fractionY;
    const float radius = std::sqrt(std::max(0.0f, 1.0f - y * y));
    const float angle =
        ((static_cast<float>(column) + fractionX) / static_cast<float>(width) - 0.5f) * (2.0f * kPi);
    const Color color = pixels[pixelAt(column, row)];
    return {{radius * std::sin(angle), y, -radius * std::cos(angle)}, mean(color) * densityScale, color};
}

float EnvironmentMap::density(const Vector& direction) const
{
    return mean(radiance(direction)) * densityScale;
}

} // namespace ombrix
