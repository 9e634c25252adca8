// The cloth texture: a weave of U threads and V threads over a gap colour, in two looks that share their
// numbers and nothing else.
//
// The accurate weave, at (u, v). B is the quadratic spline B(a, b, c; t) = a + b + ((a - 2b + c) t -
// 2 (a - b)) t, frac(x) = x - floor(x), r(i) = clothValue(i).
//
//   smooth(x, y): on the cells of 32 frac(x), 32 frac(y), B along x, then along y, over the 3 x 3
//   neighbours r(i & 31 | (j & 31) 32), times 0.25.
//   strand(n, p), along thread n: c = 32 frac(r(n) + p), i = max(trunc(c), 1), B(r(i - 1 & 31), r(i & 31),
//   r(i + 1 & 31); c - i). Kept as is: below 1, c - i is negative.
//
//   1. randomness > 0:  u += smooth(u / 22, v / 24) randomness,  v += smooth(u / 23, v / 23) randomness
//   2. u -= uWave sin(6.2831855 v),  v += vWave sin(6.2831855 u), both of the u and v before
//   3. uWidth += (strand(trunc(2u), v / 123.5) 0.25 - 0.5) widthSpread,
//      vWidth += (strand(trunc(2v) + 100, u / 123.5) 0.25 - 0.5) widthSpread
//   4. The threads cross in a checker of half units. Over is whether exactly one of frac(u), frac(v) is at
//      least 0.5. p is frac(2 frac(u)) of the width wp = uWidth and q that of v; over, the two are exchanged.
//   5. wq < q, wp < p:   the gap
//      wq < q, wp >= p:  over turns, r = ((2p / wp - 1)^2 + ((q - 1) - wq / 2)^2) 0.75
//      wq >= q:          r = ((p - wp / 2)^2 + (2q / wq - 1)^2) 0.75
//      Where r is below 1, the thread shows: U's over, V's otherwise.
//   6. t = min(1, (1 - r) ((s 0.25 - 0.5) brightSpread + 1)), s = strand(trunc(2u), v / 100) over, and
//      strand(trunc(2v) + 1000, v / 100) otherwise. Kept as is: v is the position along both.
//   7. gap (1 - t) + thread t, in all four channels.
//
// A thread of no width shows nowhere, not even on its axis.
//
// The legacy weave, at (u, v, w). n is gradientNoise3(u, v, w).
//
//   1. U = u - uWave sin(6.28318 v),  V = v + vWave sin(6.28318 u). Kept as is: the shorter constant.
//   2. randomness > 1e-5:    U += randomness n,  V += randomness n
//      brightSpread > 1e-5:  with b = (n + 1) 0.5 brightSpread, both threads become thread (1 - b) + gap b
//   3. widthSpread > 1e-5:   with m = (gradientNoise2(0.2 u, 0.2 v) + 1) 0.5 widthSpread, uWidth -= m,
//      vWidth -= widthSpread - m. Kept as is: the two share the spread between them.
//   4. x and y are the fractions of U and V, a and b half the widths. The first that holds:
//      x >= 0.5:  0.5 < y < b + 0.5   V thread  across b at y - 0.5  along (x - a) / (1 - a)
//                 0.5 < x < a + 0.5   U thread  across a at x - 0.5  along (y + 0.5 - b) / (1 - b), y < 0.5
//                                                                    along (y - 0.5 - b) / (1 - b), else
//                 y < b               V thread  across b at y        along (x - 0.5 - a) / (1 - a)
//      x < 0.5:   y < b               V thread  across b at y        along (x + 0.5 - a) / (1 - a)
//                 x < a               U thread  across a at x        along (y - b) / (1 - b)
//                 0.5 < y < b + 0.5   V thread  across b at y - 0.5  along (x - a) / (1 - a)
//      t = sqrt(1 - e^2) sin(3.1415927 along), with e the distance from the middle of what it lies across,
//      in halves of that. gap (1 - t) + thread t in all four channels; where none holds, the gap.
//
// All in single precision but the gradient noise. A coordinate that is not finite has the fraction 0 and
// lies in cell 0; numbers that are not finite may give NaN. Any thread, at once. The same bits with every
// instruction set.
#pragma once

#include <ombrix/types.h>

namespace nezaiva {

struct ClothColors {
    OUtils::AColor gap{0.0f, 0.0f, 0.0f, 1.0f};
    OUtils::AColor u{1.0f, 1.0f, 1.0f, 1.0f};
    OUtils::AColor v{0.0f, 0.0f, 0.0f, 1.0f};
};

struct ClothWeave {
    float uWidth = 0.75f, vWidth = 0.75f; // of the room that a thread has, 0..1
    float uWave = 0.0f, vWave = 0.0f;
    float randomness = 0.0f, widthSpread = 0.0f, brightSpread = 0.0f;
};

OUtils::AColor accurateCloth(float u, float v, const ClothWeave& weave, const ClothColors& colors);

OUtils::AColor legacyCloth(const OUtils::Vector& uvw, const ClothWeave& weave, const ClothColors& colors);

} // namespace nezaiva
