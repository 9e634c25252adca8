#include "host/scene/diagnostics.h"

#include "host/console/console.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <numeric>

namespace ombrix {

namespace {

constexpr std::size_t kLongestLine = 600;
constexpr std::size_t kLongestComparedName = 80;

// One line of a bounded length, whatever a file's names and texts hold.
std::string singleLine(std::string_view text)
{
    std::string line;
    for (const char c : text) {
        if (line.size() > kLongestLine) {
            // Never end within a UTF-8 sequence.
            while (!line.empty() && (static_cast<unsigned char>(line.back()) & 0xC0) == 0x80)
                line.pop_back();
            if (!line.empty() && static_cast<unsigned char>(line.back()) >= 0xC0) line.pop_back();
            return line + "...";
        }
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F)
            line += fmt::format("\\x{:02x}", byte);
        else
            line += c;
    }
    return line;
}

std::string lowered(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

// Insertions, deletions, replacements and swaps of neighbours that turn a into b.
std::size_t editDistance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> beforeLast(b.size() + 1), last(b.size() + 1), current(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                current[j] = std::min(current[j], beforeLast[j - 2] + 1);
        }
        std::swap(beforeLast, last);
        std::swap(last, current);
    }
    return last[b.size()];
}

} // namespace

void Diagnostics::error(std::string_view path, std::string_view text)
{
    ++errorCount;
    if (errorCount > kShownErrors) return;
    const std::string place = path.empty() ? std::string() : singleLine(path) + ": ";
    texts.push_back(fmt::format("error: {}: {}{}", file, place, singleLine(text)));
}

void Diagnostics::warning(std::string_view path, std::string_view text)
{
    if (++warningCount > kShownWarnings) return;
    const std::string place = path.empty() ? std::string() : singleLine(path) + ": ";
    texts.push_back(fmt::format("warning: {}: {}{}", file, place, singleLine(text)));
}

void Diagnostics::print() const
{
    for (const std::string& line : texts) {
        if (verbosity() == Verbosity::Quiet && line.starts_with("warning: ")) continue;
        writeErrorLine(line);
    }
    const auto countRest = [&](const char* what, int unshown) {
        if (unshown > 0)
            writeErrorLine(fmt::format("{0}: {1}: {2} more {0}{3} not shown", what, file, unshown,
                                       unshown == 1 ? " is" : "s are"));
    };
    if (verbosity() != Verbosity::Quiet) countRest("warning", warningCount - kShownWarnings);
    countRest("error", errorCount - kShownErrors);
}

std::string nearestName(std::string_view wanted, const std::vector<std::string>& candidates)
{
    if (wanted.empty() || wanted.size() > kLongestComparedName) return {};
    const std::string plain = lowered(wanted);
    const std::size_t furthest = std::max<std::size_t>(1, plain.size() / 3);
    std::string nearest, containing;
    std::size_t smallest = furthest + 1;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > kLongestComparedName) continue;
        const std::string name = lowered(candidate);
        if (containing.empty() && plain.size() >= 4 && name.find(plain) != std::string::npos)
            containing = candidate;
        const std::size_t longer = std::max(name.size(), plain.size());
        if (longer - std::min(name.size(), plain.size()) >= smallest) continue;
        const std::size_t distance = editDistance(plain, name);
        if (distance >= longer) continue; // nothing in common
        if (distance < smallest) {
            smallest = distance;
            nearest = candidate;
        }
    }
    return nearest.empty() ? containing : nearest;
}

} // namespace ombrix
