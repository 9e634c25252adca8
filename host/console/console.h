// Standard error, which the log and the progress displays share: lines that stay, and on a terminal one
// line below them that changes. All of it is thread-safe.
#pragma once

#include <string_view>

namespace ombrix {

// How much is said. Quiet shows errors alone, Verbose adds informations and the debugger channel.
enum class Verbosity { Quiet, Normal, Verbose };
void setVerbosity(Verbosity verbosity);
Verbosity verbosity();

// Writes a line as it stands, whatever the verbosity; a changing line is wiped first. Where standard error
// is closed or full the line is lost; the exit code still tells that something went wrong.
void writeErrorLine(std::string_view line);

bool standardErrorIsTerminal();
// The width of the terminal that standard error is; 80 where it does not tell.
int terminalColumns();
// Puts text into the changing line, in place of what stood there. It has no line end, and fits the
// terminal's width. On a terminal alone.
void showChangingLine(std::string_view text);
// Wipes the changing line, if one stands.
void clearChangingLine();

} // namespace ombrix
