#include "textures/expr/visitor.h"

namespace nezaiva::expr {

void Visitor::visitBegin(BeginNode& node)
{
    visitAll(node.getChildren());
}

void Visitor::visitAll(const NodeVector& nodes)
{
    for (const std::unique_ptr<Node>& node : nodes)
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

std::int32_t SymbolCounterVisitor::getCount(std::string_view name) const
{
    const auto found = counts.find(name);
    return found == counts.end() ? 0 : found->second;
}

} // namespace nezaiva::expr
