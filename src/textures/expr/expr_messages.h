// The words that the expression language and its evaluator say, and the way they say them.
#pragma once

#include <initializer_list>
#include <string_view>

namespace nezaiva::expr {

inline constexpr char kUnableToParse[] = "Unable to parse expression";
inline constexpr char kExpectedClosing[] = "Expected ')', got";
inline constexpr char kNestedTooDeep[] = "Expression nested deeper than 100 forms"; // kDeepestNesting
inline constexpr char kDifferentTypes[] = "Unable to compare nodes of different types";
inline constexpr char kCallFailed[] = "Error while calling ";
// Kept as is: the count follows without a blank (GpuExpression.ManipWithFewerThanTwoArgumentsFails).
inline constexpr char kManipArguments[] = "(manip) expects at least 2 arguments, got";
inline constexpr char kUndefinedVariable[] = "Undefined variable '";
inline constexpr char kVariableSyntax[] = "Syntax error in variable ";

// Writes "[ERR] ", the pieces and a line end to the standard error stream, and flushes it.
void reportError(std::initializer_list<std::string_view> pieces);

} // namespace nezaiva::expr
