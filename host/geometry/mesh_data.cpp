#include "host/geometry/mesh_data.h"

#include <fmt/format.h>

namespace ombrix {

const MapChannel* MeshData::channel(int number) const
{
    if (number == -1) return channels.empty() ? nullptr : &channels.front();
    for (const MapChannel& candidate : channels)
        if (candidate.number == number) return &candidate;
    return nullptr;
}

const MapChannel* MeshData::channelNamed(const std::string& name) const
{
    for (const MapChannel& candidate : channels)
        if (candidate.name == name) return &candidate;
    return nullptr;
}

void addChannel(MeshData& mesh, MapChannel channel)
{
    auto place =
        std::lower_bound(mesh.channels.begin(), mesh.channels.end(), channel,
                         [](const MapChannel& a, const MapChannel& b) { return a.number < b.number; });
    if (place != mesh.channels.end() && place->number == channel.number)
        *place = std::move(channel);
    else
        mesh.channels.insert(place, std::move(channel));
}

namespace {

// The first corner that lies outside 0 to count - 1, told in a sentence; empty for none. A corner
// without a value passes when it may be missing.
std::string findBadCorner(const std::vector<Corners>& corners, std::size_t count, bool mayBeMissing,
                          const char* what)
{
    for (std::size_t face = 0; face < corners.size(); ++face) {
        for (const std::int32_t index : corners[face]) {
            if (mayBeMissing && index == kNoValue) continue;
            if (index < 0 || static_cast<std::size_t>(index) >= count)
                return fmt::format("triangle {} refers to {} {}, but there are {} (indices count from 0)",
                                   face, what, index, count);
        }
    }
    return {};
}

std::string findBadVector(const std::vector<Vector>& vectors, const char* what)
{
    for (std::size_t i = 0; i < vectors.size(); ++i)
        if (!isFinite(vectors[i])) return fmt::format("{} {} is not a finite number", what, i);
    return {};
}

} // namespace

std::string findPositionProblem(const MeshData& mesh)
{
    if (mesh.positions.empty()) return "it has no positions";
    if (mesh.positions.size() > kMaxMeshElements) return "it has more positions than can be rendered";
    return findBadVector(mesh.positions, "position");
}

std::string findFaceProblem(const MeshData& mesh)
{
    if (mesh.triangles.empty()) return "it has no faces";
    if (mesh.triangles.size() > kMaxMeshElements) return "it has more faces than can be rendered";
    return findBadCorner(mesh.triangles, mesh.positions.size(), false, "position");
}

std::string findChannelProblem(const MeshData& mesh, const MapChannel& channel)
{
    const std::string what = fmt::format("coordinate of map channel {}", channel.number);
    std::string problem = findBadCorner(channel.corners, channel.values.size(), true, what.c_str());
    if (problem.empty() && channel.corners.size() != mesh.triangles.size())
        problem = fmt::format("map channel {} has faces for {} of {} triangles", channel.number,
                              channel.corners.size(), mesh.triangles.size());
    return problem;
}

std::string findMeshProblem(const MeshData& mesh)
{
    std::string problem = findPositionProblem(mesh);
    if (problem.empty()) problem = findFaceProblem(mesh);
    if (problem.empty()) problem = findBadVector(mesh.normals, "normal");
    if (problem.empty()) problem = findBadCorner(mesh.normalCorners, mesh.normals.size(), false, "normal");
    if (problem.empty() && !mesh.normalCorners.empty() && mesh.normalCorners.size() != mesh.triangles.size())
        problem = fmt::format("it has normals for {} of {} triangles", mesh.normalCorners.size(),
                              mesh.triangles.size());
    for (const MapChannel& channel : mesh.channels)
        if (problem.empty()) problem = findChannelProblem(mesh, channel);
    return problem;
}

void computeBounds(MeshData& mesh)
{
    mesh.bounds = Box{};
    for (const Vector& p : mesh.positions)
        extend(mesh.bounds, p);
}

namespace {

float angleBetween(const Vector& a, const Vector& b)
{
    return std::atan2(length(cross(a, b)), dot(a, b));
}

// The triangles around each position, as one list with the place where each position's part begins.
// Triangles without a normal have no say and are left out: thousands of them may lie in one point.
struct Neighbours {
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> cornerIds; // triangle * 3 + corner

    Neighbours(const MeshData& mesh, const std::vector<Vector>& faceNormals)
        : first(mesh.positions.size() + 1, 0)
    {
        const auto counts = [&](std::size_t t) { return dot(faceNormals[t], faceNormals[t]) > 0.0f; };
        for (std::size_t t = 0; t < mesh.triangles.size(); ++t)
            if (counts(t))
                for (const std::int32_t index : mesh.triangles[t])
                    ++first[static_cast<std::size_t>(index) + 1];
        for (std::size_t i = 1; i < first.size(); ++i)
            first[i] += first[i - 1];
        cornerIds.resize(first.back());
        std::vector<std::uint32_t> filled(first.begin(), first.end() - 1);
        for (std::size_t t = 0; t < mesh.triangles.size(); ++t)
            for (std::size_t c = 0; c < 3 && counts(t); ++c)
                cornerIds[filled[static_cast<std::size_t>(mesh.triangles[t][c])]++] =
                    static_cast<std::uint32_t>(t * 3 + c);
    }
};

} // namespace

void computeSmoothNormals(MeshData& mesh, float creaseAngle)
{
    const std::size_t count = mesh.triangles.size();
    std::vector<Vector> faceNormals(count);
    std::vector<float> angles(count * 3, 0.0f);
    for (std::size_t t = 0; t < count; ++t) {
        Vector p[3];
        for (std::size_t c = 0; c < 3; ++c)
            p[c] = mesh.positions[static_cast<std::size_t>(mesh.triangles[t][c])];
        faceNormals[t] = normalizedOr(cross(p[1] - p[0], p[2] - p[0]), Vector{});
        for (std::size_t c = 0; c < 3; ++c)
            angles[t * 3 + c] = angleBetween(p[(c + 1) % 3] - p[c], p[(c + 2) % 3] - p[c]);
    }

    const Neighbours around(mesh, faceNormals);
    const float leastCosine = creaseAngle >= 180.0f ? -2.0f : std::cos(radians(creaseAngle));
    mesh.normals.assign(count * 3, Vector{});
    mesh.normalCorners.resize(count);
    for (std::size_t t = 0; t < count; ++t) {
        for (std::size_t c = 0; c < 3; ++c) {
            const auto position = static_cast<std::size_t>(mesh.triangles[t][c]);
            Vector sum;
            for (std::uint32_t i = around.first[position]; i < around.first[position + 1]; ++i) {
                const std::uint32_t other = around.cornerIds[i];
                const Vector& normal = faceNormals[other / 3];
                if (other / 3 == t || dot(normal, faceNormals[t]) > leastCosine)
                    sum = sum + normal * angles[other];
            }
            mesh.normals[t * 3 + c] = normalizedOr(sum, faceNormals[t]);
            mesh.normalCorners[t][c] = static_cast<std::int32_t>(t * 3 + c);
        }
    }
}

} // namespace ombrix
