// From text to tree.
#pragma once

#include "textures/expr/node.h"

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

    virtual ~Parser() { delete root; }
    // A new tree, owned by the caller.
    virtual Node* parseText(const HostString& text) = 0;

    // The tree of the source, owned by the parser.
    Node* getRoot()
    {
        if (!root) root = parseText(source);
        return root;
    }

private:
    HostString source;
    Node* root = nullptr;
};

// The Lisp-like language:
//   program     any number of expressions
//   expression  "(" head expression ... ")"     a FunctionNode
//               "'" "(" expression ... ")"      a ListNode
//               word, or "'" word               a literal if it begins with a digit, or with "-" and a
//                                               digit; else a symbol
// Kept as is: tabs and line ends part words only where they stand before a token; inside a word they
// belong to it, and so does a quote. A stray ")" at top level is a symbol. A literal takes what its word
// begins with (2x is 2, 0x10 is 16) and .5 and +1 are symbols.
//
// A fault is told on the standard error stream and ends the program: the root holds what came before it.
// A root is never null, and never nests a BeginNode. Neither the result nor the messages follow the
// process's locale. The text ends at its first NUL.
class LispParser : public Parser {
public:
    using Parser::Parser;
    Node* parseText(const HostString& text) override;
};

} // namespace nezaiva::expr
