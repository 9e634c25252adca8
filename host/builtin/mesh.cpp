// Mesh: triangles out of a file, a named shape, or lists. MapChannel: a further mapping channel of one.

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/frame_values.h"
#include "host/builtin/parameter_values.h"
#include "host/errors/errors.h"
#include "host/geometry/geometry_interfaces.h"
#include "host/geometry/obj_reader.h"
#include "host/geometry/shapes.h"
#include "host/plugins/builtin_desc.h"
#include "host/scene/contents_check.h"

#include <fmt/format.h>

#include <optional>
#include <set>

namespace ombrix {

namespace {

using namespace OUtils;

// The faces of a mesh, as the scene gives them.
struct FaceLists {
    std::vector<int> corners; // without the marks of the faces' ends
    std::vector<int> sizes;   // of the faces; empty: all are triangles
};

// Takes out the -1 behind each face, if there are any.
FaceLists separateFaces(const std::vector<int>& given)
{
    FaceLists faces;
    if (std::find(given.begin(), given.end(), -1) == given.end()) {
        faces.corners = given;
        return faces;
    }
    int size = 0;
    for (const int index : given) {
        if (index != -1) {
            faces.corners.push_back(index);
            ++size;
        } else {
            faces.sizes.push_back(size);
            size = 0;
        }
    }
    if (size > 0) faces.sizes.push_back(size);
    return faces;
}

// Splits polygons into triangles: fans around the first corner of each, which suits convex faces.
std::string splitFaces(const std::vector<int>& corners, const std::vector<int>& sizes, const char* what,
                       std::vector<Corners>* triangles)
{
    triangles->clear();
    if (sizes.empty()) {
        if (corners.size() % 3 != 0)
            return fmt::format(
                "{} holds {} indices, which is no multiple of 3; write other faces than triangles in "
                "lists of their own, [[0, 1, 2, 3], [4, 5, 6]]",
                what, corners.size());
        for (std::size_t i = 0; i < corners.size(); i += 3)
            triangles->push_back({corners[i], corners[i + 1], corners[i + 2]});
        return {};
    }
    std::size_t total = 0;
    for (std::size_t face = 0; face < sizes.size(); ++face) {
        if (sizes[face] < 3)
            return fmt::format("face {} has {} corner{}; a face needs 3", face, sizes[face],
                               sizes[face] == 1 ? "" : "s");
        total += static_cast<std::size_t>(sizes[face]);
    }
    if (total != corners.size())
        return fmt::format("{} holds {} indices, but the faces have {} corners", what, corners.size(), total);
    std::size_t first = 0;
    for (const int size : sizes) {
        for (std::size_t i = 1; i + 1 < static_cast<std::size_t>(size); ++i)
            triangles->push_back({corners[first], corners[first + i], corners[first + i + 1]});
        first += static_cast<std::size_t>(size);
    }
    return {};
}

// What is wrong with a mesh, and in which parameter it shows.
struct MeshFault {
    const char* parameter;
    std::string text;
};

void check(const char* parameter, const std::string& problem)
{
    if (!problem.empty()) throw MeshFault{parameter, problem};
}

class Mesh final : public Offers<OmbrixPlugin, MeshGeometryInterface, ContentsCheckInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        3300000101,
        "Mesh",
        "A triangle mesh: an OBJ file, a named shape, or lists of positions and "
        "faces [gpuSupport=(none)]",
        {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("file", &Mesh::file, "", "OBJ file to read; comes before shape and positions", kFileMetadata);
        p("shape", &Mesh::shape, 0, "A ready-made shape; comes before positions", shapeMetadata());
        p("positions", &Mesh::positions, emptyList, "The positions of the vertices, [x, y, z] each",
          kPointMetadata);
        p("faces", &Mesh::faces, emptyList,
          "The corners of the faces as indices of positions from 0, counter-clockwise seen from outside: "
          "[[0, 1, 2, 3], [4, 5, 6]], or one after another, three each or with -1 behind each face",
          kNestedEndedMetadata);
        p("uvs", &Mesh::uvs, emptyList,
          "Coordinates of map channel 1 \"map1\", [u, v] or [u, v, w] each: one for each position, or one "
          "for each corner of faces, or those that uv_faces picks",
          kCoordinateMetadata);
        p("uv_faces", &Mesh::uv_faces, emptyList,
          "The corners of the faces as indices of uvs; -1: the corner has none", kNestedMetadata);
        p("smooth_angle", &Mesh::smooth_angle, 40.0f,
          "Edges between faces that lean less than this against one another are shaded smooth. A file "
          "with normals and a named shape have their own, unless this is given",
          "displayName=(Smooth angle), units=(degrees), minValue=(0), maxValue=(180)");
        p("map_channels", &Mesh::map_channels, emptyList, "Further mapping channels, MapChannel each");
    }

    const MeshData* getMesh() override { return mesh ? &*mesh : nullptr; }

    // Throws WorkError for a mesh that cannot be made any more: its file has changed since the scene was
    // read.
    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        const double time = frameOf(renderer).time;
        if (isCurrent(time)) return;
        mesh.reset();
        if (!findLack().empty()) {
            warn(renderer, "mesh", *this, findLack().c_str());
            return;
        }
        try {
            build(time);
        } catch (const MeshFault& fault) {
            throw WorkError{fmt::format("{}: {}", fault.parameter, fault.text)};
        }
    }

    std::optional<ContentsProblem> findProblem() override
    {
        if (!findLack().empty()) return {};
        try {
            for (const double time : changingTimes())
                assemble(time);
        } catch (const MeshFault& fault) {
            return ContentsProblem{fault.parameter, fault.text};
        }
        return {};
    }
    std::string findLack() override
    {
        if (positions.isWritten()) return {};
        for (const double time : sampleTimes({&file, &shape}))
            if (!file.at(time).empty() || shape.at(time) != 0) return {};
        return "there is nothing to show; give it a file, a shape, or positions and faces";
    }

private:
    // A file or a shape of earlier frames stays as it is.
    bool isCurrent(double time) const
    {
        const bool changing = file.at(time).empty() && shape.at(time) == 0;
        return mesh && !changing && builtFile == file.at(time) && builtShape == shape.at(time) &&
               builtAngle == smooth_angle.at(time) && map_channels.plugins().empty();
    }

    std::vector<double> changingTimes() const
    {
        const std::vector<double> own = sampleTimes({&file, &shape, &positions, &faces, &uvs, &uv_faces});
        std::set<double> all(own.begin(), own.end());
        for (PluginBase* plugin : map_channels.plugins()) {
            auto* source = find<MapChannelSourceInterface>(plugin);
            if (!source) continue;
            const std::vector<double> times = source->getSampleTimes();
            all.insert(times.begin(), times.end());
        }
        return {all.begin(), all.end()};
    }

    void build(double time)
    {
        MeshData made = assemble(time);
        builtFile = file.at(time);
        builtShape = shape.at(time);
        builtAngle = smooth_angle.at(time);
        if (smooth_angle.isWritten() || made.normals.empty()) computeSmoothNormals(made, builtAngle);
        mesh = std::move(made);
    }

    // All but normals that the scene leaves to be computed. Throws MeshFault, and WorkError for a file that
    // cannot be read.
    MeshData assemble(double time)
    {
        MeshData made;
        const int number = shape.at(time);
        if (const std::string path = file.at(time); !path.empty()) {
            made = fromFile(path);
        } else if (number != 0) {
            made = makeShape(static_cast<Shape>(number));
            if (made.positions.empty())
                throw MeshFault{"shape", fmt::format("there is no shape of number {}", number)};
        } else {
            made = fromLists(time);
        }
        addFurtherChannels(made, time);
        return made;
    }

    // The file is read once as long as the scene does not name another one.
    MeshData fromFile(const std::string& path)
    {
        if (fileMesh && readFile == path) return *fileMesh;
        fileMesh.reset();
        readFile = path;
        try {
            fileMesh = readObj(readFile);
        } catch (const MeshFileError& error) {
            if (error.unreadable) throw WorkError{error.message};
            throw MeshFault{"file", error.message};
        }
        return *fileMesh;
    }

    MeshData fromLists(double time) const
    {
        MeshData made;
        made.positions = positions.at(time);
        check("positions", findPositionProblem(made));
        const FaceLists separate = separateFaces(faces.at(time));
        check("faces", splitFaces(separate.corners, separate.sizes, "faces", &made.triangles));
        check("faces", findFaceProblem(made));
        addUvs(made, separate, time);
        computeBounds(made);
        return made;
    }

    void addUvs(MeshData& made, const FaceLists& meshFaces, double time) const
    {
        const std::size_t cornerCount = meshFaces.corners.size();
        MapChannel map1;
        map1.name = "map1";
        map1.values = uvs.at(time);
        std::vector<int> corners = uv_faces.at(time);
        if (map1.values.empty()) {
            if (!corners.empty())
                throw MeshFault{"uv_faces", "it picks out of uvs, and there are none; give uvs too"};
            return;
        }
        const bool ownFaces = !corners.empty();
        if (!ownFaces && map1.values.size() == made.positions.size()) {
            map1.corners = made.triangles;
        } else {
            if (!ownFaces && map1.values.size() == cornerCount)
                for (std::size_t i = 0; i < cornerCount; ++i)
                    corners.push_back(static_cast<int>(i));
            if (corners.empty())
                throw MeshFault{"uvs",
                                fmt::format("there are {} uvs for {} positions and {} corners; give one for "
                                            "each, or uv_faces",
                                            map1.values.size(), made.positions.size(), cornerCount)};
            check("uv_faces", splitFaces(corners, meshFaces.sizes, "uv_faces", &map1.corners));
        }
        check(ownFaces ? "uv_faces" : "uvs", findChannelProblem(made, map1));
        addChannel(made, std::move(map1));
    }

    void addFurtherChannels(MeshData& made, double time) const
    {
        for (PluginBase* plugin : map_channels.plugins()) {
            auto* source = find<MapChannelSourceInterface>(plugin);
            if (!source) throw MeshFault{"map_channels", "takes plugins of the type MapChannel"};
            MapChannel channel;
            check("map_channels", source->makeChannel(made, time, &channel));
            check("map_channels", findChannelProblem(made, channel));
            addChannel(made, std::move(channel));
        }
    }

    TimedText file;
    TimedInt shape;
    TimedPoints positions, uvs;
    TimedInts faces, uv_faces;
    TimedFloat smooth_angle;
    References<MapChannelSourceInterface> map_channels;

    std::optional<MeshData> mesh, fileMesh;
    std::string builtFile, readFile;
    int builtShape = 0;
    float builtAngle = 0.0f;
};

class MapChannelSource final
    : public Offers<OmbrixPlugin, MapChannelSourceInterface, ContentsCheckInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        3300000102, "MapChannel", "A further mapping channel of a Mesh [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("channel", &MapChannelSource::channel, 2, "The channel's number", "minValue=(0)");
        p("name", &MapChannelSource::name, "", "The channel's name, by which textures can ask for it");
        p("values", &MapChannelSource::values, emptyList,
          "The values, [u, v] or [u, v, w] each: one for each position of the mesh, or those that faces "
          "picks",
          kCoordinateMetadata);
        p("faces", &MapChannelSource::faces, emptyList,
          "The corners of the mesh's triangles as indices of values, three each; -1: the corner holds "
          "no value",
          kNestedMetadata);
    }

    std::string makeChannel(const MeshData& mesh, double time, MapChannel* result) override
    {
        result->number = channel.at(time);
        result->name = name.at(time);
        result->values = values.at(time);
        const std::vector<int> corners = faces.at(time);
        const std::size_t count = result->values.size();
        const auto named = [this](const std::string& problem) {
            return problem.empty() ? problem : fmt::format("map channel \"{}\": {}", nameOf(*this), problem);
        };
        if (!corners.empty()) return named(splitFaces(corners, {}, "faces", &result->corners));
        result->corners = mesh.triangles;
        if (count == mesh.positions.size()) return {};
        return named(fmt::format("it has {} values for {} positions; give one for each, or faces", count,
                                 mesh.positions.size()));
    }
    std::vector<double> getSampleTimes() override { return sampleTimes({&values, &faces}); }

    std::optional<ContentsProblem> findProblem() override
    {
        for (const double time : sampleTimes({&channel})) {
            const int number = channel.at(time);
            if (number < 0)
                return ContentsProblem{"channel", fmt::format("takes 0 or above, not {}", number)};
        }
        return {};
    }

private:
    TimedInt channel;
    TimedText name;
    TimedPoints values;
    TimedInts faces;
};

BuiltinDesc<Mesh> meshDesc;
BuiltinDesc<MapChannelSource> mapChannelDesc;

} // namespace

} // namespace ombrix
