// The periodic lattice noises: quadratic B-splines through the random table on a grid of 32 cells.
//
// All have period 1 on every spatial axis. A coordinate above 1e9 counts as 0, and so does one that
// is not finite; below -1e9 there is no such guard. Any thread, at once. The results are the same
// bits with every instruction set.
//
// The forms with `tables` read the given tables; the others read the active ones.
#pragma once

#include "kernels/noises/random_tables.h"

#include <cstdint>

namespace nezaiva {

// Two dimensions, in -1..1. The coordinates are narrowed to float first.
float latticeNoise2(double x, double y);
float latticeNoise2(const NoiseTables& tables, double x, double y);

// Three dimensions, in -1..1. For coordinates that hold a float the guard above 1e9 changes nothing:
// such floats are whole.
float latticeNoise3(double x, double y, double z);
float latticeNoise3(const NoiseTables& tables, double x, double y, double z);

// Three dimensions whose values run through a pseudo-random sequence with w, in -1..1. The period in
// w is 1, divided into min(period, 60000) steps; a period of 0 stands still. A negative period reads
// the table at the magnitude of its indices.
float latticeNoise4(double x, double y, double z, double w, std::int32_t period);
float latticeNoise4(const NoiseTables& tables, double x, double y, double z, double w, std::int32_t period);

} // namespace nezaiva
