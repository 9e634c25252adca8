#include "textures/expr/gpu_source_writer.h"

namespace nezaiva::expr::gpu {

void GPUSourceWriter::openSlot()
{
    if (firstSlot) {
        firstSlot = false;
        return;
    }
    pending.push_back(SlotEnd{});
    ++depth;
}

void GPUSourceWriter::writeColor(float red, float green, float blue, float alpha)
{
    pending.push_back(OUtils::AColor{red, green, blue, alpha});
}

void GPUSourceWriter::writeGray(float value)
{
    writeColor(value, value, value, value);
}

void GPUSourceWriter::writeTexture(OUtils::PluginInterface* texture)
{
    pending.push_back(texture);
}

void GPUSourceWriter::writeOperator(GpuOperator opcode, const Operands& operands)
{
    pending.push_back(Operator{opcode, operands});
}

void GPUSourceWriter::writeReference(std::int32_t offset)
{
    writeOperator(GpuOperator::Reference, {offset});
}

void GPUSourceWriter::writeFinish(std::int32_t count)
{
    openSlot();
    writeOperator(GpuOperator::Finish, {count});
    depth -= count + 1;
}

void GPUSourceWriter::flush()
{
    for (const auto& part : pending)
        std::visit([this](const auto& content) { append(content); }, part);
    pending.clear();
}

void GPUSourceWriter::append(const SlotEnd& /*end*/)
{
    shaderSource->append("subtex\n");
}

void GPUSourceWriter::append(const OUtils::AColor& color)
{
    shaderSource->printf("color %f %f %f %f\n", static_cast<double>(color.r), static_cast<double>(color.g),
                         static_cast<double>(color.b), static_cast<double>(color.a));
}

void GPUSourceWriter::append(OUtils::PluginInterface* texture)
{
    OUtils::RTTexInterface::getRTTexSource(texture, name, tag, descriptor, *shaderSource, *oclData);
}

void GPUSourceWriter::append(const Operator& call)
{
    const Operands& n = call.operands;
    shaderSource->printf("bitmap %d\n", static_cast<int>(call.opcode));
    shaderSource->printf("uvw_transform %d,%d,%d, %d,%d,%d, %d,%d,%d, %d,%d,%d\n", n[0], n[1], n[2], n[3],
                         n[4], n[5], n[6], n[7], n[8], n[9], n[10], n[11]);
}

} // namespace nezaiva::expr::gpu
