#include "textures/expr/gpu_source_writer.h"

namespace nezaiva::expr::gpu {

namespace {

constexpr std::int32_t kReferenceOperator = -952;
constexpr std::int32_t kFinishOperator = -934;

} // namespace

void GPUSourceWriter::openSlot()
{
    if (firstSlot) {
        firstSlot = false;
        return;
    }
    shaderSource->append("subtex\n");
    ++depth;
}

void GPUSourceWriter::writeColor(float red, float green, float blue, float alpha)
{
    shaderSource->printf("color %f %f %f %f\n", static_cast<double>(red), static_cast<double>(green),
                         static_cast<double>(blue), static_cast<double>(alpha));
}

void GPUSourceWriter::writeGray(float value)
{
    writeColor(value, value, value, value);
}

void GPUSourceWriter::writeTexture(OUtils::PluginInterface* texture)
{
    OUtils::RTTexInterface::getRTTexSource(texture, name, tag, descriptor, *shaderSource, *oclData);
}

void GPUSourceWriter::writeOperator(std::int32_t opcode, const Operands& n)
{
    shaderSource->printf("bitmap %d\n", opcode);
    shaderSource->printf("uvw_transform %d,%d,%d, %d,%d,%d, %d,%d,%d, %d,%d,%d\n", n[0], n[1], n[2], n[3],
                         n[4], n[5], n[6], n[7], n[8], n[9], n[10], n[11]);
}

void GPUSourceWriter::writeReference(std::int32_t offset)
{
    writeOperator(kReferenceOperator, {offset});
}

void GPUSourceWriter::writeFinish(std::int32_t count)
{
    openSlot();
    writeOperator(kFinishOperator, {count});
    depth -= count + 1;
}

} // namespace nezaiva::expr::gpu
