// The host's sinks of GPU text and GPU bitmaps.
#pragma once

#include <ombrix/gpu_source.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ombrix {

class HostShaderSource : public OUtils::ShaderSource {
public:
    void append(const char* text) override;
    __attribute__((format(printf, 2, 3))) void printf(const char* format, ...) override;

    std::string text;
};

struct GpuBitmap {
    int width = 0, height = 0;
    std::string name;
    std::optional<std::uint32_t> hash;
    std::vector<std::uint32_t> pixels; // row 0 at the top; alpha in the top byte, then red, green, blue
};

struct GpuBlock {
    OUtils::PluginBase* owner = nullptr;
    int id = -1;
    std::vector<std::uint8_t> bytes;
};

class HostOCLData : public OUtils::OCLData {
public:
    HostOCLData(OUtils::OmbrixRenderer* renderer, bool withBlockStore);
    ~HostOCLData() override;

    int getBitmapIndexFromHash(std::uint32_t hash) override;
    int addBitmapFile(const OUtils::PtrArray<int>& pixels, const OUtils::PtrArray<int>* secondPixels,
                      int reserved, int width, int height, float scale, const char* name, int mode) override;
    void setBitmapHash(int index, std::uint32_t hash) override;
    OUtils::OmbrixRenderer* getRenderer() override;
    OUtils::ParameterBlockStore* getBlockStore() override;

    const std::vector<GpuBitmap>& bitmaps() const;
    const std::vector<GpuBlock>& blocks() const;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ombrix
