#include "host/scene/json_text.h"

#include "host/errors/errors.h"
#include "host/scene/json_values.h"

#include <fmt/format.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
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

// Builds the value while it watches depth and repeated names, which the library's own builder does not.
class DocumentBuilder : public nlohmann::json_sax<json> {
public:
    DocumentBuilder(std::string_view source, Diagnostics& reports) : text(source), diagnostics(reports) {}

    json document;

    bool null() override { return put(json(nullptr)); }
    bool boolean(bool value) override { return put(json(value)); }
    bool number_integer(json::number_integer_t value) override { return put(json(value)); }
    bool number_unsigned(json::number_unsigned_t value) override { return put(json(value)); }
    bool number_float(json::number_float_t value, const std::string&) override { return put(json(value)); }
    bool string(std::string& value) override { return put(json(std::move(value))); }
    bool binary(json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(std::string& name) override
    {
        Level& level = levels.back();
        level.key = std::move(name);
        if (level.container->contains(level.key))
            diagnostics.error(path(), fmt::format("\"{}\" stands here twice; keep one of them", level.key));
        return true;
    }

    bool parse_error(std::size_t position, const std::string&, const json::exception& fault) override
    {
        const std::size_t offset = position > 0 ? position - 1 : 0;
        std::string words = adviceForWord(wordAround(text, offset));
        if (words.empty()) words = plainWords(fault.what());
        diagnostics.error("", fmt::format("{}: {}", lineAndColumn(text, offset), words));
        return false;
    }

private:
    struct Level {
        json* container;
        std::string key; // of the member that is being read
    };

    // What remains of the parser's message without its number, its own line and column, and what it was
    // parsing.
    static std::string plainWords(std::string_view what)
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

    std::string path() const
    {
        std::string result;
        for (const Level& level : levels)
            result += level.container->is_object() ? pointerStep(level.key)
                                                   : pointerStep(std::to_string(level.container->size() - 1));
        return result;
    }

    json* place(json&& value)
    {
        if (levels.empty()) {
            document = std::move(value);
            return &document;
        }
        Level& level = levels.back();
        if (level.container->is_array()) {
            level.container->push_back(std::move(value));
            return &level.container->back();
        }
        json& member = (*level.container)[level.key];
        member = std::move(value);
        return &member;
    }
    bool put(json&& value)
    {
        place(std::move(value));
        return true;
    }
    bool open(json&& empty)
    {
        if (levels.size() >= static_cast<std::size_t>(kDeepestNesting)) {
            diagnostics.error(
                "", fmt::format("objects and lists are nested deeper than {} levels", kDeepestNesting));
            return false;
        }
        levels.push_back({place(std::move(empty)), {}});
        return true;
    }
    bool close()
    {
        levels.pop_back();
        return true;
    }

    std::string_view text;
    Diagnostics& diagnostics;
    std::vector<Level> levels;
};

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
    DocumentBuilder builder(text, diagnostics);
    if (!json::sax_parse(text.begin(), text.end(), &builder, json::input_format_t::json, true, true))
        return {};
    return std::move(builder.document);
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
