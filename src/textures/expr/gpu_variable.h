// GPUVariable: what a symbol of a GPU expression stands for.
#pragma once

#include "textures/expr/node.h"
#include "textures/expr/variable.h"

#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

#include <memory>
#include <string_view>

namespace nezaiva::expr::gpu {

inline constexpr char kPluginVariable[] = "plugin_interface";
inline constexpr char kColorVariable[] = "color";
inline constexpr char kExpressionVariable[] = "expression";

class GPUVariable : public Variable {
public:
    // The source of a texture, which is not owned; null is an empty slot, and false as a condition.
    GPUVariable(std::string_view variableName, OUtils::PluginInterface* texture)
        : Variable(variableName, kPluginVariable), plugin(texture)
    {
    }
    // A constant.
    GPUVariable(std::string_view variableName, const OUtils::AColor& constant)
        : Variable(variableName, kColorVariable), color(constant)
    {
    }
    // Another expression.
    GPUVariable(std::string_view variableName, std::string_view text)
        : Variable(variableName, kExpressionVariable), expression(text)
    {
    }

    // Of these three, the type tells which one means anything; the others are null, zero and empty.
    OUtils::PluginInterface* const plugin = nullptr;
    const OUtils::AColor color;
    const HostString expression;
};

// In order of addition, no two of a name.
using VariableVector = HostVector<std::unique_ptr<GPUVariable>>;

// The variable of exactly this name, or null.
inline GPUVariable* findVariable(const VariableVector& variables, std::string_view name)
{
    for (const std::unique_ptr<GPUVariable>& variable : variables)
        if (variable->name == name) return variable.get();
    return nullptr;
}

} // namespace nezaiva::expr::gpu
