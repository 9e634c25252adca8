// The built-in functions of GPU expressions.
#pragma once

#include "textures/expr/gpu_source_writer.h"
#include "textures/expr/node.h"

#include <cstdint>

namespace nezaiva::expr::gpu {

class GPUExpressionEvaluator;

class GPUFunction {
public:
    GPUFunction() = default;
    GPUFunction(const GPUFunction&) = delete;
    GPUFunction& operator=(const GPUFunction&) = delete;

    virtual ~GPUFunction() = default;
    // Writes the call: the arguments through the evaluator, then the function itself. True on success;
    // false with nothing written.
    virtual bool call(FunctionNode& node, GPUExpressionEvaluator& evaluator, GPUSourceWriter& writer) = 0;
};

// An operator that takes each argument from a slot.
// Kept as is: the number of arguments is never tested (GpuExpression.TheNumberOfArgumentsIsNotTested).
class GPUCommonFunction : public GPUFunction {
public:
    // The operand is the first of the operator's twelve integers.
    GPUCommonFunction(GpuOperator functionOpcode, std::int32_t firstOperand)
        : opcode(functionOpcode), operand(firstOperand)
    {
    }
    bool call(FunctionNode& node, GPUExpressionEvaluator& evaluator, GPUSourceWriter& writer) override;

private:
    GpuOperator opcode;
    std::int32_t operand;
};

// (manip a b, four channel operations, four swizzle selectors): combines two colours channel by channel.
class ManipFunction : public GPUFunction {
public:
    bool call(FunctionNode& node, GPUExpressionEvaluator& evaluator, GPUSourceWriter& writer) override;
};

} // namespace nezaiva::expr::gpu
