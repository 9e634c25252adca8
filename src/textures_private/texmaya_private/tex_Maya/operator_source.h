// GPU text of the arithmetic nodes: slots whose inputs may refuse, a built-in operator, its operands.
#pragma once

#include "plugin_frame/gpu_text.h"

#include <ombrix/gpu_source.h>
#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// Passes what getSource was given on to the inputs. Lives within one getSource call.
class OperatorSource {
public:
    OperatorSource(const char* sourceName, const char* sourceTag, const char* sourceDescriptor,
                   ShaderSource& shaderSource, OCLData& oclData)
        : name(sourceName), tag(sourceTag), descriptor(sourceDescriptor), source(shaderSource), data(oclData)
    {
    }

    // The input's own source, into the open slot. False when it has none: null, without a GPU form, or
    // refusing.
    bool input(PluginInterface* texture)
    {
        return RTTexInterface::getRTTexSource(texture, name, tag, descriptor, source, data) != 0;
    }
    void color(const AColor& value)
    {
        source.printf("color %f %f %f %f\n", static_cast<double>(value.r), static_cast<double>(value.g),
                      static_cast<double>(value.b), static_cast<double>(value.a));
    }
    void endSlot() { source.append("subtex\n"); }

    // A whole slot of the input; one without a source leaves it empty.
    void inputSlot(PluginInterface* texture)
    {
        input(texture);
        endSlot();
    }
    // The same; a text or a colour stands in for an input without a source.
    void inputSlotOr(PluginInterface* texture, const char* refused)
    {
        if (!input(texture)) source.append(refused);
        endSlot();
    }
    void inputSlotOr(PluginInterface* texture, const AColor& refused)
    {
        if (!input(texture)) color(refused);
        endSlot();
    }

    // A built-in operator over the slots before it.
    void builtin(int operation) { source.printf("bitmap %i\n", operation); }
    // Its operands: two numbers and ten zeros.
    void operands(float first, float second)
    {
        source.printf("uvw_transform %f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f\n", static_cast<double>(first),
                      static_cast<double>(second), 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
    }

private:
    const char* name;
    const char* tag;
    const char* descriptor;
    ShaderSource& source;
    OCLData& data;
};

} // namespace nezaiva
