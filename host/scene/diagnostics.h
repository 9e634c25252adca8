// Errors of a file's contents, gathered and printed one a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

class Diagnostics {
public:
    static constexpr int kShownErrors = 20, kShownWarnings = 20;

    explicit Diagnostics(std::string fileName) : file(std::move(fileName)) {}

    // path: a JSON pointer such as "/plugins/cloth/params/u_colour", or "" for the whole file. text says
    // what is wrong and what to write instead.
    void error(std::string_view path, std::string_view text);
    void warning(std::string_view path, std::string_view text);

    bool failed() const { return errorCount > 0; }
    int errors() const { return errorCount; }
    // "error: FILE: PATH: TEXT" and "warning: ..." lines on standard error, in their order, up to
    // kShownErrors and kShownWarnings of them, and then a line that counts the rest.
    void print() const;
    const std::vector<std::string>& lines() const { return texts; }

private:
    std::string file;
    std::vector<std::string> texts;
    int errorCount = 0, warningCount = 0;
};

// The name among the candidates that a person may have meant, or "" when none is near.
std::string nearestName(std::string_view wanted, const std::vector<std::string>& candidates);

} // namespace ombrix
