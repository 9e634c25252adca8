#include "host/gpu/host_gpu.h"

#include <algorithm>
#include <cmath>

namespace ombrix {
namespace {

// Scales the three colours of a packed pixel and keeps its alpha.
std::uint32_t scaledPixel(std::uint32_t pixel, float scale)
{
    std::uint32_t result = pixel & 0xFF000000u;
    for (int shift = 0; shift < 24; shift += 8) {
        const float channel = static_cast<float>(pixel >> shift & 0xFFu) * scale;
        const float limited = channel > 0.0f ? std::min(channel, 255.0f) : 0.0f;
        result |= static_cast<std::uint32_t>(std::floor(limited)) << shift;
    }
    return result;
}

class BlockStore : public OUtils::ParameterBlockStore {
public:
    void upload(OUtils::PluginBase* owner, const void* block, std::size_t size) override
    {
        GpuBlock* held = find(owner);
        if (!held) {
            all.push_back({owner, nextId++, {}});
            held = &all.back();
        }
        const auto* bytes = static_cast<const std::uint8_t*>(block);
        held->bytes.assign(bytes, bytes + (bytes ? size : 0));
    }
    int finishUpload(OUtils::PluginBase* owner) override
    {
        const GpuBlock* held = find(owner);
        return held ? held->id : -1;
    }
    void freeBlock(int id) override
    {
        std::erase_if(all, [id](const GpuBlock& block) { return block.id == id; });
    }

    std::vector<GpuBlock> all;

private:
    GpuBlock* find(OUtils::PluginBase* owner)
    {
        const auto found =
            std::find_if(all.begin(), all.end(), [=](const GpuBlock& block) { return block.owner == owner; });
        return found == all.end() ? nullptr : &*found;
    }

    int nextId = 0;
};

} // namespace

struct HostOCLData::State {
    OUtils::OmbrixRenderer* renderer;
    bool withBlockStore;
    std::vector<GpuBitmap> bitmaps;
    BlockStore store;
};

HostOCLData::HostOCLData(OUtils::OmbrixRenderer* renderer, bool withBlockStore)
    : state(new State{renderer, withBlockStore, {}, {}})
{
}

HostOCLData::~HostOCLData() = default;

int HostOCLData::getBitmapIndexFromHash(std::uint32_t hash)
{
    for (std::size_t i = 0; i < state->bitmaps.size(); ++i)
        if (state->bitmaps[i].hash == hash) return static_cast<int>(i);
    return -1;
}

int HostOCLData::addBitmapFile(const OUtils::PtrArray<int>& pixels,
                               const OUtils::PtrArray<int>* /*secondPixels*/, int /*reserved*/, int width,
                               int height, float scale, const char* name, int /*mode*/)
{
    if (width <= 0 || height <= 0) return -1;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (count > static_cast<std::size_t>(pixels.count())) return -1;
    GpuBitmap bitmap;
    bitmap.width = width;
    bitmap.height = height;
    if (name) bitmap.name = name;
    bitmap.pixels.assign(pixels.begin(), pixels.begin() + count);
    if (scale != 1.0f)
        for (std::uint32_t& pixel : bitmap.pixels)
            pixel = scaledPixel(pixel, scale);
    state->bitmaps.push_back(std::move(bitmap));
    return static_cast<int>(state->bitmaps.size()) - 1;
}

void HostOCLData::setBitmapHash(int index, std::uint32_t hash)
{
    if (index >= 0 && static_cast<std::size_t>(index) < state->bitmaps.size())
        state->bitmaps[static_cast<std::size_t>(index)].hash = hash;
}

OUtils::OmbrixRenderer* HostOCLData::getRenderer()
{
    return state->renderer;
}

OUtils::ParameterBlockStore* HostOCLData::getBlockStore()
{
    return state->withBlockStore ? &state->store : nullptr;
}

const std::vector<GpuBitmap>& HostOCLData::bitmaps() const
{
    return state->bitmaps;
}

const std::vector<GpuBlock>& HostOCLData::blocks() const
{
    return state->store.all;
}

} // namespace ombrix

namespace OUtils {

int RTTexInterface::getRTTexSource(PluginInterface* texture, const char* name, const char* tag,
                                   const char* descriptor, ShaderSource& source, OCLData& data)
{
    PluginBase* plugin = texture ? texture->getPlugin() : nullptr;
    PluginInterface* found = plugin ? plugin->getInterface(EXT_RTTEX) : nullptr;
    if (!found) return 0;
    return static_cast<RTTexInterface*>(found)->getSource(name, tag, descriptor, source, data);
}

} // namespace OUtils
