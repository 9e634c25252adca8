#include "textures/expr/gpu_expr_evaluator.h"

#include "textures/expr/expr_messages.h"
#include "textures/expr/gpu_expr_prepare.h"

#include <array>
#include <memory>

namespace nezaiva::expr::gpu {

namespace {

struct Builtin {
    std::string_view name;
    GpuOperator opcode;
    std::int32_t operand;
};

// In order of registration; a later one replaces an earlier one of its name.
// Kept as is: "/" stands twice, so operand 3 is never written
// (GpuExpression.EveryBuiltinHasItsOpcodeAndOperand).
constexpr Builtin kBuiltins[] = {
    {"abs", GpuOperator::Abs, 0},
    {"clamp", GpuOperator::Clamp, 0},
    {"facingRatio", GpuOperator::FacingRatio, 4},
    {"hsv2rgb", GpuOperator::HsvToRgb, 0},
    {"if", GpuOperator::Condition, 0},
    {"intensity", GpuOperator::ColorToFloat, 1},
    {"lerp", GpuOperator::Lerp, 0},
    {"luminance", GpuOperator::ColorToFloat, 2},
    {"max", GpuOperator::MinMax, 1},
    {"min", GpuOperator::MinMax, 0},
    {"overlay", GpuOperator::Overlay, 26},
    {"/", GpuOperator::MultiplyDivide, 3},
    {"rgb2hsv", GpuOperator::RgbToHsv, 0},
    {"==", GpuOperator::Compare, 0},
    {"!=", GpuOperator::Compare, 1},
    {"<", GpuOperator::Compare, 2},
    {">", GpuOperator::Compare, 3},
    {"<=", GpuOperator::Compare, 4},
    {">=", GpuOperator::Compare, 5},
    {"+", GpuOperator::AddColors, 1},
    {"-", GpuOperator::AddColors, 0},
    {"*", GpuOperator::MultiplyColors, 0},
    {"/", GpuOperator::MultiplyDivide, 2},
};

constexpr std::int32_t kHoistedUses = 2;

} // namespace

GPUExpressionEvaluator::GPUExpressionEvaluator()
{
    for (const Builtin& builtin : kBuiltins)
        addFunction(builtin.name, std::make_unique<GPUCommonFunction>(builtin.opcode, builtin.operand));
    addFunction("manip", std::make_unique<ManipFunction>());
}

void GPUExpressionEvaluator::addFunction(std::string_view name, std::unique_ptr<GPUFunction> function)
{
    functions[HostString(name)] = std::move(function);
}

void GPUExpressionEvaluator::addVariable(std::unique_ptr<GPUVariable> variable)
{
    if (variable && !findVariable(variable->name)) variables.push_back(std::move(variable));
}

GPUVariable* GPUExpressionEvaluator::findVariable(std::string_view name) const
{
    return gpu::findVariable(variables, name);
}

void GPUExpressionEvaluator::evaluate(GPUSourceWriter& sourceWriter, std::string_view mainExpression)
{
    writer = &sourceWriter;
    writeExpression(mainExpression);
    writer = nullptr;
    sourceWriter.flush();
}

void GPUExpressionEvaluator::writeExpression(std::string_view text)
{
    const std::unique_ptr<Node> tree = prepare(text, variables);
    // Kept as is: only the main expression is counted. A symbol that the expressions of variables repeat is
    // not hoisted, and the slots of every source depend on it
    // (GpuExpression.ASymbolRepeatedOnlyInVariablesIsNotHoisted).
    tree->accept(symbolCounter);
    hoistVariables();
    tree->accept(*this);
    if (writer->getDepth() > 0) writer->writeFinish(writer->getDepth());
}

// Writes the variables that are used repeatedly once, ahead of the expression.
void GPUExpressionEvaluator::hoistVariables()
{
    for (const std::unique_ptr<GPUVariable>& variable : variables) {
        if (symbolCounter.getCount(variable->name) < kHoistedUses) continue;
        if (variable->type != kExpressionVariable && variable->type != kPluginVariable) continue;
        emitVariable(variable.get());
        slots[variable->name] = writer->getDepth();
    }
}

void GPUExpressionEvaluator::emitVariable(const GPUVariable* variable)
{
    if (!variable) {
        writer->openSlot();
    } else if (variable->type == kColorVariable) {
        const OUtils::AColor& color = variable->color;
        writer->openSlot();
        writer->writeColor(color.r, color.g, color.b, color.a);
    } else if (variable->type == kPluginVariable) {
        writer->openSlot();
        writer->writeTexture(variable->plugin);
    } else if (variable->type == kExpressionVariable) {
        prepare(variable->expression, variables)->accept(*this);
    }
}

void GPUExpressionEvaluator::visitLiteral(FloatingLiteralNode& node)
{
    writer->openSlot();
    writer->writeGray(node.getValue());
}

void GPUExpressionEvaluator::visitList(ListNode& node)
{
    // A list is a constant: only its numbers count, and of these only the first four places.
    std::array<float, 4> color{};
    const NodeVector& children = node.getChildren();
    for (std::size_t i = 0; i < color.size() && i < children.size(); ++i)
        if (children[i]->getType() == kLiteralType)
            color[i] = static_cast<const FloatingLiteralNode*>(children[i].get())->getValue();
    writer->openSlot();
    writer->writeColor(color[0], color[1], color[2], color[3]);
}

void GPUExpressionEvaluator::visitSymbol(SymbolNode& node)
{
    const auto slot = slots.find(node.getName());
    if (slot == slots.end() || slot->second < 0) {
        emitVariable(findVariable(node.getName()));
        return;
    }
    writer->openSlot();
    writer->writeReference(writer->getDepth() - slot->second - 1);
}

void GPUExpressionEvaluator::visitFunction(FunctionNode& node)
{
    // Kept as is: a call that fails opens no slot, so that whoever consumes its value takes one too many
    // (GpuExpression.AnUnknownFunctionWritesNothing).
    const auto function = functions.find(node.getName());
    if (function == functions.end() || !function->second->call(node, *this, *writer))
        reportError({kCallFailed, node.getName()});
}

} // namespace nezaiva::expr::gpu
