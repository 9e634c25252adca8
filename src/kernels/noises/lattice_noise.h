// The periodic lattice noises: uniform quadratic B-splines through the random table.
//
// A unit of each axis of space has 32 cells, and is a period. For a coordinate d
//
//     f = 32 float(d - floor(d))      cell = trunc(f)      t = f - cell
//
// and the grid points cell - 1, cell and cell + 1, modulo 32, have the weights
//
//     (1 - t)^2 / 2      1/2 + t - t^2      t^2 / 2
//
// The random table holds the grid point (x, y, z) in its entry x | y << 5 | z << 10, the value v in -1..1.
// The noise is the sum of the values of 9 or 27 points, each times the product of its weights on all axes.
//
// With time, a value v runs through a pseudo-random sequence of the period p = min(period, 60000) in units
// of w. With f = p float(w - floor(w)), i = trunc(f), t = f - i and the weights above, which are w0, w1, w2,
// it is
//
//     2 (w0 s(i) + w1 s(i + 1) + w2 s(i + 2)) - 1      s(k) = frac((random(k) + 1) 21568.16 (v + 2))
//
// where frac(a) = a - trunc(a), random(k) is entry |k| modulo 65535 and every operation of s is rounded to
// float. Its spline in space is as without time.
//
// A coordinate above 1e9 counts as 0, and so does one that is not finite; below -1e9 there is no such guard.
// Any thread, at once. The results are the same bits with every instruction set.
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
// w is 1; a period of 0 stands still. A negative period reads the table at the magnitude of its indices.
float latticeNoise4(double x, double y, double z, double w, std::int32_t period);
float latticeNoise4(const NoiseTables& tables, double x, double y, double z, double w, std::int32_t period);

} // namespace nezaiva
