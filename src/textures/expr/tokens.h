// The words of the expression language.
#pragma once

#include <ombrix/memory.h>

#include <cstddef>
#include <string_view>

namespace nezaiva::expr {

// The tokens that are still to be parsed. They point into the text they were made from.
class TokenList {
public:
    // Up to the first NUL of the text.
    explicit TokenList(std::string_view text);

    bool empty() const { return next == tokens.size(); }
    std::size_t size() const { return tokens.size() - next; }
    // The two need a list that is not empty.
    std::string_view front() const { return tokens[next]; }
    std::string_view take() { return tokens[next++]; }
    // Takes all tokens left.
    void drop() { next = tokens.size(); }
    // Writes an error line: the message, ":", and all tokens left, each after a blank.
    void reportTokens(std::string_view message) const;

private:
    OUtils::HostVector<std::string_view> tokens;
    std::size_t next = 0;
};

// Whether a token is written as a number: a decimal digit, or "-" and a decimal digit, begin it.
bool isNumber(std::string_view token);
// The number that a token begins with, in double precision and narrowed: decimal or hexadecimal, as the
// C library's atof reads it in the C locale. Too large gives infinity, too small zero.
float readNumber(std::string_view token);

} // namespace nezaiva::expr
