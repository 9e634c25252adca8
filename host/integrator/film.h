// The picture while it is rendered, as sums of samples, and the layers that can be made of it.
#pragma once

#include "host/image/image.h"
#include "host/integrator/path_tracer.h"

#include <optional>
#include <string>
#include <string_view>

namespace ombrix {

// Beauty: colour and alpha. Alpha: coverage. Normal: the shading normal in world space. Depth: the mean
// distance along the direction that the camera looks in, of the samples that hit; 0 where none did. Uv:
// the coordinates of the lowest map channel. Albedo: the surface's diffuse input. Normal, uv and albedo
// are means over all samples, with their own coverage as alpha.
enum class Layer { Beauty, Alpha, Normal, Depth, Uv, Albedo };

std::optional<Layer> layerNamed(std::string_view name);
const char* layerName(Layer layer);
// "beauty, alpha, normal, depth, uv, albedo"
std::string layerNames();

// Squares of the picture that are rendered at a time.
inline constexpr int kTileSize = 16;

class Film {
public:
    // width and height are 1 or above.
    Film(int width, int height, std::vector<Layer> layers);

    int width() const { return filmWidth; }
    int height() const { return filmHeight; }
    bool has(Layer layer) const;
    int tileCount() const { return tileColumns * tileRows; }
    struct Rectangle {
        int left, top, right, bottom; // right and bottom lie outside
    };
    Rectangle tile(int index) const;

    // A pixel is written by one thread at a time; its samples are added in order.
    void add(int x, int y, const PixelSample& sample);
    // Tells that every pixel of a tile has this many samples.
    void setSampleCount(int tile, int count) { tileSamples[static_cast<std::size_t>(tile)] = count; }
    int sampleCount(int tile) const { return tileSamples[static_cast<std::size_t>(tile)]; }

    // The picture of a layer that the film has. Tiles without samples are black and transparent.
    Image image(Layer layer) const;

private:
    struct Plane {
        Layer layer;
        std::vector<float> sums; // four a pixel
    };

    int filmWidth, filmHeight, tileColumns, tileRows;
    std::vector<Plane> planes;
    std::vector<int> tileSamples;
};

} // namespace ombrix
