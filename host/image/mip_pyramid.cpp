#include "host/image/mip_pyramid.h"

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

using OUtils::AColor;

constexpr int kOutside = -1;

AColor operator+(const AColor& a, const AColor& b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a + b.a};
}
AColor operator*(const AColor& c, float s)
{
    return {c.r * s, c.g * s, c.b * s, c.a * s};
}
AColor mix(const AColor& a, const AColor& b, float t)
{
    return a * (1.0f - t) + b * t;
}

// The coordinate within the picture, 0 to 1; outside it for Black alone.
float wrapped(float coordinate, Wrap wrap)
{
    switch (wrap) {
    case Wrap::Clamp:
        return std::clamp(coordinate, 0.0f, 1.0f);
    case Wrap::Black:
        return std::clamp(coordinate, -2.0f, 2.0f);
    case Wrap::Mirror: {
        const float pair = coordinate - 2.0f * std::floor(coordinate * 0.5f);
        return pair <= 1.0f ? pair : 2.0f - pair;
    }
    default:
        return coordinate - std::floor(coordinate);
    }
}

// The index of a texel that a lookup near the edge may name one too low or too high.
int wrappedIndex(int index, int size, Wrap wrap)
{
    if (index >= 0 && index < size) return index;
    switch (wrap) {
    case Wrap::Black:
        return kOutside;
    case Wrap::Mirror:
    case Wrap::Clamp:
        return index < 0 ? 0 : size - 1;
    default:
        return index < 0 ? size - 1 : 0;
    }
}

// Two neighbouring texels along one axis and the weight of the second.
struct Neighbours {
    int first, second;
    float weight;
};

Neighbours neighboursOf(float place, int size, Wrap wrap)
{
    const float cell = std::floor(place);
    const int index = static_cast<int>(cell);
    return {wrappedIndex(index, size, wrap), wrappedIndex(index + 1, size, wrap), place - cell};
}

// The mean of each new texel's share of a row or column; stride counts texels.
void shrinkLine(const AColor* from, std::size_t fromStride, int fromSize, AColor* to, std::size_t toStride,
                int toSize)
{
    for (int i = 0; i < toSize; ++i) {
        // In units of 1 / toSize of an old texel, so that all weights are whole numbers.
        const std::int64_t begin = static_cast<std::int64_t>(i) * fromSize, end = begin + fromSize;
        AColor sum;
        for (std::int64_t j = begin / toSize; j * toSize < end; ++j) {
            const std::int64_t covered = std::min(end, (j + 1) * toSize) - std::max(begin, j * toSize);
            sum = sum + from[static_cast<std::size_t>(j) * fromStride] * static_cast<float>(covered);
        }
        to[static_cast<std::size_t>(i) * toStride] = sum * (1.0f / static_cast<float>(fromSize));
    }
}

} // namespace

MipPyramid::MipPyramid(const Image& image)
{
    Level full;
    full.width = image.width;
    full.height = image.height;
    full.texels.resize(static_cast<std::size_t>(full.width) * static_cast<std::size_t>(full.height));
    const float* values = image.pixels.data();
    for (AColor& texel : full.texels) {
        texel = {values[0], values[1], values[2], values[3]};
        values += 4;
    }
    levels.push_back(std::move(full));
    while (levels.back().width > 1 || levels.back().height > 1)
        levels.push_back(halved(levels.back()));
}

MipPyramid::Level MipPyramid::halved(const Level& level)
{
    Level half;
    half.width = std::max(level.width / 2, 1);
    half.height = std::max(level.height / 2, 1);
    const auto oldWidth = static_cast<std::size_t>(level.width);
    const auto newWidth = static_cast<std::size_t>(half.width);
    std::vector<AColor> narrowed(newWidth * static_cast<std::size_t>(level.height));
    for (std::size_t y = 0; y < static_cast<std::size_t>(level.height); ++y)
        shrinkLine(&level.texels[y * oldWidth], 1, level.width, &narrowed[y * newWidth], 1, half.width);
    half.texels.resize(newWidth * static_cast<std::size_t>(half.height));
    for (std::size_t x = 0; x < newWidth; ++x)
        shrinkLine(&narrowed[x], newWidth, level.height, &half.texels[x], newWidth, half.height);
    return half;
}

AColor MipPyramid::nearest(float u, float v, Wrap wrap) const
{
    const Level& level = levels.front();
    const float x = std::floor(wrapped(u, wrap) * static_cast<float>(level.width));
    const float y = std::floor((1.0f - wrapped(v, wrap)) * static_cast<float>(level.height));
    // On the upper and the right edge of the picture itself the coordinate is 1.
    const bool inside = u >= 0.0f && u <= 1.0f && v >= 0.0f && v <= 1.0f;
    if (wrap == Wrap::Black && !inside) return {};
    return level.at(std::clamp(static_cast<int>(x), 0, level.width - 1),
                    std::clamp(static_cast<int>(y), 0, level.height - 1));
}

AColor MipPyramid::sample(const Level& level, float u, float v, Wrap wrap)
{
    const Neighbours x =
        neighboursOf(wrapped(u, wrap) * static_cast<float>(level.width) - 0.5f, level.width, wrap);
    const Neighbours y =
        neighboursOf((1.0f - wrapped(v, wrap)) * static_cast<float>(level.height) - 0.5f, level.height, wrap);
    const auto at = [&level](int column, int row) {
        return column == kOutside || row == kOutside ? AColor{} : level.at(column, row);
    };
    const AColor upper = mix(at(x.first, y.first), at(x.second, y.first), x.weight);
    const AColor lower = mix(at(x.first, y.second), at(x.second, y.second), x.weight);
    return mix(upper, lower, y.weight);
}

AColor MipPyramid::bilinear(float u, float v, Wrap wrap) const
{
    return sample(levels.front(), u, v, wrap);
}

AColor MipPyramid::trilinear(float u, float v, float footprint, Wrap wrap) const
{
    if (!(footprint > 1.0f)) return bilinear(u, v, wrap);
    const float place = std::min(std::log2(footprint), static_cast<float>(levelCount() - 1));
    const int finer = static_cast<int>(place);
    const int coarser = std::min(finer + 1, levelCount() - 1);
    return mix(sample(levels[indexOf(finer)], u, v, wrap), sample(levels[indexOf(coarser)], u, v, wrap),
               place - static_cast<float>(finer));
}

void MipPyramid::bounds(AColor* lower, AColor* upper) const
{
    *lower = *upper = levels.front().texels.front();
    for (const AColor& texel : levels.front().texels) {
        *lower = {std::min(lower->r, texel.r), std::min(lower->g, texel.g), std::min(lower->b, texel.b),
                  std::min(lower->a, texel.a)};
        *upper = {std::max(upper->r, texel.r), std::max(upper->g, texel.g), std::max(upper->b, texel.b),
                  std::max(upper->a, texel.a)};
    }
}

} // namespace ombrix
