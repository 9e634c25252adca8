// The shapes that a scene can ask for by name.
#pragma once

#include "host/geometry/mesh_data.h"

namespace ombrix {

// Numbers of the parameter "shape" of a Mesh.
enum class Shape : int {
    None = 0,
    Sphere = 1,     // radius 1
    Plane = 2,      // -1 to 1 along x and z, facing up
    Cube = 3,       // -1 to 1
    Torus = 4,      // around y, from 0.5 to 1 of radius
    ShaderBall = 5, // a ball of radius 1 around the origin with a groove, on a foot that ends at y = -1.35
    ShaderBallShell = 6, // what of it carries the look
    ShaderBallBase = 7,  // its groove and foot
    Backdrop = 8,        // a ground at y = 0 that bends up behind: 32 wide, from z = 12 to a wall at z = -6
};

// "enum=(...)" of these numbers and names.
const char* shapeMetadata();

// The mesh of a shape, with normals and coordinates in map channel 1, "map1". A number that is none of
// the above, and None, give a mesh without positions.
//
// Sphere, Plane, Cube, Torus and ShaderBall: u runs to the right and v up, seen from outside; the seam
// of the turned ones lies at the back (-z). Each side of the cube has the whole unit square.
MeshData makeShape(Shape shape);

// One point of an outline to be turned on a lathe around the y axis.
struct LathePoint {
    float radius, height;
    float v; // the coordinate along the outline
};

// Turns an outline that runs upwards on the outside; a radius of 0 is a pole. closedOutline joins the
// last point to the first, whose v is then 1 there. Corners of over creaseAngle degrees stay sharp.
MeshData turnOnLathe(const std::vector<LathePoint>& outline, int segments, bool closedOutline,
                     float creaseAngle);

// The outlines of the shader ball's parts, from the bottom up, each with v from 0 to 1. Both together
// make the closed surface.
std::vector<LathePoint> shaderBallBaseOutline();
std::vector<LathePoint> shaderBallLowerShellOutline();
std::vector<LathePoint> shaderBallGrooveOutline();
std::vector<LathePoint> shaderBallUpperShellOutline();

} // namespace ombrix
