#include "host/geometry/obj_check.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace ombrix {

namespace {

// What faces refer to: the kinds of a corner's indices, in the order in which it holds them.
struct ListKind {
    std::string_view keyword;
    const char* words;
    std::size_t numbers; // that a line of it holds at least
};
constexpr ListKind kLists[] = {{"v", "position", 3}, {"vt", "texture coordinate", 1}, {"vn", "normal", 3}};
constexpr std::size_t kListCount = std::size(kLists);

// The elements of each list: in the whole file, or up to a line.
using Counts = std::size_t[kListCount];

std::vector<std::string_view> wordsOf(std::string_view line)
{
    constexpr const char* kBlanks = " \t\r";
    std::vector<std::string_view> words;
    for (std::size_t begin = line.find_first_not_of(kBlanks); begin < line.size();) {
        const std::size_t end = std::min(line.find_first_of(kBlanks, begin), line.size());
        words.push_back(line.substr(begin, end - begin));
        begin = std::min(line.find_first_not_of(kBlanks, end), line.size());
    }
    return words;
}

// Calls with each line's number and words, comments left out, until it returns a text.
template <class Visit>
ObjFault visitLines(std::string_view text, const Visit& visit)
{
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        begin = end + 1;
        ++number;
        const std::vector<std::string_view> words = wordsOf(line.substr(0, line.find('#')));
        if (words.empty()) continue;
        if (std::string problem = visit(words); !problem.empty()) return {number, std::move(problem)};
    }
    return {};
}

bool isFiniteFloat(std::string_view word)
{
    if (word.starts_with('+')) word.remove_prefix(1);
    double number = 0.0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (end != word.data() + word.size() || error == std::errc::invalid_argument) return false;
    // Out of range: what is too small for a double counts as 0, which the number still holds.
    return error == std::errc::result_out_of_range
               ? word.find("e-") != word.npos || word.find("E-") != word.npos
               : std::fabs(number) <= static_cast<double>(std::numeric_limits<float>::max());
}

std::string numbersProblem(const std::vector<std::string_view>& words, const ListKind& list)
{
    if (words.size() - 1 < list.numbers)
        return fmt::format("a {} needs {} number{}, here {} {}", list.words, list.numbers,
                           list.numbers == 1 ? "" : "s", words.size() == 2 ? "is" : "are", words.size() - 1);
    for (std::size_t i = 1; i <= list.numbers; ++i)
        if (!isFiniteFloat(words[i])) return fmt::format("\"{}\" is no finite number", words[i]);
    return {};
}

std::string indexProblem(std::string_view word, const ListKind& list, std::size_t all, std::size_t sofar)
{
    std::int64_t index = 0;
    const char* end = word.data() + word.size();
    const auto [stopped, error] = std::from_chars(word.data(), end, index);
    if (error == std::errc::invalid_argument || stopped != end)
        return word.empty() ? fmt::format("the index of a {} is missing", list.words)
                            : fmt::format("\"{}\" is no index of a {}", word, list.words);
    const bool tooLong = error == std::errc::result_out_of_range, backwards = word.starts_with('-');
    if (index == 0 && !tooLong) return "indices count from 1, or from -1 backwards; 0 is none";
    const std::size_t known = backwards ? sofar : all;
    const auto furthest = static_cast<std::int64_t>(known);
    if (!tooLong && index >= -furthest && index <= furthest) return {};
    return fmt::format("there is no {} {}; the file has {}{}", list.words, word, known,
                       backwards ? " up to here" : "");
}

// A corner is POSITION, POSITION/COORDINATE, POSITION//NORMAL or POSITION/COORDINATE/NORMAL.
std::string cornerProblem(std::string_view corner, const Counts& all, const Counts& sofar)
{
    std::string_view rest = corner;
    for (std::size_t i = 0; i < kListCount; ++i) {
        const std::size_t slash = rest.find('/');
        const bool last = slash == rest.npos, mayBeEmpty = i == 1 && !last;
        const std::string_view index = rest.substr(0, slash);
        if (!index.empty() || !mayBeEmpty)
            if (std::string problem = indexProblem(index, kLists[i], all[i], sofar[i]); !problem.empty())
                return problem;
        if (last) return {};
        rest.remove_prefix(slash + 1);
    }
    return fmt::format("\"{}\" is no corner; write POSITION/COORDINATE/NORMAL", corner);
}

std::string faceProblem(const std::vector<std::string_view>& words, const Counts& all, const Counts& sofar)
{
    if (words.size() < 4)
        return fmt::format("a face needs 3 corners or more, here {} {}", words.size() == 2 ? "is" : "are",
                           words.size() - 1);
    for (std::size_t i = 1; i < words.size(); ++i)
        if (std::string problem = cornerProblem(words[i], all, sofar); !problem.empty()) return problem;
    return {};
}

void count(std::string_view keyword, Counts& counts)
{
    for (std::size_t i = 0; i < kListCount; ++i)
        if (keyword == kLists[i].keyword) ++counts[i];
}

} // namespace

ObjFault findObjFault(std::string_view text)
{
    // Faces may refer to what comes later, so all is counted first.
    Counts all = {}, sofar = {};
    visitLines(text, [&](const std::vector<std::string_view>& words) {
        count(words.front(), all);
        return std::string();
    });
    return visitLines(text, [&](const std::vector<std::string_view>& words) {
        count(words.front(), sofar);
        for (const ListKind& list : kLists)
            if (words.front() == list.keyword) return numbersProblem(words, list);
        return words.front() == "f" ? faceProblem(words, all, sofar) : std::string();
    });
}

} // namespace ombrix
