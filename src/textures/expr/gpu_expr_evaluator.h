// GPUExpressionEvaluator: writes the GPU source of an expression with its bound variables.
#pragma once

#include "textures/expr/gpu_function.h"
#include "textures/expr/gpu_source_writer.h"
#include "textures/expr/gpu_variable.h"
#include "textures/expr/visitor.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace nezaiva::expr::gpu {

// Lives for one source, on one thread. Faults are told on the standard error stream, each on a line that
// begins "[ERR] ", and stop nothing.
// The expression of a variable is written from within the one that uses it, which costs 350 bytes of stack a
// variable beside the levels of both.
// Kept as is: a variable whose expression names itself recurses without bound
// (GpuExpression.AVariableThatNamesItselfIsFollowedWithoutBound).
class GPUExpressionEvaluator : public Visitor {
public:
    // Registers the built-in functions.
    GPUExpressionEvaluator();

    // Of two variables of the same name the first one stays. Null is ignored.
    void addVariable(std::unique_ptr<GPUVariable> variable);
    // The variable of exactly this name, or null.
    GPUVariable* findVariable(std::string_view name) const;
    // Writes the whole source of the main expression. To be called once.
    void evaluate(GPUSourceWriter& sourceWriter, std::string_view mainExpression);

    // Each writes a node, and works only during evaluate.
    void visitSymbol(SymbolNode& node) override;
    void visitList(ListNode& node) override;
    void visitFunction(FunctionNode& node) override;
    void visitLiteral(FloatingLiteralNode& node) override;

private:
    void addFunction(std::string_view name, std::unique_ptr<GPUFunction> function);
    void writeExpression(std::string_view text);
    void hoistVariables();
    void emitVariable(const GPUVariable* variable);

    VariableVector variables;
    NameMap<std::int32_t> slots;
    NameMap<std::unique_ptr<GPUFunction>> functions;
    SymbolCounterVisitor symbolCounter;
    GPUSourceWriter* writer = nullptr;
};

} // namespace nezaiva::expr::gpu
