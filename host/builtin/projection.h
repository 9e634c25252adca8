// How an image is laid on a point of space: the six projections of Maya's projection node, on plain values.
//
// All work in the space of the projector, a cube from -1 to 1 on every axis, seen from +z with +y up. The
// image is the unit square: u runs to the right, v up, and (0.5, 0.5) lies in the middle. Angles are in
// radians. Functions are pure and run on any thread.
//
// Gradients are those of the formulas themselves: an angle's jump at the back of a sphere and the edge
// between two faces do not show in them. At a place where an angle has no direction (the axis of a sphere
// or a cylinder, the back of a ball, the centre) the angle counts as 0 and its gradient as 0, so all
// results are finite for a finite point.
#pragma once

#include "host/geometry/vector_math.h"

namespace ombrix {

struct ProjectedPoint {
    float u = 0.5f, v = 0.5f;
    Vector gradientU, gradientV; // the change of u and v with the point
};

// Along z, at any depth: -1 to 1 on x and y maps to 0 to 1.
ProjectedPoint projectPlanar(const Vector& p);

// By longitude about y, 0 at +z and growing towards +x, and latitude above the xz plane. The image spans
// angleU of the first and angleV of the second, with its middle at +z.
ProjectedPoint projectSpherical(const Vector& p, float angleU, float angleV);

// u as that of a sphere, v as that of a plane.
ProjectedPoint projectCylindrical(const Vector& p, float angleU);

// As a wrapper around a sweet: the middle of the image lies on +z, and the circle of radius 0.5 around it is
// gathered at -z. Directions keep their angle around z; the distance from the middle grows evenly with the
// angle to +z (the azimuthal equidistant map).
ProjectedPoint projectBall(const Vector& p);

// A plane for each face of the cube, each seen the right way round from outside: +z and -z with x to the
// right and the left, +x and -x with z to the left and the right, +y with -z up and -y with z up. The face is
// that of the point's component of the largest size; of equal ones x comes before y, and y before z.
ProjectedPoint projectCubic(const Vector& p);

// A plane for each axis, the right way round from the positive side and mirrored on the other. The axis is
// that of the normal's component of the largest size, in the order of ties of the cube.
ProjectedPoint projectTriPlanar(const Vector& p, const Vector& normal);

} // namespace ombrix
