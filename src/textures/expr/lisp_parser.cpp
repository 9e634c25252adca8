#include "textures/expr/expr_messages.h"
#include "textures/expr/parser.h"
#include "textures/expr/tokens.h"

#include <string_view>
#include <utility>

namespace nezaiva::expr {

namespace {

Node* parseAtom(std::string_view token)
{
    if (isNumber(token)) return new FloatingLiteralNode(readNumber(token));
    return new SymbolNode(HostString(token));
}

// A form whose ")" has not come yet.
struct OpenForm {
    bool quoted;
    std::string_view name;
    NodeVector nodes;
};

// Parses one expression. The forms around the token in hand are on a stack of their own, so that deep
// nesting is no danger.
class ExpressionParser {
public:
    explicit ExpressionParser(TokenList& tokenList) : tokens(tokenList) {}

    // The expression at the front of the tokens; null when there is none or it is faulty.
    Node* parseExpression()
    {
        do {
            if (!parseToken()) {
                failForms();
                return nullptr;
            }
        } while (!forms.empty());
        return result;
    }

private:
    // Takes one atom, or the opening of a form, and closes the forms that end behind it. False when the
    // tokens end, or the expression is faulty.
    bool parseToken()
    {
        if (tokens.empty()) return false;
        const bool quoted = tokens.front() == "'";
        if (quoted) tokens.take();
        if (tokens.empty()) return false;
        const std::string_view token = tokens.take();
        if (token != "(") return finish(parseAtom(token));
        if (quoted) {
            forms.push_back({true, {}, {}});
        } else {
            if (tokens.size() < 2) {
                tokens.reportTokens(kUnableToParse);
                return false;
            }
            forms.push_back({false, tokens.take(), {}});
        }
        return closeForms();
    }

    // Hands a node to the form around it, or makes it the result.
    bool finish(Node* node)
    {
        if (forms.empty()) {
            result = node;
            return true;
        }
        forms.back().nodes.push_back(node);
        return closeForms();
    }

    bool closeForms()
    {
        while (tokens.empty() || tokens.front() == ")") {
            Node* node = takeForm();
            if (tokens.empty()) {
                tokens.reportTokens(kExpectedClosing);
                delete node;
                return false;
            }
            tokens.take();
            if (forms.empty()) {
                result = node;
                return true;
            }
            forms.back().nodes.push_back(node);
        }
        return true;
    }

    Node* takeForm()
    {
        const OpenForm form = std::move(forms.back());
        forms.pop_back();
        if (form.quoted) return new ListNode(form.nodes);
        return new FunctionNode(HostString(form.name), form.nodes);
    }

    // Every form around a fault fails too, the innermost first, and says so.
    void failForms()
    {
        while (!forms.empty()) {
            deleteTrees(forms.back().nodes);
            forms.pop_back();
            tokens.reportTokens(kUnableToParse);
        }
    }

    TokenList& tokens;
    HostVector<OpenForm> forms;
    Node* result = nullptr;
};

} // namespace

Node* LispParser::parseText(const HostString& text)
{
    TokenList tokens(text);
    NodeVector expressions;
    while (Node* expression = ExpressionParser(tokens).parseExpression())
        expressions.push_back(expression);
    return new BeginNode(expressions);
}

} // namespace nezaiva::expr
