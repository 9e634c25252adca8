// LispParser: the text form of the expression language.
//
//   program     any number of expressions
//   expression  "(" head expression ... ")"     a FunctionNode
//               "'" "(" expression ... ")"      a ListNode
//               word, or "'" word               a literal if it begins with a digit, or with "-" and a
//                                               digit; else a symbol
//
// Kept as is: tabs and line ends part words only where they stand before a token; inside a word they
// belong to it, and so does a quote. A stray ")" at top level is a symbol. A literal takes what its word
// begins with (2x is 2, 0x10 is 16), and .5 and +1 are symbols. Each has a row in lisp_parser_test.
#pragma once

#include "textures/expr/parser.h"

namespace nezaiva::expr {

// The most forms that may stand within each other; a plug-in's expression has up to five. All that is done
// with a tree recurses, and its dearest walk takes 400 bytes of stack a level, with the address sanitizer
// 3.5 KiB. So the deepest tree fits a thread of 512 KiB in every build, and is no burden at the end of a long
// chain of textures, where a source is written on what stack the chain has left.
inline constexpr int kDeepestNesting = 100;

// A fault, too deep a nesting among them, is told on the standard error stream and ends the program: the
// root holds what came before it. A root is never null, and never nests a BeginNode. Neither the result nor
// the messages follow the process's locale. The text ends at its first NUL.
class LispParser : public Parser {
public:
    using Parser::Parser;
    std::unique_ptr<Node> parseText(const HostString& text) override;
};

} // namespace nezaiva::expr
