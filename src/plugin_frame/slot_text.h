// Writing GPU text slot by slot, for textures whose GPU form is a built-in operator over their inputs.
#pragma once

#include "plugin_frame/gpu_text.h"

#include <ombrix/gpu_source.h>
#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// Passes what getSource was given on to the inputs. Lives within one getSource call.
class SlotText {
public:
    SlotText(const char* sourceName, const char* sourceTag, const char* sourceDescriptor,
             ShaderSource& shaderSource, OCLData& oclData)
        : name(sourceName), tag(sourceTag), descriptor(sourceDescriptor), source(shaderSource), data(oclData)
    {
    }

    // A slot of the input's own source. A null input, or one without a GPU form, leaves the slot empty.
    void input(PluginInterface* texture)
    {
        RTTexInterface::getRTTexSource(texture, name, tag, descriptor, source, data);
        endSlot();
    }
    // The same; a null input makes a slot of a constant colour.
    void inputOr(PluginInterface* texture, const AColor& unset)
    {
        if (texture)
            input(texture);
        else
            constant(unset);
    }
    void constant(const AColor& color)
    {
        source.printf("color %f %f %f %f\n", static_cast<double>(color.r), static_cast<double>(color.g),
                      static_cast<double>(color.b), static_cast<double>(color.a));
        endSlot();
    }
    // A built-in operator over the slots before it.
    void builtin(int operation) { source.printf("bitmap %i\n", operation); }

private:
    void endSlot() { source.printf("subtex\n"); }

    const char* name;
    const char* tag;
    const char* descriptor;
    ShaderSource& source;
    OCLData& data;
};

} // namespace nezaiva
