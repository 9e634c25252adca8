#include "host/bake/bake.h"

#include "host/bake/unit_square_surface.h"
#include "host/context/host_context.h"
#include "host/parallel/parallel_for.h"
#include "host/progress/interrupt_guard.h"

#include <ombrix/texture_interfaces.h>

#include <algorithm>
#include <atomic>

namespace ombrix {

using namespace OUtils;

namespace {

constexpr int kTileSize = 32;

int channelsOf(InterfaceId id)
{
    switch (id) {
    case EXT_TEXTURE:
        return 4;
    case EXT_TEXTURE_VECTOR:
        return 3;
    default:
        return 1;
    }
}

// Writes one texel.
void evaluate(const BakeSource& source, const OmbrixContext& context, float* result)
{
    switch (source.id) {
    case EXT_TEXTURE: {
        AColor color;
        static_cast<TextureInterface*>(source.texture)->evalColor(&color, context);
        result[0] = color.r;
        result[1] = color.g;
        result[2] = color.b;
        result[3] = color.a;
        break;
    }
    case EXT_TEXTURE_VECTOR: {
        Vector vector;
        static_cast<TextureVectorInterface*>(source.texture)->evalVector(&vector, context);
        result[0] = vector.x;
        result[1] = vector.y;
        result[2] = vector.z;
        break;
    }
    case EXT_TEXTURE_INT:
        result[0] = static_cast<float>(static_cast<TextureIntInterface*>(source.texture)->evalInt(context));
        break;
    default:
        result[0] = static_cast<TextureFloatInterface*>(source.texture)->evalFloat(context);
        break;
    }
}

void moveTo(HostContext& context, int x, int y, int size)
{
    // In double: the centres of texels are exact up to a half of a float's last place.
    const auto u = static_cast<float>((x + 0.5) / size);
    const auto v = static_cast<float>((size - 1 - y + 0.5) / size);
    context.shadePoint = context.referencePoint = {u, v, 0.0f};
    context.sampleStamp = 1 + x + y * size;
}

} // namespace

std::optional<BakeSource> findBakeSource(const SceneObject& object)
{
    for (const InterfaceId id : {EXT_TEXTURE, EXT_TEXTURE_FLOAT, EXT_TEXTURE_INT, EXT_TEXTURE_VECTOR})
        if (PluginInterface* found = object.getInterface(id)) return BakeSource{found, id};
    return {};
}

BakeResult bakeTexture(const BakeSource& source, int size, int threads, ProgressBar& progress)
{
    BakeResult result;
    Image& image = result.image;
    image.width = image.height = size;
    image.channels = channelsOf(source.id);
    image.alpha = AlphaKind::Straight;
    image.isData = source.id == EXT_TEXTURE_VECTOR || source.id == EXT_TEXTURE_INT;
    image.pixels.assign(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) *
                            static_cast<std::size_t>(image.channels),
                        0.0f);

    UnitSquareSurface surface;
    const float step = 1.0f / static_cast<float>(size);
    const int tilesAcross = (size + kTileSize - 1) / kTileSize;
    std::atomic<std::int64_t> doneTexels{0};
    const auto bakeTile = [&](int tile, int thread) {
        if (InterruptGuard::interrupted()) return;
        const int left = tile % tilesAcross * kTileSize, top = tile / tilesAcross * kTileSize;
        const int right = std::min(left + kTileSize, size), bottom = std::min(top + kTileSize, size);
        HostContext context;
        context.thread.threadIndex = thread;
        context.surfaceObject = &surface;
        context.positionDiffU = {step, 0.0f, 0.0f};
        context.positionDiffV = {0.0f, step, 0.0f};
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x) {
                moveTo(context, x, y, size);
                evaluate(source, context, image.pixel(x, y));
            }
        const std::int64_t texels = static_cast<std::int64_t>(right - left) * (bottom - top);
        doneTexels += texels;
        progress.advance(texels);
    };
    parallelFor(tilesAcross * tilesAcross, threads, bakeTile);
    result.doneTexels = doneTexels;
    return result;
}

} // namespace ombrix
