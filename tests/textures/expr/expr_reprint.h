// Writes a tree back as the text that parses to it.
#pragma once

#include "textures/expr/node.h"

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

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

inline std::string reprint(const nezaiva::expr::Node& root)
{
    using namespace nezaiva::expr;
    struct Pending {
        const Node* node; // null: the end of a form
    };
    std::string text;
    std::vector<Pending> pending{{&root}};
    while (!pending.empty()) {
        const Node* node = pending.back().node;
        pending.pop_back();
        if (!node) {
            text += ") ";
            continue;
        }
        if (node->getType() == kLiteralType) {
            appendLiteral(text, static_cast<const FloatingLiteralNode*>(node)->getValue());
            text += ' ';
        } else if (node->getType() == kSymbolType) {
            appendSymbol(text, *static_cast<const SymbolNode*>(node));
            text += ' ';
        } else {
            if (node->getType() == kFunctionType) {
                text += '(';
                text += static_cast<const FunctionNode*>(node)->getName();
                text += ' ';
            } else if (node->getType() == kListType) {
                text += "'(";
            }
            if (node->getType() != kBeginType) pending.push_back({nullptr});
            const NodeVector& held = *heldNodes(*node);
            for (std::size_t i = held.size(); i-- > 0;)
                pending.push_back({held[i]});
        }
    }
    return text;
}

} // namespace expr_test
