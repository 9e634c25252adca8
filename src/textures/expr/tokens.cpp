#include "textures/expr/tokens.h"

#include "textures/expr/expr_messages.h"

#include <clocale>
#include <cstdlib>
#include <locale.h>

namespace nezaiva::expr {

namespace {

// The C locale's isspace.
bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Unlike the standard's from_chars, which neither knows the prefix of a hexadecimal number nor tells a
// value that is too large from one that is too small, this is atof to the letter. Making the C locale
// allocates nothing.
double numberInCLocale(const char* text)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, nullptr, cLocale);
}

} // namespace

TokenList::TokenList(std::string_view text)
{
    text = text.substr(0, text.find('\0'));
    std::size_t i = 0;
    while (true) {
        while (i < text.size() && isSpace(text[i]))
            ++i;
        if (i == text.size()) return;
        const std::size_t begin = i;
        if (text[i] == '\'' || text[i] == '(' || text[i] == ')') {
            ++i;
        } else {
            // Only blanks and brackets end a word; tabs, line ends and quotes do not.
            while (i < text.size() && text[i] != ' ' && text[i] != '(' && text[i] != ')')
                ++i;
        }
        tokens.push_back(text.substr(begin, i - begin));
    }
}

void TokenList::reportTokens(std::string_view message) const
{
    OUtils::HostString rest = ":";
    for (std::size_t i = next; i < tokens.size(); ++i) {
        rest += ' ';
        rest += tokens[i];
    }
    reportError({message, rest});
}

bool isNumber(std::string_view token)
{
    if (token.empty()) return false;
    return isDigit(token[0]) || (token[0] == '-' && token.size() > 1 && isDigit(token[1]));
}

float readNumber(std::string_view token)
{
    const OUtils::HostString text(token); // ends where the token does
    return static_cast<float>(numberInCLocale(text.c_str()));
}

} // namespace nezaiva::expr
