#include "textures/expr/gpu_expr_evaluator.h"

#include "textures/expr/expr_messages.h"
#include "textures/expr/gpu_expr_prepare.h"

#include <array>
#include <memory>

namespace nezaiva::expr::gpu {

namespace {

struct Builtin {
    std::string_view name;
    std::int32_t opcode;
    std::int32_t operand;
};

// In order of registration; a later one replaces an earlier one of its name.
// Kept as is: "/" stands twice, so operand 3 is never written.
constexpr Builtin kBuiltins[] = {
    {"abs", -944, 0},     {"clamp", -951, 0},     {"facingRatio", -971, 4}, {"hsv2rgb", -965, 0},
    {"if", -948, 0},      {"intensity", -973, 1}, {"lerp", -945, 0},        {"luminance", -973, 2},
    {"max", -943, 1},     {"min", -943, 0},       {"overlay", -946, 26},    {"/", -956, 3},
    {"rgb2hsv", -987, 0}, {"==", -947, 0},        {"!=", -947, 1},          {"<", -947, 2},
    {">", -947, 3},       {"<=", -947, 4},        {">=", -947, 5},          {"+", -979, 1},
    {"-", -979, 0},       {"*", -980, 0},         {"/", -956, 2},
};

// Kept as is: no variable has this type, the kind being spelt "expression". So a symbol that only the
// expressions of variables use does not count, and its variable is not hoisted.
constexpr char kCountedVariable[] = "expressions";

constexpr std::int32_t kHoistedUses = 2;

} // namespace

GPUVariable* findVariable(const VariableVector& variables, std::string_view name)
{
    for (Variable* variable : variables)
        if (variable->name == name) return static_cast<GPUVariable*>(variable);
    return nullptr;
}

GPUExpressionEvaluator::GPUExpressionEvaluator()
{
    for (const Builtin& builtin : kBuiltins)
        addFunction(builtin.name, new GPUCommonFunction(builtin.opcode, builtin.operand));
    addFunction("manip", new ManipFunction);
}

GPUExpressionEvaluator::~GPUExpressionEvaluator()
{
    for (Variable* variable : variables)
        delete variable;
    for (const auto& [name, function] : functions)
        delete function;
}

void GPUExpressionEvaluator::addFunction(std::string_view name, GPUFunction* function)
{
    GPUFunction*& registered = functions[HostString(name)];
    delete registered;
    registered = function;
}

void GPUExpressionEvaluator::addVariable(GPUVariable* variable)
{
    if (!variable) return;
    const GPUVariable* existing = findVariable(variable->name);
    if (!existing) {
        variables.push_back(variable);
    } else if (existing != variable) {
        delete variable;
    }
}

GPUVariable* GPUExpressionEvaluator::findVariable(std::string_view name) const
{
    return gpu::findVariable(variables, name);
}

void GPUExpressionEvaluator::evaluate(GPUSourceWriter& sourceWriter, std::string_view mainExpression)
{
    writer = &sourceWriter;
    const std::unique_ptr<Node> tree(prepare(mainExpression, variables));
    tree->accept(symbolCounter);
    for (const Variable* variable : variables)
        if (variable->type == kCountedVariable)
            countSymbols(static_cast<const GPUVariable*>(variable)->expression);
    hoistVariables();
    tree->accept(*this);
    if (writer->getDepth() > 0) writer->writeFinish(writer->getDepth());
    writer = nullptr;
}

void GPUExpressionEvaluator::countSymbols(std::string_view text)
{
    const std::unique_ptr<Node> tree(prepare(text, variables));
    tree->accept(symbolCounter);
}

// Writes the variables that are used repeatedly once, ahead of the expression.
void GPUExpressionEvaluator::hoistVariables()
{
    for (const Variable* variable : variables) {
        if (symbolCounter.getCount(variable->name) < kHoistedUses) continue;
        if (variable->type != kExpressionVariable && variable->type != kPluginVariable) continue;
        emitVariable(static_cast<const GPUVariable*>(variable));
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
        const std::unique_ptr<Node> tree(prepare(variable->expression, variables));
        if (!tree) {
            writer->openSlot();
            return;
        }
        // To its end now: the tree ends here.
        const std::size_t remaining = agenda.size();
        tree->accept(*this);
        agenda.runDownTo(*this, remaining);
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
            color[i] = static_cast<const FloatingLiteralNode*>(children[i])->getValue();
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
    // Kept as is: a call that fails opens no slot, so that whoever consumes its value takes one too many.
    const auto function = functions.find(node.getName());
    if (function == functions.end() || !function->second->call(node, *this, *writer))
        reportError({kCallFailed, node.getName()});
}

void GPUExpressionEvaluator::visitAll(const NodeVector& nodes)
{
    agenda.addEach(acceptStep, nodes, nodes.size());
    agenda.run(*this);
}

void GPUExpressionEvaluator::writeArguments(FunctionNode& node, std::size_t count,
                                            const GPUFunction& function, GPUSourceWriter& functionWriter,
                                            Finish finish)
{
    pendingCalls.push_back({&function, &functionWriter, finish});
    agenda.add(finishStep, node);
    agenda.addEach(acceptStep, node.getArgs(), count);
    agenda.run(*this);
}

// Calls nest, so the last one pending is the one whose arguments are done.
void GPUExpressionEvaluator::finishStep(Visitor& visitor, Node& node)
{
    auto& self = static_cast<GPUExpressionEvaluator&>(visitor);
    const PendingCall call = self.pendingCalls.back();
    self.pendingCalls.pop_back();
    call.finish(*call.function, static_cast<FunctionNode&>(node), *call.writer);
}

} // namespace nezaiva::expr::gpu
