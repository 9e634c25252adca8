#include "host/integrator/film.h"

#include <array>

namespace ombrix {

namespace {

struct NamedLayer {
    Layer layer;
    const char* name;
};

constexpr NamedLayer kLayers[] = {{Layer::Beauty, "beauty"}, {Layer::Alpha, "alpha"},
                                  {Layer::Normal, "normal"}, {Layer::Depth, "depth"},
                                  {Layer::Uv, "uv"},         {Layer::Albedo, "albedo"}};

std::array<float, 4> valuesOf(Layer layer, const PixelSample& sample)
{
    const FirstHit& first = sample.first;
    const float hit = first.hit ? 1.0f : 0.0f;
    switch (layer) {
    case Layer::Beauty:
        return {sample.color.r, sample.color.g, sample.color.b, sample.alpha};
    case Layer::Alpha:
        return {sample.alpha, 0.0f, 0.0f, 0.0f};
    case Layer::Normal:
        return {first.normal.x, first.normal.y, first.normal.z, hit};
    case Layer::Depth:
        return {first.depth, hit, 0.0f, 0.0f};
    case Layer::Uv:
        return {first.uvw.x, first.uvw.y, first.uvw.z, hit};
    case Layer::Albedo:
        return {first.albedo.r, first.albedo.g, first.albedo.b, hit};
    }
    return {};
}

} // namespace

std::optional<Layer> layerNamed(std::string_view name)
{
    for (const NamedLayer& known : kLayers)
        if (name == known.name) return known.layer;
    return {};
}

const char* layerName(Layer layer)
{
    for (const NamedLayer& known : kLayers)
        if (layer == known.layer) return known.name;
    return "";
}

std::string layerNames()
{
    std::string names;
    for (const NamedLayer& known : kLayers)
        names += (names.empty() ? "" : ", ") + std::string(known.name);
    return names;
}

Film::Film(int width, int height, std::vector<Layer> layers)
    : filmWidth(width), filmHeight(height), tileColumns((width + kTileSize - 1) / kTileSize),
      tileRows((height + kTileSize - 1) / kTileSize)
{
    const std::size_t numbers = 4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (const Layer layer : layers)
        if (!has(layer)) planes.push_back({layer, std::vector<float>(numbers, 0.0f)});
    tileSamples.assign(static_cast<std::size_t>(tileColumns) * static_cast<std::size_t>(tileRows), 0);
}

bool Film::has(Layer layer) const
{
    return std::any_of(planes.begin(), planes.end(), [layer](const Plane& p) { return p.layer == layer; });
}

Film::Rectangle Film::tile(int index) const
{
    const int left = index % tileColumns * kTileSize, top = index / tileColumns * kTileSize;
    return {left, top, std::min(left + kTileSize, filmWidth), std::min(top + kTileSize, filmHeight)};
}

void Film::add(int x, int y, const PixelSample& sample)
{
    const std::size_t pixel =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(filmWidth) + static_cast<std::size_t>(x);
    for (Plane& plane : planes) {
        const std::array<float, 4> values = valuesOf(plane.layer, sample);
        float* sums = &plane.sums[pixel * 4];
        for (std::size_t i = 0; i < 4; ++i)
            sums[i] += values[i];
    }
}

Image Film::image(Layer layer) const
{
    Image image;
    image.width = filmWidth;
    image.height = filmHeight;
    image.channels = layer == Layer::Alpha || layer == Layer::Depth ? 1 : 4;
    const auto channels = static_cast<std::size_t>(image.channels);
    image.pixels.assign(channels * static_cast<std::size_t>(filmWidth) * static_cast<std::size_t>(filmHeight),
                        0.0f);
    const auto plane =
        std::find_if(planes.begin(), planes.end(), [layer](const Plane& p) { return p.layer == layer; });
    if (plane == planes.end()) return image;

    for (int index = 0; index < tileCount(); ++index) {
        if (sampleCount(index) == 0) continue;
        const float each = 1.0f / static_cast<float>(sampleCount(index));
        const Rectangle area = tile(index);
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x) {
                const float* sums =
                    &plane->sums[4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(filmWidth) +
                                      static_cast<std::size_t>(x))];
                float* pixel = image.pixel(x, y);
                if (layer == Layer::Depth) {
                    pixel[0] = sums[1] > 0.0f ? sums[0] / sums[1] : 0.0f;
                    continue;
                }
                for (std::size_t i = 0; i < channels; ++i)
                    pixel[i] = sums[i] * each;
            }
        }
    }
    return image;
}

} // namespace ombrix
