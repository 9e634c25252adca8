#include "host/geometry/obj_reader.h"

#include "host/geometry/obj_check.h"

#include <fmt/format.h>
#include <tiny_obj_loader.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

namespace ombrix {

namespace {

std::string named(const std::filesystem::path& file, const std::string& reason)
{
    return "cannot read mesh \"" + file.string() + "\": " + reason;
}

// The loader's own message without its trailing line ends.
std::string oneLine(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    return text.substr(0, text.find('\n'));
}

std::string readWhole(const std::filesystem::path& file)
{
    std::error_code ignored;
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw MeshFileError{named(file, std::strerror(errno)), true};
    if (std::filesystem::is_directory(file, ignored))
        throw MeshFileError{named(file, "it is a folder"), true};
    std::string text((std::istreambuf_iterator<char>(stream)), {});
    if (stream.bad()) throw MeshFileError{named(file, std::strerror(errno)), true};
    return text;
}

std::vector<Vector> vectorsOf(const std::vector<tinyobj::real_t>& numbers, std::size_t width)
{
    std::vector<Vector> result;
    result.reserve(numbers.size() / width);
    for (std::size_t i = 0; i + width <= numbers.size(); i += width)
        result.push_back({numbers[i], numbers[i + 1], width > 2 ? numbers[i + 2] : 0.0f});
    return result;
}

void appendShape(MeshData& mesh, MapChannel& uvs, bool& allNormals, const tinyobj::mesh_t& shape)
{
    for (std::size_t i = 0; i + 3 <= shape.indices.size(); i += 3) {
        Corners position, normal, uv;
        for (std::size_t c = 0; c < 3; ++c) {
            const tinyobj::index_t& index = shape.indices[i + c];
            position[c] = index.vertex_index;
            normal[c] = index.normal_index;
            uv[c] = index.texcoord_index;
            allNormals = allNormals && index.normal_index >= 0;
        }
        mesh.triangles.push_back(position);
        mesh.normalCorners.push_back(normal);
        uvs.corners.push_back(uv);
    }
}

} // namespace

MeshData readObj(const std::filesystem::path& file)
{
    const std::string text = readWhole(file);
    if (const ObjFault fault = findObjFault(text); fault.line > 0)
        throw MeshFileError{fmt::format("{}:{}: {}", file.string(), fault.line, fault.text)};

    std::istringstream stream(text);
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warnings, errors;
    // Materials are of no use here: without a reader their files are not looked for.
    const bool loaded =
        tinyobj::LoadObj(&attributes, &shapes, &materials, &warnings, &errors, &stream, nullptr,
                         /*triangulate=*/true, /*default_vcols_fallback=*/false);
    if (!loaded) throw MeshFileError{named(file, errors.empty() ? "it is no OBJ file" : oneLine(errors))};

    MeshData mesh;
    mesh.positions = vectorsOf(attributes.vertices, 3);
    mesh.normals = vectorsOf(attributes.normals, 3);
    MapChannel uvs;
    uvs.name = "map1";
    uvs.values = vectorsOf(attributes.texcoords, 2);
    bool allNormals = true;
    for (const tinyobj::shape_t& shape : shapes)
        appendShape(mesh, uvs, allNormals, shape.mesh);
    if (!allNormals || mesh.normals.empty()) {
        mesh.normals.clear();
        mesh.normalCorners.clear();
    }
    for (Vector& normal : mesh.normals)
        normal = normalizedOr(normal, Vector{0.0f, 1.0f, 0.0f});
    if (!uvs.values.empty()) addChannel(mesh, std::move(uvs));

    const std::string problem = findMeshProblem(mesh);
    if (!problem.empty()) throw MeshFileError{named(file, problem)};
    computeBounds(mesh);
    return mesh;
}

} // namespace ombrix
