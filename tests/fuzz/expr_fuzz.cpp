// Fuzzes the expression language from its text to the source. Run it with -close_fd_mask=2: faulty texts
// write error lines.

#include "fuzz/expr_exercise.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string fault = fuzz::exerciseExpression({reinterpret_cast<const char*>(data), size});
    if (fault.empty()) return 0;
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
}
