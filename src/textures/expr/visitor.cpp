#include "textures/expr/visitor.h"

namespace nezaiva::expr {

void acceptStep(Visitor& visitor, Node& node)
{
    node.accept(visitor);
}

void Visitor::visitBegin(BeginNode& node)
{
    visitAll(node.getChildren());
}

void Visitor::visitAll(const NodeVector& nodes)
{
    for (Node* node : nodes)
        node->accept(*this);
}

void SymbolCounterVisitor::visitSymbol(SymbolNode& node)
{
    ++counts[node.getName()];
}

void SymbolCounterVisitor::visitList(ListNode& node)
{
    visitAll(node.getChildren());
}

void SymbolCounterVisitor::visitFunction(FunctionNode& node)
{
    visitAll(node.getArgs());
}

void SymbolCounterVisitor::visitBegin(BeginNode& node)
{
    visitAll(node.getChildren());
}

void SymbolCounterVisitor::visitAll(const NodeVector& nodes)
{
    agenda.addEach(acceptStep, nodes, nodes.size());
    agenda.run(*this);
}

std::int32_t SymbolCounterVisitor::getCount(std::string_view name) const
{
    const auto found = counts.find(name);
    return found == counts.end() ? 0 : found->second;
}

} // namespace nezaiva::expr
