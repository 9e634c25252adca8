// GPUSourceWriter: writes the slots of a GPU source, and knows how deep their stack is.
#pragma once

#include "textures/expr/gpu_operator.h"

#include <ombrix/gpu_source.h>
#include <ombrix/memory.h>
#include <ombrix/types.h>

#include <array>
#include <cstdint>
#include <variant>

namespace nezaiva::expr::gpu {

// The twelve integers of an operator. Those that are not named are 0.
using Operands = std::array<std::int32_t, 12>;

// Holds its lines back until flush. A texture writes its source through a writer of its own, and that of its
// input's through a third: a chain of textures then costs the stack of what calls flush, and not of the
// expressions that the lines come from. A chain of 10,000 fits a stack of 8 MiB.
class GPUSourceWriter {
public:
    // Borrows everything. The three strings and the data are handed on to textures as they are.
    GPUSourceWriter(const char* sourceName, const char* sourceTag, const char* sourceDescriptor,
                    OUtils::ShaderSource& source, OUtils::OCLData& data)
        : name(sourceName), tag(sourceTag), descriptor(sourceDescriptor), shaderSource(&source),
          oclData(&data)
    {
    }

    // Ends the slot before, if there is one, and begins the next.
    void openSlot();
    // The slot's constant colour.
    void writeColor(float red, float green, float blue, float alpha);
    void writeGray(float value);
    // The texture's own source; nothing for null, or a texture without one.
    void writeTexture(OUtils::PluginInterface* texture);
    // A built-in operator. Opens no slot, and takes none off the stack.
    void writeOperator(GpuOperator opcode, const Operands& operands);
    // A copy of the slot that lies offset below the one before this.
    void writeReference(std::int32_t offset);
    // Drops the slots that lie count deep below the top, and keeps the top.
    void writeFinish(std::int32_t count);
    // Appends what was written since the last flush to the source.
    void flush();

    // The index of the top slot.
    std::int32_t getDepth() const { return depth; }
    void popSlots(std::int32_t count) { depth -= count; }

private:
    struct SlotEnd {};
    struct Operator {
        GpuOperator opcode;
        Operands operands;
    };

    void append(const SlotEnd& end);
    void append(const OUtils::AColor& color);
    void append(OUtils::PluginInterface* texture);
    void append(const Operator& call);

    bool firstSlot = true; // no slot has been opened yet
    std::int32_t depth = 0;
    const char* name;
    const char* tag;
    const char* descriptor;
    OUtils::ShaderSource* shaderSource;
    OUtils::OCLData* oclData;
    OUtils::HostVector<std::variant<SlotEnd, OUtils::AColor, OUtils::PluginInterface*, Operator>> pending;
};

} // namespace nezaiva::expr::gpu
