// The printed form of trees.

#include "textures/expr/node.h"

#include <charconv>
#include <cstddef>

namespace nezaiva::expr {

namespace {

struct OpenNode {
    const NodeVector* nodes;
    std::size_t next;
};

void appendNumber(HostString& text, float value)
{
    char digits[32]; // six significant digits with sign, point and exponent take at most 13
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                                   std::chars_format::general, 6);
    text.append(digits, end.ptr);
}

// Appends a leaf, or the beginning of a node that holds others.
void appendOpening(HostString& text, const Node& node)
{
    switch (node.getType()) {
    case kBeginType:
        text += "[Begin ";
        break;
    case kFunctionType:
        text += "[Func ";
        text += static_cast<const FunctionNode&>(node).getName();
        text += ' ';
        break;
    case kListType:
        text += "[List ";
        break;
    case kLiteralType:
        appendNumber(text, static_cast<const FloatingLiteralNode&>(node).getValue());
        break;
    default:
        text += static_cast<const SymbolNode&>(node).getName();
        break;
    }
}

HostString treeText(const Node& root)
{
    HostString text;
    HostVector<OpenNode> open;
    appendOpening(text, root);
    if (const NodeVector* nodes = heldNodes(root)) open.push_back({nodes, 0});
    while (!open.empty()) {
        OpenNode& innermost = open.back();
        if (innermost.next == innermost.nodes->size()) {
            text += ']';
            open.pop_back();
            continue;
        }
        if (innermost.next > 0) text += ", ";
        const Node& node = *(*innermost.nodes)[innermost.next++];
        appendOpening(text, node);
        if (const NodeVector* nodes = heldNodes(node)) open.push_back({nodes, 0});
    }
    return text;
}

} // namespace

HostString BeginNode::toString() const
{
    return treeText(*this);
}

HostString FloatingLiteralNode::toString() const
{
    return treeText(*this);
}

HostString FunctionNode::toString() const
{
    return treeText(*this);
}

HostString ListNode::toString() const
{
    return treeText(*this);
}

HostString SymbolNode::toString() const
{
    return treeText(*this);
}

} // namespace nezaiva::expr
