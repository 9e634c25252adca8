#include "numeric/simd_dispatch.h"

namespace nezaiva {

namespace detail {
// Constant-initialised: a kernel that runs before the choice below gives the same bits, only slower.
constinit std::atomic<bool> avx2Chosen{false};
} // namespace detail

InstructionSet bestInstructionSet()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") ? InstructionSet::Avx2 : InstructionSet::Baseline;
}

bool setInstructionSet(InstructionSet set)
{
    if (set == InstructionSet::Avx2 && bestInstructionSet() != InstructionSet::Avx2) return false;
    detail::avx2Chosen.store(set == InstructionSet::Avx2, std::memory_order_relaxed);
    return true;
}

namespace {
[[maybe_unused]] const bool kChosenAtLoad = setInstructionSet(bestInstructionSet());
} // namespace

} // namespace nezaiva
