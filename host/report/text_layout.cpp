#include "host/report/text_layout.h"

#include <algorithm>

namespace ombrix {

std::size_t columnsOf(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

namespace {

void appendParagraph(std::string_view text, std::size_t indent, std::size_t columns, std::string& result)
{
    std::size_t used = 0;
    const auto beginLine = [&] {
        result.append(indent, ' ');
        used = indent;
    };
    beginLine();
    bool lineIsEmpty = true;
    for (std::size_t start = 0; start < text.size();) {
        start = text.find_first_not_of(' ', start);
        if (start == std::string_view::npos) break;
        const std::size_t end = std::min(text.find(' ', start), text.size());
        const std::string_view word = text.substr(start, end - start);
        start = end;
        const std::size_t width = columnsOf(word);
        if (!lineIsEmpty && used + 1 + width > columns) {
            result += '\n';
            beginLine();
            lineIsEmpty = true;
        }
        if (!lineIsEmpty) {
            result += ' ';
            ++used;
        }
        result += word;
        used += width;
        lineIsEmpty = false;
    }
    result += '\n';
}

} // namespace

std::string wrapped(std::string_view text, std::size_t indent, std::size_t columns)
{
    std::string result;
    while (true) {
        const std::size_t end = text.find('\n');
        appendParagraph(text.substr(0, end), indent, columns, result);
        if (end == std::string_view::npos) return result;
        text.remove_prefix(end + 1);
    }
}

std::string labelled(std::string_view label, std::string_view text, std::size_t indent,
                     std::size_t textColumn, std::size_t columns)
{
    std::string result = wrapped(text, textColumn, columns);
    const std::size_t labelEnd = indent + columnsOf(label);
    if (labelEnd >= textColumn) return std::string(indent, ' ').append(label) + '\n' + result;
    result.replace(indent, labelEnd - indent, label);
    return result;
}

} // namespace ombrix
