// The leather texture: cells with creases between them, in two looks that share their numbers and nothing
// else. Both give the colours' blend, and an alpha of their own.
//
// The current look sums blobs of a periodic lattice of 20 x 20 x 20 cells, with T = leatherTable and
// F = leatherFalloff.
//
//   1. cut = max(1 - threshold, 0.0001), scale = max(4 size, 0.0001), inv = 2 / max(density, 0.0001),
//      sp = spottyness / 2, rn = randomness / 2. On each axis c = 20 frac(uvw / scale), the cell is trunc(c),
//      f = c - cell.
//   2. The 27 cells around are walked along x, then y, then z. For the one at the offset (i, j, k), n is
//      (z 20 + y) 20 + x of its wrapped indices:
//        d = (f.x - i - (T[n] rn + 0.5), f.y - j - (T[n + 1] rn + 0.5), f.z - k - (T[n + 2] rn + 0.5))
//        D = (d.x^2 + d.y^2 + d.z^2) inv. From 1 on there is no blob.
//        e = T[n + 4] sp + (1 - sp). Up to 0 there is none either.
//        b = e (T[n + 3] sp + 0.5) F[trunc(255 D)]
//   3. A blob is added to the sum s, which begins at 0. But with creases and s above 0: where d = |s - b| is
//      below cut, two blobs meet, and s becomes 20 + d / cut, the mark of a crease; from d = 18 on, as behind
//      a mark, s stays. The marks depend on the order of the walk.
//   4. v is s - 20, held in 0..1, for a mark with creases; s / cut for an s below cut; 1 for any other s.
//   5. For v = 0 the crease colour with alpha 1, otherwise cell v + crease (1 - v) with alpha v. Kept as is:
//      alpha jumps at 0.
//
// The legacy look is a cellular noise of the two nearest features.
//
//   1. With T = threshold above 0.5, cut = T^3; otherwise T' = 2 T^2 and cut = 0.
//      p = uvw / max(0.2 size, 1e-9), dens = max(density, 1e-9). The cell is floor(p).
//   2. The cells around are walked in the order of cellSearchOrder, up to the first whose bound is not below
//   F2.
//      For the cell (X, Y, Z), in 32-bit unsigned integers:
//        h = (((X ^ Y ^ 8 X ^ Y >> 2) 0x202C3 - Y) + 3 Z) 0x127EFB9 + 0xEA996361
//        h = (h ^ 2 (h ^ Z)) 0x4C1 + 0xAB1CD9F
//        r1 = h / 2^32, and r2, r3 likewise after each h = next(h) = h 0x4C1 + 0xAB1CD9F
//        d.x = (r1 - 0.5) randomness + (0.5 - p.x) + X, and y, z likewise; D = d.x^2 + d.y^2 + d.z^2
//      F1 and F2 become the two smallest D below 1e10, the first come of equal ones; ra and rb are
//      next(h) / 2^32 of the two, of h = 0 where there is none.
//   3. v = 1 where 2 F1 >= dens. Otherwise, with a = ((ra - 0.75) 2 spottyness + 1) (1 - sqrt(2 F1 / dens))
//   and
//      b likewise of rb and F2: v = 1 - a where 2 F2 >= dens; with creases v = 1 - |b - a|, without
//      v = 1 - a - b.
//   4. T above 0.5: c = (v - cut) / (1 - cut) for v >= cut, 1 where that divides by 0, and 0 for other v.
//      Otherwise c = (0.5 - T') + (T' + 0.5) v. c is held in 0..1.
//   5. cell + (crease - cell) c with alpha 1 - c.
//
// All in single precision. A coordinate of a point that is not finite after its division counts as 0; numbers
// that are not finite may give NaN. Any thread, at once. The same bits with every instruction set.
#pragma once

#include <ombrix/types.h>

namespace nezaiva {

struct LeatherNumbers {
    float size = 0.5f;
    float density = 1.0f;
    float spottyness = 0.5f;
    float randomness = 0.5f;
    float threshold = 0.83f;
    bool creases = true;
};

// Their alpha does not count.
struct LeatherColors {
    OUtils::AColor cell{1.0f, 1.0f, 1.0f, 1.0f};
    OUtils::AColor crease{0.0f, 0.0f, 0.0f, 1.0f};
};

OUtils::AColor currentLeather(const OUtils::Vector& uvw, const LeatherNumbers& numbers,
                              const LeatherColors& colors);

OUtils::AColor legacyLeather(const OUtils::Vector& uvw, const LeatherNumbers& numbers,
                             const LeatherColors& colors);

} // namespace nezaiva
