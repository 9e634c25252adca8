// From the text of a GPU expression to the tree that is written.
#pragma once

#include "textures/expr/gpu_variable.h"
#include "textures/expr/node.h"

#include <memory>
#include <string_view>

namespace nezaiva::expr::gpu {

// Parses the text, leaves of every "if" with a known condition the branch that is taken, and makes a
// constant list of every "color". The tree is new.
std::unique_ptr<Node> prepare(std::string_view text, const VariableVector& variables);

} // namespace nezaiva::expr::gpu
