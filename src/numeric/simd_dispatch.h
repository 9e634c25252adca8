// The run-time choice of instruction set.
//
// Every kernel gives the same bits with every instruction set; the choice is one of speed alone. It
// is made once, when the library is loaded, from what the processor and the system offer.
#pragma once

#include <atomic>

namespace nezaiva {

enum class InstructionSet {
    Baseline, // what every x86-64 processor has
    Avx2,
};

namespace detail {
extern std::atomic<bool> avx2Chosen;
}

// The kernels' question, asked at every call: one relaxed load. Any thread.
static inline bool hasAvx2()
{
    return detail::avx2Chosen.load(std::memory_order_relaxed);
}

// Of the same table of functions for either instruction set the one that is chosen; numeric/lanes.h says
// how a kernel makes such tables. Any thread.
template <class Functions>
static inline const Functions& chosen(const Functions& base, const Functions& avx2)
{
    return hasAvx2() ? avx2 : base;
}

// What the processor offers at best, whatever is chosen.
InstructionSet bestInstructionSet();

// Chooses for the whole process; for tests and benchmarks, while no other thread evaluates. Returns
// false, and changes nothing, when the processor lacks the set.
bool setInstructionSet(InstructionSet set);

} // namespace nezaiva
