#include "textures/expr/gpu_function.h"

#include "numeric/cell_index.h"
#include "textures/expr/expr_messages.h"
#include "textures/expr/gpu_expr_evaluator.h"

#include <cstddef>
#include <string_view>

namespace nezaiva::expr::gpu {

namespace {

constexpr std::size_t kManipColors = 2;
constexpr std::size_t kFirstChannelOp = 2;
constexpr std::size_t kFirstSwizzle = 6;
constexpr std::size_t kChannels = 4;

struct SymbolCode {
    std::string_view symbol;
    std::int32_t code;
};

// The operations of manip: what it does with one channel of its two colours.
constexpr SymbolCode kChannelOps[] = {{"+", 2}, {"-", 3}, {"*", 4}, {"/", 5}, {"g", 6}};
// The channel that manip takes in the place of another.
constexpr SymbolCode kSwizzles[] = {{"x", 1}, {"y", 2}, {"z", 3}, {"w", 4}};

// The code of a symbol, 0 for any other node and for null.
template <std::size_t kCount>
std::int32_t symbolCode(const SymbolCode (&codes)[kCount], const Node* node)
{
    if (!node || node->getType() != kSymbolType) return 0;
    for (const SymbolCode& entry : codes)
        if (static_cast<const SymbolNode*>(node)->getName() == entry.symbol) return entry.code;
    return 0;
}

// The code of an operation; a literal is the code itself.
std::int32_t channelOp(const Node* node)
{
    if (node && node->getType() == kLiteralType)
        return cellIndex(static_cast<const FloatingLiteralNode*>(node)->getValue());
    return symbolCode(kChannelOps, node);
}

Operands manipOperands(const FunctionNode& node)
{
    Operands operands{}; // the operations of red, green, blue and alpha, then their selectors
    for (std::size_t i = 0; i < kChannels; ++i) {
        operands[i] = channelOp(node.getArg(static_cast<int>(kFirstChannelOp + i)));
        // Kept as is: a literal, which counts as a channel operation, is no selector
        // (GpuExpression.ManipReadsOperationsAndSelectors).
        operands[kChannels + i] = symbolCode(kSwizzles, node.getArg(static_cast<int>(kFirstSwizzle + i)));
    }
    return operands;
}

} // namespace

bool GPUCommonFunction::call(FunctionNode& node, GPUExpressionEvaluator& evaluator, GPUSourceWriter& writer)
{
    evaluator.visitAll(node.getArgs());
    writer.openSlot();
    writer.writeOperator(opcode, {operand});
    writer.popSlots(static_cast<std::int32_t>(node.getArgs().size()));
    return true;
}

bool ManipFunction::call(FunctionNode& node, GPUExpressionEvaluator& evaluator, GPUSourceWriter& writer)
{
    const std::size_t count = node.getArgs().size();
    if (count < kManipColors) {
        const char digit = static_cast<char>('0' + count);
        reportError({kManipArguments, std::string_view(&digit, 1)});
        return false;
    }
    for (std::size_t i = 0; i < kManipColors; ++i)
        node.getArgs()[i]->accept(evaluator);
    writer.openSlot();
    writer.writeOperator(GpuOperator::Manip, manipOperands(node));
    // Only the two colours have slots, however many arguments follow them.
    writer.popSlots(static_cast<std::int32_t>(kManipColors));
    return true;
}

} // namespace nezaiva::expr::gpu
