// Writes a tree back as the text that parses to it.
#pragma once

#include "textures/expr/node.h"

#include <charconv>
#include <cmath>
#include <memory>
#include <string>

namespace expr_test {

// Nine significant digits tell every float from its neighbours.
inline void appendLiteral(std::string& text, float value)
{
    if (std::isinf(value)) {
        text += value < 0 ? "-1e999" : "1e999";
        return;
    }
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 9);
    text.append(digits, end.ptr);
}

inline void appendSymbol(std::string& text, const nezaiva::expr::SymbolNode& node)
{
    // A quote keeps these two from meaning more than themselves.
    if (node.getName() == ")" || node.getName() == "'") text += '\'';
    text += node.getName();
}

inline void appendNode(std::string& text, const nezaiva::expr::Node& node)
{
    using namespace nezaiva::expr;
    const NodeVector* held = nullptr;
    switch (node.getType()) {
    case kLiteralType:
        appendLiteral(text, static_cast<const FloatingLiteralNode&>(node).getValue());
        break;
    case kSymbolType:
        appendSymbol(text, static_cast<const SymbolNode&>(node));
        break;
    case kFunctionType:
        text += '(';
        text += static_cast<const FunctionNode&>(node).getName();
        text += ' ';
        held = &static_cast<const FunctionNode&>(node).getArgs();
        break;
    default:
        text += "'(";
        held = &static_cast<const ListNode&>(node).getChildren();
        break;
    }
    if (held) {
        for (const std::unique_ptr<Node>& below : *held)
            appendNode(text, *below);
        text += ')';
    }
    text += ' ';
}

// Of the root of a text.
inline std::string reprint(const nezaiva::expr::Node& root)
{
    std::string text;
    for (const std::unique_ptr<nezaiva::expr::Node>& form :
         static_cast<const nezaiva::expr::BeginNode&>(root).getChildren())
        appendNode(text, *form);
    return text;
}

} // namespace expr_test
