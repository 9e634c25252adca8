// Mesh: triangles out of a file, a named shape, or lists. MapChannel: a further mapping channel of one.

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/parameter_values.h"
#include "host/geometry/geometry_interfaces.h"
#include "host/geometry/obj_reader.h"
#include "host/geometry/shapes.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/registry.h"

#include <fmt/format.h>

#include <optional>

namespace ombrix {

namespace {

using namespace OUtils;

constexpr float kDefaultSmoothAngle = 40.0f;

class MeshParams : public OmbrixParameterListDesc {
public:
    MeshParams()
    {
        addParamString("file", "", -1, "OBJ file to read; comes before shape and positions", kFileMetadata);
        addParamInt("shape", 0, -1, "A ready-made shape; comes before positions", shapeMetadata());
        addParamColor("positions", Color{}, 0, "The positions of the vertices, [x, y, z] each",
                      kPointMetadata);
        addParamInt(
            "faces", 0, 0,
            "The corners of the faces as indices of positions from 0, counter-clockwise seen from outside: "
            "[[0, 1, 2, 3], [4, 5, 6]], or one after another, three each or with -1 behind each face",
            kNestedEndedMetadata);
        addParamColor(
            "uvs", Color{}, 0,
            "Coordinates of map channel 1 \"map1\", [u, v] or [u, v, w] each: one for each position, or one "
            "for each corner of faces, or those that uv_faces picks",
            kCoordinateMetadata);
        addParamInt("uv_faces", 0, 0, "The corners of the faces as indices of uvs; -1: the corner has none",
                    kNestedMetadata);
        addParamFloat(
            "smooth_angle", kDefaultSmoothAngle, -1,
            "Edges between faces that lean less than this against one another are shaded smooth. A file "
            "with normals and a named shape have their own, unless this is given",
            "displayName=(Smooth angle), units=(degrees), minValue=(0), maxValue=(180)");
        addParamPlugin("map_channels", kMapChannelSourceId, 0, "Further mapping channels, MapChannel each",
                       nullptr);
    }
};

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

class Mesh : public OmbrixPlugin, public MeshGeometryInterface {
public:
    explicit Mesh(OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("file", &file);
        paramList->setParamCache("shape", &shape);
        paramList->setParamCache("smooth_angle", &smooth_angle);
        paramList->setParamCache("map_channels", &map_channels);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kMeshGeometryId) return static_cast<MeshGeometryInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    const MeshData* getMesh() override { return mesh ? &*mesh : nullptr; }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        const double time = renderer ? renderer->getFrameData().time : FrameData{}.time;
        try {
            if (!isCurrent()) build(time);
        } catch (const MeshFileError& error) {
            report(renderer, error.message);
        }
    }

private:
    // A file or a shape of earlier frames stays as it is.
    bool isCurrent() const
    {
        const bool changing = file.empty() && shape == 0;
        return mesh && !changing && builtFile == file.str() && builtShape == shape &&
               builtAngle == smooth_angle && map_channels.count() == 0;
    }

    void build(double time)
    {
        mesh.reset();
        MeshData made;
        const bool ownNormals = isWritten(*paramList, "smooth_angle");
        if (!file.empty()) {
            made = readObj(file.str());
        } else if (shape != 0) {
            made = makeShape(static_cast<Shape>(shape));
            if (made.positions.empty())
                throw MeshFileError{fmt::format("there is no shape of number {}", shape)};
        } else {
            made = fromLists(time);
        }
        if (ownNormals || made.normals.empty()) computeSmoothNormals(made, smooth_angle);
        addFurtherChannels(made);
        builtFile = file.str();
        builtShape = shape;
        builtAngle = smooth_angle;
        mesh = std::move(made);
    }

    MeshData fromLists(double time)
    {
        MeshData made;
        made.positions = readPoints(*paramList, "positions", time);
        if (made.positions.empty())
            throw MeshFileError{"there is nothing to show; give it a file, a shape, or positions and faces"};
        const FaceLists faces = separateFaces(readInts(*paramList, "faces", time));
        check(splitFaces(faces.corners, faces.sizes, "faces", &made.triangles));
        addUvs(made, faces, time);
        check(findMeshProblem(made));
        computeBounds(made);
        return made;
    }

    void addUvs(MeshData& made, const FaceLists& faces, double time)
    {
        const std::size_t cornerCount = faces.corners.size();
        MapChannel uvs;
        uvs.name = "map1";
        uvs.values = readPoints(*paramList, "uvs", time);
        if (uvs.values.empty()) return;
        std::vector<int> corners = readInts(*paramList, "uv_faces", time);
        if (corners.empty() && uvs.values.size() == made.positions.size()) {
            uvs.corners = made.triangles;
        } else {
            if (corners.empty() && uvs.values.size() == cornerCount)
                for (std::size_t i = 0; i < cornerCount; ++i)
                    corners.push_back(static_cast<int>(i));
            if (corners.empty())
                throw MeshFileError{
                    fmt::format("there are {} uvs for {} positions and {} corners; give one for "
                                "each, or uv_faces",
                                uvs.values.size(), made.positions.size(), cornerCount)};
            check(splitFaces(corners, faces.sizes, "uv_faces", &uvs.corners));
        }
        addChannel(made, std::move(uvs));
    }

    void addFurtherChannels(MeshData& made)
    {
        for (PluginBase* plugin : map_channels) {
            auto* source = findInterface<MapChannelSourceInterface>(plugin, kMapChannelSourceId);
            if (!source) {
                if (plugin) throw MeshFileError{"map_channels: takes plugins of the type MapChannel"};
                continue;
            }
            MapChannel channel;
            check(source->makeChannel(made, &channel));
            addChannel(made, std::move(channel));
        }
        check(findMeshProblem(made));
    }

    static void check(const std::string& problem)
    {
        if (!problem.empty()) throw MeshFileError{problem};
    }

    void report(OmbrixRenderer* renderer, const std::string& problem)
    {
        mesh.reset();
        const char* name = getPluginName();
        if (RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
            logger->error("mesh \"%s\": %s", name ? name : "", problem.c_str());
    }

    CharString file;
    int shape = 0;
    float smooth_angle = kDefaultSmoothAngle;
    OmbrixPluginList map_channels;

    std::optional<MeshData> mesh;
    std::string builtFile;
    int builtShape = 0;
    float builtAngle = 0.0f;
};

class MapChannelParams : public OmbrixParameterListDesc {
public:
    MapChannelParams()
    {
        addParamInt("channel", 2, -1, "The channel's number", "minValue=(0)");
        addParamString("name", "", -1, "The channel's name, by which textures can ask for it", nullptr);
        addParamColor(
            "values", Color{}, 0,
            "The values, [u, v] or [u, v, w] each: one for each position of the mesh, or those that faces "
            "picks",
            kCoordinateMetadata);
        addParamInt(
            "faces", 0, 0,
            "The corners of the mesh's triangles as indices of values, three each; -1: the corner holds "
            "no value",
            kNestedMetadata);
    }
};

class MapChannelSource : public OmbrixPlugin, public MapChannelSourceInterface {
public:
    explicit MapChannelSource(OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("channel", &channel);
        paramList->setParamCache("name", &name);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kMapChannelSourceId) return static_cast<MapChannelSourceInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        const double time = renderer ? renderer->getFrameData().time : FrameData{}.time;
        values = readPoints(*paramList, "values", time);
        faces = readInts(*paramList, "faces", time);
    }

    std::string makeChannel(const MeshData& mesh, MapChannel* result) override
    {
        result->number = channel;
        result->name = name.str();
        result->values = values;
        const char* own = getPluginName();
        const auto named = [own](const std::string& problem) {
            return problem.empty() ? problem : fmt::format("map channel \"{}\": {}", own ? own : "", problem);
        };
        if (channel < 0) return named(fmt::format("its number {} is below 0", channel));
        if (!faces.empty()) return named(splitFaces(faces, {}, "faces", &result->corners));
        result->corners = mesh.triangles;
        if (values.size() == mesh.positions.size()) return {};
        return named(fmt::format("it has {} values for {} positions; give one for each, or faces",
                                 values.size(), mesh.positions.size()));
    }

private:
    int channel = 2;
    CharString name;
    std::vector<Vector> values;
    std::vector<int> faces;
};

BuiltinDesc<Mesh, MeshParams>
    meshDesc({3300000101,
              "Mesh",
              "A triangle mesh: an OBJ file, a named shape, or lists of positions and "
              "faces [gpuSupport=(none)]",
              {}});
BuiltinDesc<MapChannelSource, MapChannelParams>
    mapChannelDesc({3300000102, "MapChannel", "A further mapping channel of a Mesh [gpuSupport=(none)]", {}});

} // namespace

} // namespace ombrix
