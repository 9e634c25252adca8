#include "host/scene/json_text.h"

#include "host/errors/errors.h"
#include "host/scene/json_values.h"

#include <fmt/format.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <sstream>
#include <system_error>
#include <vector>

namespace ombrix {

namespace {

using nlohmann::json;

// "line 3, column 7", both counted from 1, of the byte at an offset.
std::string lineAndColumn(std::string_view text, std::size_t offset)
{
    offset = std::min(offset, text.size());
    std::size_t line = 1, lineStart = 0;
    for (std::size_t i = 0; i < offset; ++i) {
        if (text[i] != '\n') continue;
        ++line;
        lineStart = i + 1;
    }
    return fmt::format("line {}, column {}", line, offset - lineStart + 1);
}

// Words that other languages have for values, and what JSON files here have for them.
struct ForeignWord {
    std::string_view word, instead;
};
constexpr ForeignWord kForeignWords[] = {
    {"nan", "\"nan\", with the quotes"},
    {"inf", "\"inf\", with the quotes"},
    {"infinity", "\"inf\", with the quotes"},
    {"-nan", "\"nan\", with the quotes"},
    {"-inf", "\"-inf\", with the quotes"},
    {"-infinity", "\"-inf\", with the quotes"},
    {"+inf", "\"inf\", with the quotes"},
    {"+infinity", "\"inf\", with the quotes"},
    {"true", "true"},
    {"false", "false"},
    {"none", "null"},
    {"undefined", "null"},
};

// The bare word around an offset: letters, with a sign in front.
std::string_view wordAround(std::string_view text, std::size_t offset)
{
    const auto isLetter = [&](std::size_t i) {
        return std::isalpha(static_cast<unsigned char>(text[i])) != 0;
    };
    const auto isPart = [&](std::size_t i) { return isLetter(i) || text[i] == '+' || text[i] == '-'; };
    offset = std::min(offset, text.size());
    std::size_t begin = offset, end = offset;
    while (begin > 0 && isPart(begin - 1))
        --begin;
    while (end < text.size() && isPart(end))
        ++end;
    return text.substr(begin, end - begin);
}

// What to write for the word at a fault; "" when it is none that is known.
std::string adviceForWord(std::string_view word)
{
    std::string plain(word);
    for (char& c : plain)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const ForeignWord& foreign : kForeignWords)
        if (foreign.word == plain && foreign.instead != word)
            return fmt::format("JSON has no {}; write {}", word, foreign.instead);
    return {};
}

// The length of the well-formed UTF-8 sequence at the start of the text; 0 when there is none.
std::size_t sequenceLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return 1;
    std::size_t length = 0;
    unsigned char lowest = 0x80, highest = 0xBF; // of the second byte: no overlong forms, no surrogates
    if (first >= 0xC2 && first <= 0xDF)
        length = 2;
    else if (first >= 0xE0 && first <= 0xEF)
        length = 3;
    else if (first >= 0xF0 && first <= 0xF4)
        length = 4;
    if (length == 0 || text.size() < length) return 0;
    if (first == 0xE0) lowest = 0xA0;
    if (first == 0xED) highest = 0x9F;
    if (first == 0xF0) lowest = 0x90;
    if (first == 0xF4) highest = 0x8F;
    if (byte(1) < lowest || byte(1) > highest) return 0;
    for (std::size_t i = 2; i < length; ++i)
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    return length;
}

// The offset of the first byte that is no UTF-8; the text's size when all is well.
std::size_t firstBadByte(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = sequenceLength(text.substr(i));
        if (length == 0) return i;
        i += length;
    }
    return i;
}

// What remains of the parser's message without its number, its own line and column, and what it was parsing.
std::string plainWords(std::string_view what)
{
    const auto cutAfter = [&](std::string_view mark) {
        if (const std::size_t end = what.find(mark); end != std::string_view::npos)
            what.remove_prefix(end + mark.size());
    };
    cutAfter("] ");
    if (what.starts_with("parse error")) cutAfter(": ");
    if (what.starts_with("syntax error")) cutAfter(" - ");
    std::string words(what);
    if (what.starts_with("unexpected ']'") || what.starts_with("unexpected '}'"))
        words += "; a value is missing, or there is a comma too many";
    if (what.starts_with("number overflow"))
        words += "; write \"inf\" or \"-inf\", with the quotes, for an infinity";
    return words;
}

struct TooDeep {};

// Follows the parser through objects and lists, and so knows where it is: the parser does not tell, nor does
// it mind a name that stands twice.
class PlaceWatch {
public:
    explicit PlaceWatch(Diagnostics& reports) : diagnostics(reports) {}

    // The parser's callback. Keeps every value. Throws TooDeep.
    bool operator()(int /*depth*/, json::parse_event_t event, json& parsed)
    {
        switch (event) {
        case json::parse_event_t::key:
            enterMember(parsed.get_ref<const std::string&>());
            break;
        case json::parse_event_t::value:
            countElement();
            break;
        case json::parse_event_t::object_start:
        case json::parse_event_t::array_start:
            countElement();
            if (levels.size() >= static_cast<std::size_t>(kDeepestNesting)) throw TooDeep{};
            levels.push_back({event == json::parse_event_t::array_start, 0, {}, {}});
            break;
        case json::parse_event_t::object_end:
        case json::parse_event_t::array_end:
            levels.pop_back();
            break;
        }
        return true;
    }

private:
    struct Level {
        bool isList;
        std::size_t elements;
        std::set<std::string> names;
        std::string name; // of the member that is being read
    };

    void countElement()
    {
        if (!levels.empty()) ++levels.back().elements;
    }
    void enterMember(const std::string& name)
    {
        Level& level = levels.back();
        level.name = name;
        if (!level.names.insert(name).second)
            diagnostics.error(path(), fmt::format("\"{}\" stands here twice; keep one of them", name));
    }
    std::string path() const
    {
        std::string result;
        for (const Level& level : levels)
            result += pointerStep(level.isList ? std::to_string(level.elements - 1) : level.name);
        return result;
    }

    Diagnostics& diagnostics;
    std::vector<Level> levels;
};

// A fault of the text at the byte of an offset, in the parser's words or in better ones.
void reportFault(std::string_view text, std::size_t offset, const json::exception& fault,
                 Diagnostics& diagnostics)
{
    std::string words = adviceForWord(wordAround(text, offset));
    if (words.empty()) words = plainWords(fault.what());
    diagnostics.error("", fmt::format("{}: {}", lineAndColumn(text, offset), words));
}

struct CloseFile {
    void operator()(std::FILE* file) const
    {
        if (file != stdin) std::fclose(file);
    }
};

} // namespace

std::optional<nlohmann::json> parseJsonText(std::string_view text, Diagnostics& diagnostics)
{
    const std::size_t bad = firstBadByte(text);
    if (bad < text.size()) {
        diagnostics.error("", fmt::format("{}: the byte 0x{:02x} is no UTF-8; save the file as UTF-8",
                                          lineAndColumn(text, bad), static_cast<unsigned char>(text[bad])));
        return {};
    }
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
        diagnostics.error("", "the file is empty; it has to hold a JSON object");
        return {};
    }
    // From a stream: where it stands tells the place of the faults that come without one.
    std::istringstream stream{std::string(text)};
    try {
        return json::parse(stream, PlaceWatch(diagnostics), true, true);
    } catch (const TooDeep&) {
        diagnostics.error("",
                          fmt::format("objects and lists are nested deeper than {} levels", kDeepestNesting));
    } catch (const json::parse_error& fault) {
        reportFault(text, fault.byte > 0 ? fault.byte - 1 : 0, fault, diagnostics);
    } catch (const json::out_of_range& fault) { // a number, which ends with a digit
        const auto read = stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
        reportFault(text, text.find_last_of("0123456789", static_cast<std::size_t>(read) - 1), fault,
                    diagnostics);
    }
    return {};
}

std::string readTextFile(const std::filesystem::path& file)
{
    const bool standardInput = file == "-";
    const std::string shown = standardInput ? "standard input" : file.string();
    std::error_code ignored;
    if (!standardInput && std::filesystem::is_directory(file, ignored))
        throw WorkError{fmt::format("cannot read {}: it is a folder", shown)};
    std::unique_ptr<std::FILE, CloseFile> stream(standardInput ? stdin : std::fopen(file.c_str(), "rb"));
    if (!stream) throw WorkError{fmt::format("cannot read {}: {}", shown, std::strerror(errno))};
    std::string text;
    char buffer[1 << 16];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stream.get()))
        text.append(buffer, count);
    if (std::ferror(stream.get()))
        throw WorkError{fmt::format("cannot read {}: {}", shown, std::strerror(errno))};
    return text;
}

} // namespace ombrix
