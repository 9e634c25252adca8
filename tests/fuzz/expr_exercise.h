// What must hold of every text of the expression language, however faulty: shared by the fuzzer and by
// the tests that replay its corpus.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

// Parses, prints, copies, compares, reprints and evaluates the text. Returns what did not hold, empty
// when all did. Writes the text's error lines to the standard error stream.
std::string exerciseExpression(std::string_view text);

} // namespace fuzz
