// Parser: from a text to its tree, once.
#pragma once

#include "textures/expr/node.h"

#include <memory>
#include <string_view>

namespace nezaiva::expr {

// Parses a text once, at the first getRoot. The tree dies with the parser; to keep one, copy it with
// VisitorChain::run.
class Parser {
public:
    // Copies the text.
    explicit Parser(std::string_view text) : source(text) {}
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    virtual ~Parser() = default;
    // A new tree.
    virtual std::unique_ptr<Node> parseText(const HostString& text) = 0;

    // The tree of the source, which stays the parser's.
    Node* getRoot()
    {
        if (!root) root = parseText(source);
        return root.get();
    }

private:
    HostString source;
    std::unique_ptr<Node> root;
};

} // namespace nezaiva::expr
