// The printed form of trees.

#include "textures/expr/node.h"

#include <charconv>
#include <string_view>

namespace nezaiva::expr {

namespace {

// "[", the heading, a blank, the nodes with ", " between them, "]".
HostString bracketed(std::string_view heading, const NodeVector& nodes)
{
    HostString text = "[";
    text += heading;
    std::string_view separator = " ";
    if (nodes.empty()) text += separator;
    for (const std::unique_ptr<Node>& node : nodes) {
        text += separator;
        text += node->toString();
        separator = ", ";
    }
    text += ']';
    return text;
}

} // namespace

HostString BeginNode::toString() const
{
    return bracketed("Begin", children);
}

HostString FunctionNode::toString() const
{
    return bracketed("Func " + name, args);
}

HostString ListNode::toString() const
{
    return bracketed("List", children);
}

HostString FloatingLiteralNode::toString() const
{
    char digits[32]; // six significant digits with sign, point and exponent take at most 13
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                                   std::chars_format::general, 6);
    return HostString(digits, end.ptr);
}

HostString SymbolNode::toString() const
{
    return name;
}

} // namespace nezaiva::expr
