// A triangle mesh as the renderer holds it: positions, normals and mapping channels, each with corners
// of its own, so that a vertex may have several normals and coordinates.
#pragma once

#include "host/geometry/vector_math.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ombrix {

using Corners = std::array<std::int32_t, 3>;

// The corner index of a corner that holds no value of a channel.
inline constexpr std::int32_t kNoValue = -1;

// A mapping channel. Scenes find it by number or by name; several names are several channels.
struct MapChannel {
    int number = 1;
    std::string name;
    std::vector<Vector> values;
    std::vector<Corners> corners; // one a triangle: indices into values, or kNoValue
};

struct MeshData {
    std::vector<Vector> positions;
    std::vector<Corners> triangles; // counter-clockwise seen from outside
    // Unit length. Both are empty for a mesh that is shaded flat.
    std::vector<Vector> normals;
    std::vector<Corners> normalCorners;
    std::vector<MapChannel> channels; // by rising number
    Box bounds;                       // of the positions; empty for a mesh without any

    // The channel of a number; -1 means the lowest one. Null when there is none.
    const MapChannel* channel(int number) const;
    const MapChannel* channelNamed(const std::string& name) const;
};

// The largest size of a mesh: Embree's limits and 32-bit indices.
inline constexpr std::size_t kMaxMeshElements = 1u << 30;

// Adds a channel in its place; one of the same number is replaced.
void addChannel(MeshData& mesh, MapChannel channel);

// What is wrong with the mesh, in one sentence: no faces, an index out of range, a position that is not
// finite, lists that do not fit one another. Empty when nothing is.
std::string findMeshProblem(const MeshData& mesh);

// Its parts. The faces are held against the positions, the corners of a channel against both.
std::string findPositionProblem(const MeshData& mesh);
std::string findFaceProblem(const MeshData& mesh);
std::string findChannelProblem(const MeshData& mesh, const MapChannel& channel);

void computeBounds(MeshData& mesh);

// Gives every corner the angle-weighted mean of the normals of the faces around its position, of those
// that lean less than creaseAngle degrees against its own face. 0 keeps all edges hard, 180 none. The
// mesh must have no problem. Degenerate faces take no part.
void computeSmoothNormals(MeshData& mesh, float creaseAngle);

} // namespace ombrix
