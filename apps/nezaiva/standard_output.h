// Standard output, where data goes.
#pragma once

#include <cstddef>
#include <string>

// Writes data to standard output. Throws ReaderGone, or WorkError when it does not take it all.
void writeToStandardOutput(const std::string& text);
// The columns of the terminal that standard output goes to, within what reads well; 100 without one.
std::size_t outputColumns();
