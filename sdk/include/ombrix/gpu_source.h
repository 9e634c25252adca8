// The GPU side of a texture: text of slots for the renderer's GPU back end, and the bitmaps that the
// text refers to. Runs outside rendering, on one thread.
#pragma once

#include <ombrix/plugin_base.h>
#include <ombrix/ptr_array.h>

#include <cstddef>
#include <cstdint>

namespace OUtils {

class OmbrixRenderer;

// Collects text. Numbers are written in the C locale whatever the process's locale is.
class ShaderSource {
public:
    virtual ~ShaderSource() = default;
    virtual void append(const char* text) = 0;
    __attribute__((format(printf, 2, 3))) virtual void printf(const char* format, ...) = 0;
};

// Holds parameter blocks for the GPU, one for each owner.
class ParameterBlockStore {
public:
    virtual ~ParameterBlockStore() = default;
    // Copies size bytes; an earlier block of this owner is replaced.
    virtual void upload(PluginBase* owner, const void* block, std::size_t size) = 0;
    // Ends the upload of this owner and returns its block's id, 0 or above; -1 without a block.
    virtual int finishUpload(PluginBase* owner) = 0;
    // Frees a block; an unknown id does nothing.
    virtual void freeBlock(int id) = 0;
};

// The bitmaps and blocks of one frame's GPU data.
class OCLData {
public:
    virtual ~OCLData() = default;
    // The index of a bitmap whose hash was set to this one, or -1.
    virtual int getBitmapIndexFromHash(std::uint32_t hash) = 0;
    // Adds a copy of width times height pixels, row 0 at the top, each blue + green 256 + red 65536 +
    // alpha 16777216. secondPixels is null or a second level; reserved is 0 and mode 1 for baked
    // textures; scale multiplies the colours. Returns the bitmap's index, or a negative number.
    virtual int addBitmapFile(const PtrArray<int>& pixels, const PtrArray<int>* secondPixels, int reserved,
                              int width, int height, float scale, const char* name, int mode) = 0;
    virtual void setBitmapHash(int index, std::uint32_t hash) = 0;
    // The renderer that prepares this data, or null.
    virtual OmbrixRenderer* getRenderer() = 0;
    // The store of parameter blocks, or null when this back end has none.
    virtual ParameterBlockStore* getBlockStore() = 0;
};

class RTTexInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_RTTEX;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_RTTEX"; }

    virtual int reservedOperation1() { return 0; }
    virtual void reservedOperation2() {}
    // Appends this texture's source for the kind of consumer that descriptor names. Returns 1 if it
    // answered and 0, with nothing written, if it does not know the descriptor.
    virtual int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                          OCLData& data) = 0;

    // Appends the source of the texture that holds the interface: how a texture embeds another. Null,
    // or a plugin without EXT_RTTEX, writes nothing and returns 0.
    OMBRIX_API static int getRTTexSource(PluginInterface* texture, const char* name, const char* tag,
                                         const char* descriptor, ShaderSource& source, OCLData& data);
};

} // namespace OUtils
