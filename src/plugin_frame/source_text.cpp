#include "plugin_frame/source_text.h"

#include <cstring>

namespace nezaiva {

bool isMaterialDescriptor(const char* descriptor)
{
    return descriptor && std::strcmp(descriptor, "MaterialDescriptor") == 0;
}

bool SourceText::input(PluginInterface* texture, const char* asName, const char* asTag)
{
    return RTTexInterface::getRTTexSource(texture, asName, asTag, descriptor, source, data) != 0;
}

int SourceText::passOn(PluginInterface* texture)
{
    return RTTexInterface::getRTTexSource(texture, name, tag, descriptor, source, data);
}

void SourceText::slot(PluginInterface* texture)
{
    input(texture);
    endSlot();
}

void SourceText::slotOr(PluginInterface* texture, const char* refused)
{
    if (!input(texture)) line(refused);
    endSlot();
}

void SourceText::slotOr(PluginInterface* texture, const AColor& refused)
{
    if (!input(texture)) color(refused);
    endSlot();
}

void SourceText::slotOrUnset(PluginInterface* texture, const AColor& unset)
{
    if (texture)
        slot(texture);
    else
        slot(unset);
}

void SourceText::slot(const AColor& constant)
{
    color(constant);
    endSlot();
}

void SourceText::color(const AColor& value)
{
    source.printf("color %f %f %f %f\n", static_cast<double>(value.r), static_cast<double>(value.g),
                  static_cast<double>(value.b), static_cast<double>(value.a));
}

void SourceText::op(GpuOperator operation)
{
    source.printf("bitmap %i\n", static_cast<int>(operation));
}

void SourceText::operands(std::initializer_list<float> numbers)
{
    source.append("uvw_transform ");
    bareOperands(numbers);
}

void SourceText::bareOperands(std::initializer_list<float> numbers)
{
    double all[kOperandCount] = {};
    int count = 0;
    for (const float number : numbers)
        if (count < kOperandCount) all[count++] = static_cast<double>(number);
    source.printf("%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f\n", all[0], all[1], all[2], all[3], all[4], all[5],
                  all[6], all[7], all[8], all[9], all[10], all[11]);
}

int GpuTexture::getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                          OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    SourceText text(name, tag, descriptor, source, data);
    return writeSource(text);
}

} // namespace nezaiva
