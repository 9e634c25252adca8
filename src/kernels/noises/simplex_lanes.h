// The simplex arithmetic in registers of four floats, for the sources of simplex noise alone.
//
// Everything here has internal linkage: each instruction set compiles a body of its own from the same
// operations in the same order, and so gives the same bits.
#pragma once

#ifdef __SSE4_1__
#include <smmintrin.h>
#else
#include <emmintrin.h>
#endif

namespace {

#ifdef __SSE4_1__
inline __m128 floorOf(__m128 v)
{
    return _mm_floor_ps(v);
}
#else
inline __m128 choose(__m128 mask, __m128 yes, __m128 no)
{
    return _mm_or_ps(_mm_and_ps(mask, yes), _mm_andnot_ps(mask, no));
}

inline __m128 floorOf(__m128 v)
{
    const __m128 signBit = _mm_set1_ps(-0.0f);
    // From 2^23 on every float is whole; the comparison also lets a NaN through.
    const __m128 hasFraction = _mm_cmplt_ps(_mm_andnot_ps(signBit, v), _mm_set1_ps(8388608.0f));
    const __m128 truncated = _mm_cvtepi32_ps(_mm_cvttps_epi32(v));
    const __m128 above = _mm_and_ps(_mm_cmpgt_ps(truncated, v), _mm_set1_ps(1.0f));
    const __m128 whole = _mm_or_ps(_mm_sub_ps(truncated, above), _mm_and_ps(signBit, v));
    return choose(hasFraction, whole, v);
}
#endif

inline __m128 fractionOf(__m128 v)
{
    return _mm_sub_ps(v, floorOf(v));
}

// The square of a - floor(a / 71) * 71 + k, with the reciprocal rounded to float.
inline __m128 squaredHash(__m128 a, __m128 k)
{
    const __m128 turns = floorOf(_mm_mul_ps(_mm_set1_ps(0.014084507f), a));
    const __m128 m = _mm_add_ps(_mm_sub_ps(a, _mm_mul_ps(turns, _mm_set1_ps(71.0f))), k);
    return _mm_mul_ps(m, m);
}

inline __m128 firstRandom(__m128 h)
{
    return fractionOf(_mm_mul_ps(h, _mm_set1_ps(0.0010513747f)));
}

inline __m128 secondRandom(__m128 h)
{
    return fractionOf(_mm_mul_ps(h, _mm_set1_ps(0.0015553312f)));
}

// What corners with hash h and offset (dx, dy) from the point add to the noise.
inline __m128 contribution(__m128 h, __m128 dx, __m128 dy)
{
    const __m128 gx = _mm_sub_ps(firstRandom(h), _mm_set1_ps(0.49999f));
    const __m128 gy = _mm_sub_ps(secondRandom(h), _mm_set1_ps(0.49999f));
    const __m128 squared = _mm_add_ps(_mm_mul_ps(dx, dx), _mm_mul_ps(dy, dy));
    const __m128 w = _mm_max_ps(_mm_sub_ps(_mm_set1_ps(0.5f), squared), _mm_setzero_ps());
    const __m128 w2 = _mm_mul_ps(w, w);
    const __m128 dot = _mm_add_ps(_mm_mul_ps(dx, gx), _mm_mul_ps(dy, gy));
    const __m128 length = _mm_sqrt_ps(_mm_add_ps(_mm_mul_ps(gx, gx), _mm_mul_ps(gy, gy)));
    return _mm_div_ps(_mm_mul_ps(_mm_mul_ps(w2, w2), dot), length);
}

// The cell of one point: the hashes of its corners in the order (0,0), (1,0), (1,1), (0,1), and the
// first corner minus the point, in every lane.
struct SimplexCell {
    __m128 hashes, dx, dy;
};

inline SimplexCell cellOf(float skewedX, float skewedY)
{
    const __m128 point = _mm_setr_ps(skewedX, skewedY, skewedX, skewedY);
    const __m128 swapped = _mm_shuffle_ps(point, point, _MM_SHUFFLE(2, 3, 0, 1));
    const __m128 s = _mm_mul_ps(_mm_add_ps(point, swapped), _mm_set1_ps(0.36602542f));
    const __m128 cell = floorOf(_mm_add_ps(point, s));
    const __m128 corners = _mm_add_ps(cell, _mm_setr_ps(0.0f, 0.0f, 1.0f, 1.0f));
    const __m128 squares = squaredHash(corners, _mm_setr_ps(26.0f, 161.0f, 26.0f, 161.0f));
    const __m128 turned = _mm_shuffle_ps(squares, squares, _MM_SHUFFLE(0, 3, 2, 1));
    const __m128 sum = _mm_add_ps(cell, _mm_shuffle_ps(cell, cell, _MM_SHUFFLE(2, 3, 0, 1)));
    const __m128 t = _mm_mul_ps(sum, _mm_set1_ps(0.21132487f));
    const __m128 d = _mm_sub_ps(_mm_sub_ps(cell, t), point);
    return {_mm_mul_ps(squares, turned), _mm_shuffle_ps(d, d, 0x00), _mm_shuffle_ps(d, d, 0x55)};
}

// One point, a lane for each corner.
inline float simplexOne(float x, float y)
{
    const SimplexCell cell = cellOf(x * 0.70710677f, y * 0.70710677f);
    const __m128 dx = _mm_add_ps(cell.dx, _mm_setr_ps(0.0f, 0.7886751f, 0.57735026f, -0.21132487f));
    const __m128 dy = _mm_add_ps(cell.dy, _mm_setr_ps(0.0f, -0.21132487f, 0.57735026f, 0.7886751f));
    const __m128 terms = contribution(cell.hashes, dx, dy);
    const __m128 crossed = _mm_shuffle_ps(terms, terms, _MM_SHUFFLE(2, 3, 0, 1));
    // Of the two middle corners one counts: lane 1 above the diagonal, lane 3 below it.
    const bool above = _mm_comigt_ss(cell.dy, cell.dx) != 0;
    const float first = _mm_cvtss_f32(terms);
    const float middle = above ? _mm_cvtss_f32(crossed) : _mm_cvtss_f32(_mm_movehl_ps(crossed, crossed));
    const float last = _mm_cvtss_f32(_mm_movehl_ps(terms, terms));
    return (first + middle + last) * 99.20434f;
}

// Four points, a lane for each.
inline __m128 simplexFour(__m128 x, __m128 y)
{
    const __m128 one = _mm_set1_ps(1.0f);
    const __m128 k26 = _mm_set1_ps(26.0f);
    const __m128 k161 = _mm_set1_ps(161.0f);
    const __m128 px = _mm_mul_ps(x, _mm_set1_ps(0.70710677f));
    const __m128 py = _mm_mul_ps(y, _mm_set1_ps(0.70710677f));
    const __m128 s = _mm_mul_ps(_mm_add_ps(px, py), _mm_set1_ps(0.36602542f));
    const __m128 ix = floorOf(_mm_add_ps(px, s));
    const __m128 iy = floorOf(_mm_add_ps(s, py));
    const __m128 a = squaredHash(ix, k26);
    const __m128 b = squaredHash(iy, k161);
    const __m128 c = squaredHash(_mm_add_ps(ix, one), k26);
    const __m128 d = squaredHash(_mm_add_ps(iy, one), k161);
    const __m128 t = _mm_mul_ps(_mm_add_ps(ix, iy), _mm_set1_ps(0.21132487f));
    const __m128 dx = _mm_sub_ps(_mm_sub_ps(ix, t), px);
    const __m128 dy = _mm_sub_ps(_mm_sub_ps(iy, t), py);

    const __m128 above = _mm_cmpgt_ps(dy, dx);
    const auto pick = [above](__m128 yes, __m128 no) {
        return _mm_or_ps(_mm_and_ps(above, yes), _mm_andnot_ps(above, no));
    };
    const __m128 far = _mm_set1_ps(0.7886751f);
    const __m128 near = _mm_set1_ps(-0.21132487f);
    const __m128 diagonal = _mm_set1_ps(0.57735026f);
    const __m128 first = contribution(_mm_mul_ps(a, b), dx, dy);
    const __m128 middle = contribution(_mm_mul_ps(pick(b, a), pick(c, d)), _mm_add_ps(dx, pick(far, near)),
                                       _mm_add_ps(dy, pick(near, far)));
    const __m128 last = contribution(_mm_mul_ps(c, d), _mm_add_ps(dx, diagonal), _mm_add_ps(dy, diagonal));
    return _mm_mul_ps(_mm_add_ps(_mm_add_ps(first, middle), last), _mm_set1_ps(99.20434f));
}

// The jitter of a feature point on one axis: r in 0..1 is the random number.
inline __m128 jitterOf(__m128 r)
{
    const __m128 a = _mm_sub_ps(_mm_mul_ps(_mm_set1_ps(2.0f), r), _mm_set1_ps(1.0f));
    const __m128 positive = _mm_and_ps(_mm_cmpgt_ps(a, _mm_setzero_ps()), _mm_set1_ps(1.0f));
    const __m128 negative = _mm_and_ps(_mm_cmplt_ps(a, _mm_setzero_ps()), _mm_set1_ps(1.0f));
    const __m128 cube = _mm_mul_ps(_mm_mul_ps(a, a), a);
    return _mm_mul_ps(_mm_sub_ps(cube, _mm_sub_ps(positive, negative)), _mm_set1_ps(0.14942925f));
}

// The smallest squared distance from the point to the four corners' feature points.
inline float cellularOne(float x, float y, float frequency)
{
    const SimplexCell cell = cellOf(x * frequency * 0.70710677f, y * frequency * 0.70710677f);
    const __m128 stretch = _mm_set1_ps(1.4142135f);
    const __m128 dx = _mm_add_ps(_mm_mul_ps(cell.dx, stretch), jitterOf(firstRandom(cell.hashes)));
    const __m128 dy = _mm_add_ps(_mm_mul_ps(cell.dy, stretch), jitterOf(secondRandom(cell.hashes)));
    const __m128 fx = _mm_add_ps(dx, _mm_setr_ps(0.0f, 1.115355f, 0.81649655f, -0.2988585f));
    const __m128 fy = _mm_add_ps(dy, _mm_setr_ps(0.0f, -0.2988585f, 0.81649655f, 1.115355f));
    const __m128 squared = _mm_add_ps(_mm_mul_ps(fx, fx), _mm_mul_ps(fy, fy));
    // min(a, b) of the processor is a < b ? a : b. The order is that of the corners' names.
    const __m128 second = _mm_shuffle_ps(squared, squared, 0x55);
    const __m128 third = _mm_shuffle_ps(squared, squared, 0xFF);
    const __m128 fourth = _mm_movehl_ps(squared, squared);
    return _mm_cvtss_f32(_mm_min_ss(fourth, _mm_min_ss(third, _mm_min_ss(second, squared))));
}

} // namespace
