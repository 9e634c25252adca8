// The comparison of trees.

#include "textures/expr/expr_messages.h"
#include "textures/expr/node.h"

#include <cstddef>
#include <stdexcept>

namespace nezaiva::expr {

namespace {

struct OpenPair {
    const NodeVector* left;
    const NodeVector* right;
    std::size_t next;
};

void requireSameType(const Node& left, const Node& right)
{
    if (left.getType() != right.getType()) throw std::invalid_argument(kDifferentTypes);
}

// Compares pair by pair, the pairs below a pair before the next one. The first result that is not zero
// is the result of all levels above it.
std::int32_t compareNodes(const NodeVector& left, const NodeVector& right)
{
    HostVector<OpenPair> open;
    open.push_back({&left, &right, 0});
    while (!open.empty()) {
        OpenPair& innermost = open.back();
        const std::size_t leftCount = innermost.left->size();
        const std::size_t rightCount = innermost.right->size();
        if (innermost.next == leftCount || innermost.next == rightCount) {
            const auto difference = static_cast<std::int32_t>(leftCount - rightCount);
            if (difference != 0) return difference;
            open.pop_back();
            continue;
        }
        const Node& leftNode = *(*innermost.left)[innermost.next];
        const Node& rightNode = *(*innermost.right)[innermost.next];
        ++innermost.next;
        if (const NodeVector* leftBelow = heldNodes(leftNode)) {
            requireSameType(leftNode, rightNode);
            open.push_back({leftBelow, heldNodes(rightNode), 0});
        } else if (const std::int32_t result = leftNode.compare(rightNode)) {
            return result;
        }
    }
    return 0;
}

} // namespace

std::int32_t BeginNode::compare(const Node& other) const
{
    requireSameType(*this, other);
    return compareNodes(children, *heldNodes(other));
}

std::int32_t ListNode::compare(const Node& other) const
{
    requireSameType(*this, other);
    return compareNodes(children, *heldNodes(other));
}

// Kept as is: the function's name takes no part, so (+ 1 2) and (* 1 2) compare equal.
std::int32_t FunctionNode::compare(const Node& other) const
{
    requireSameType(*this, other);
    return compareNodes(args, *heldNodes(other));
}

std::int32_t FloatingLiteralNode::compare(const Node& other) const
{
    requireSameType(*this, other);
    const float otherValue = static_cast<const FloatingLiteralNode&>(other).getValue();
    if (otherValue > value) return -1;
    return otherValue == value ? 0 : 1;
}

std::int32_t SymbolNode::compare(const Node& other) const
{
    requireSameType(*this, other);
    const int order = name.compare(static_cast<const SymbolNode&>(other).getName());
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace nezaiva::expr
