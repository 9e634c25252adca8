// GPUSourceHelper: the way a plugin answers getSource with an expression.
//
// A getSource tests its descriptor, constructs a helper on its stack, adds the variables, evaluates the
// main expression and returns 1.
#pragma once

#include "textures/expr/gpu_expr_evaluator.h"
#include "textures/expr/gpu_source_writer.h"

#include <ombrix/gpu_source.h>

#include <string_view>

namespace nezaiva {

// Faults of an expression are told on the standard error stream and stop nothing. Names and texts are
// copied; a name that was added before keeps its first meaning. Everything else is borrowed.
class GPUSourceHelper {
public:
    // The arguments of getSource.
    GPUSourceHelper(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                    OUtils::OCLData& data);
    GPUSourceHelper(const GPUSourceHelper&) = delete;
    GPUSourceHelper& operator=(const GPUSourceHelper&) = delete;
    virtual ~GPUSourceHelper();

    // A texture input. Null is an empty slot, and false as the condition of an "if".
    void addPluginVariable(std::string_view name, OUtils::PluginInterface* plugin);
    // A constant, the same in all four channels.
    void addColorVariable(std::string_view name, float value);
    // An expression over the other variables, also over those that are added later. Its faults are told
    // here and again at each use.
    void addExpressionVariable(std::string_view name, std::string_view text);
    // Writes the source of the expression. To be called once, last.
    void evaluate(std::string_view expression);

private:
    expr::gpu::GPUSourceWriter writer;
    expr::gpu::GPUExpressionEvaluator evaluator;
};

} // namespace nezaiva
