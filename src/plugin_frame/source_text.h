// The one way in which a texture writes its GPU text: a sequence of slots, each a source or a constant,
// and built-in operators that consume them.
#pragma once

#include "textures/expr/gpu_operator.h"

#include <ombrix/gpu_source.h>
#include <ombrix/types.h>

#include <initializer_list>

namespace nezaiva {

using namespace OUtils;

// The one kind of consumer that the library writes for.
bool isMaterialDescriptor(const char* descriptor);

// What getSource was given, to be written into and to be passed on to inputs. Lives within one getSource
// call; everything is borrowed.
class SourceText {
public:
    // "uvw_transform" holds so many numbers.
    static constexpr int kOperandCount = 12;

    SourceText(const char* sourceName, const char* sourceTag, const char* sourceDescriptor,
               ShaderSource& shaderSource, OCLData& oclData)
        : name(sourceName), tag(sourceTag), descriptor(sourceDescriptor), source(shaderSource), data(oclData)
    {
    }

    // The input's own source, into the open slot. False, with nothing written, when it has none: null,
    // without a GPU form, or refusing.
    bool input(PluginInterface* texture) { return input(texture, name, tag); }
    // The same under another name and tag.
    bool input(PluginInterface* texture, const char* asName, const char* asTag);
    // The same, for a texture that shows another one as it is. Returns the other's answer, 0 for null.
    int passOn(PluginInterface* texture);

    // A whole slot of the input's source, empty where it has none.
    void slot(PluginInterface* texture);
    // The same; a line or a colour stands in for an input without a source.
    void slotOr(PluginInterface* texture, const char* refused);
    void slotOr(PluginInterface* texture, const AColor& refused);
    // The same; a colour stands in for a null input alone.
    void slotOrUnset(PluginInterface* texture, const AColor& unset);
    // A whole slot of one colour.
    void slot(const AColor& constant);

    void color(const AColor& value);
    void line(const char* text) { source.append(text); }
    void endSlot() { source.append("subtex\n"); }
    // A built-in operator over the slots before it.
    void op(GpuOperator operation);
    // Its operands, at most kOperandCount; those that are left out are zero.
    void operands(std::initializer_list<float> numbers);
    // The operands without the word before them, as one output writes them.
    void bareOperands(std::initializer_list<float> numbers);

    const char* const name;
    const char* const tag;
    const char* const descriptor;
    ShaderSource& source;
    OCLData& data;
};

// A texture with a GPU form. The descriptor is tested here, once: other consumers get nothing.
class GpuTexture : public RTTexInterface {
public:
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) final;

    // Writes the text. Returns 1 when it answered, 0 when it refuses.
    virtual int writeSource(SourceText& text) = 0;
};

} // namespace nezaiva
