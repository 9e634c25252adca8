#include "textures/expr/expr_messages.h"

#include <ombrix/memory.h>

#include <cstdio>

namespace nezaiva::expr {

void reportError(std::initializer_list<std::string_view> pieces)
{
    // One write, so that lines of two threads do not mix.
    OUtils::HostString line = "[ERR] ";
    for (const std::string_view piece : pieces)
        line += piece;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

} // namespace nezaiva::expr
