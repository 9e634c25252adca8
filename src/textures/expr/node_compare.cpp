// The comparison of trees.

#include "textures/expr/expr_messages.h"
#include "textures/expr/node.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace nezaiva::expr {

namespace {

// The other node as one of the same class as this one.
template <class NodeClass>
const NodeClass& sameType(const NodeClass& node, const Node& other)
{
    if (node.getType() != other.getType()) throw std::invalid_argument(kDifferentTypes);
    return static_cast<const NodeClass&>(other);
}

// Pair by pair; the first result that is not zero counts, and then the number of nodes.
std::int32_t compareNodes(const NodeVector& left, const NodeVector& right)
{
    const std::size_t pairs = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < pairs; ++i)
        if (const std::int32_t result = left[i]->compare(*right[i])) return result;
    return static_cast<std::int32_t>(left.size() - right.size());
}

} // namespace

std::int32_t BeginNode::compare(const Node& other) const
{
    return compareNodes(children, sameType(*this, other).children);
}

std::int32_t ListNode::compare(const Node& other) const
{
    return compareNodes(children, sameType(*this, other).children);
}

// Kept as is: the function's name takes no part, so (+ 1 2) and (* 1 2) compare equal
// (Compare.FunctionsByTheirArgumentsAlone).
std::int32_t FunctionNode::compare(const Node& other) const
{
    return compareNodes(args, sameType(*this, other).args);
}

std::int32_t FloatingLiteralNode::compare(const Node& other) const
{
    const float otherValue = sameType(*this, other).value;
    if (otherValue > value) return -1;
    return otherValue == value ? 0 : 1;
}

std::int32_t SymbolNode::compare(const Node& other) const
{
    const int order = name.compare(sameType(*this, other).name);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace nezaiva::expr
