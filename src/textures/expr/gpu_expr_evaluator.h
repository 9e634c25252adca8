// GPUExpressionEvaluator: writes the GPU source of an expression with its bound variables.
#pragma once

#include "textures/expr/agenda.h"
#include "textures/expr/gpu_function.h"
#include "textures/expr/gpu_source_writer.h"
#include "textures/expr/gpu_variable.h"
#include "textures/expr/visitor.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nezaiva::expr::gpu {

// Lives for one source, on one thread. Faults are told on the standard error stream, each on a line that
// begins "[ERR] ", and stop nothing.
// Kept as is: a variable whose expression names itself recurses without bound. Nesting of variables in one
// another is the one depth that costs stack.
class GPUExpressionEvaluator : public Visitor {
public:
    // Registers the built-in functions.
    GPUExpressionEvaluator();
    ~GPUExpressionEvaluator() override;

    // Takes the variable. Of two variables of the same name the first one stays. Null is ignored.
    void addVariable(GPUVariable* variable);
    // The variable of exactly this name, or null.
    GPUVariable* findVariable(std::string_view name) const;
    // Writes the whole source of the main expression. To be called once.
    void evaluate(GPUSourceWriter& sourceWriter, std::string_view mainExpression);

    // Each writes a node, and works only during evaluate.
    void visitSymbol(SymbolNode& node) override;
    void visitList(ListNode& node) override;
    void visitFunction(FunctionNode& node) override;
    void visitLiteral(FloatingLiteralNode& node) override;
    void visitAll(const NodeVector& nodes) override;

    // Lets the first count arguments of the node accept this evaluator, in order, and then calls finish
    // with what is given. From within a visit operation this happens after that operation.
    using Finish = void (*)(const GPUFunction& function, FunctionNode& node, GPUSourceWriter& writer);
    void writeArguments(FunctionNode& node, std::size_t count, const GPUFunction& function,
                        GPUSourceWriter& functionWriter, Finish finish);

private:
    struct PendingCall {
        const GPUFunction* function;
        GPUSourceWriter* writer;
        Finish finish;
    };

    void addFunction(std::string_view name, GPUFunction* function);
    void countSymbols(std::string_view text);
    void hoistVariables();
    void emitVariable(const GPUVariable* variable);
    static void finishStep(Visitor& visitor, Node& node);

    VariableVector variables;
    NameMap<std::int32_t> slots;
    NameMap<GPUFunction*> functions;
    SymbolCounterVisitor symbolCounter;
    GPUSourceWriter* writer = nullptr;
    Agenda agenda;
    HostVector<PendingCall> pendingCalls; // the calls whose arguments are being written, outermost first
};

} // namespace nezaiva::expr::gpu
