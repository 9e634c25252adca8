#include "textures/expr/node.h"

#include "textures/expr/visitor.h"

namespace nezaiva::expr {

void BeginNode::accept(Visitor& visitor)
{
    visitor.visitBegin(*this);
}

void FloatingLiteralNode::accept(Visitor& visitor)
{
    visitor.visitLiteral(*this);
}

void FunctionNode::accept(Visitor& visitor)
{
    visitor.visitFunction(*this);
}

void ListNode::accept(Visitor& visitor)
{
    visitor.visitList(*this);
}

void SymbolNode::accept(Visitor& visitor)
{
    visitor.visitSymbol(*this);
}

Node* FunctionNode::getArg(int index) const
{
    const auto place = static_cast<std::uint64_t>(static_cast<std::int64_t>(index));
    return place < args.size() ? args[place].get() : nullptr;
}

} // namespace nezaiva::expr
