#include "textures/expr/lisp_parser.h"

#include "textures/expr/expr_messages.h"
#include "textures/expr/tokens.h"

#include <string_view>
#include <utility>

namespace nezaiva::expr {

namespace {

// The rules of the grammar. Each takes its tokens from the front of the list, and gives null when it is
// faulty; what it had parsed of the expression is gone then.
class ExpressionParser {
public:
    explicit ExpressionParser(TokenList& tokenList) : tokens(tokenList) {}

    // Also null, without a fault, when no token is left.
    std::unique_ptr<Node> parseExpression()
    {
        if (tokens.empty()) return nullptr;
        const bool quoted = tokens.front() == "'";
        if (quoted) tokens.take();
        if (tokens.empty()) return nullptr;
        const std::string_view token = tokens.take();
        return token == "(" ? parseForm(quoted) : parseAtom(token);
    }

private:
    // What follows "(", with its ")". Every form around a fault fails too, the innermost first, and says so.
    std::unique_ptr<Node> parseForm(bool quoted)
    {
        if (nesting == kDeepestNesting) {
            tokens.reportTokens(kNestedTooDeep);
            tokens.drop(); // each form around this one would list them again
            return nullptr;
        }
        ++nesting;
        std::unique_ptr<Node> form = quoted ? parseList() : parseFunction();
        --nesting;
        if (!form) {
            tokens.reportTokens(kUnableToParse);
            return nullptr;
        }
        if (tokens.empty()) {
            tokens.reportTokens(kExpectedClosing);
            return nullptr;
        }
        tokens.take();
        return form;
    }

    std::unique_ptr<Node> parseFunction()
    {
        if (tokens.size() < 2) return nullptr;
        const std::string_view name = tokens.take();
        NodeVector args;
        if (!parseUntilClosing(args)) return nullptr;
        return std::make_unique<FunctionNode>(HostString(name), std::move(args));
    }

    std::unique_ptr<Node> parseList()
    {
        NodeVector children;
        if (!parseUntilClosing(children)) return nullptr;
        return std::make_unique<ListNode>(std::move(children));
    }

    // Up to a ")", which stays, or to the end. False when an expression is faulty.
    bool parseUntilClosing(NodeVector& nodes)
    {
        while (!tokens.empty() && tokens.front() != ")") {
            std::unique_ptr<Node> node = parseExpression();
            if (!node) return false;
            nodes.push_back(std::move(node));
        }
        return true;
    }

    static std::unique_ptr<Node> parseAtom(std::string_view token)
    {
        if (isNumber(token)) return std::make_unique<FloatingLiteralNode>(readNumber(token));
        return std::make_unique<SymbolNode>(HostString(token));
    }

    TokenList& tokens;
    int nesting = 0; // the forms that are open
};

} // namespace

std::unique_ptr<Node> LispParser::parseText(const HostString& text)
{
    TokenList tokens(text);
    ExpressionParser parser(tokens);
    NodeVector expressions;
    while (std::unique_ptr<Node> expression = parser.parseExpression())
        expressions.push_back(std::move(expression));
    return std::make_unique<BeginNode>(std::move(expressions));
}

} // namespace nezaiva::expr
