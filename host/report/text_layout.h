// Text for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace ombrix {

// Breaks a text at blanks into lines of at most this many columns, each with the indent before it and a
// newline after it; a word that is longer stands alone. Newlines of the text are kept.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t columns);
// A label and its text in two aligned columns: the label at the indent, the text from textColumn on.
std::string labelled(std::string_view label, std::string_view text, std::size_t indent,
                     std::size_t textColumn, std::size_t columns);
// How many columns a text takes: its UTF-8 characters.
std::size_t columnsOf(std::string_view text);

} // namespace ombrix
