// Mesh: triangles out of a file, a named shape, or lists. MapChannel: a further mapping channel of one.

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/parameter_values.h"
#include "host/errors/errors.h"
#include "host/geometry/geometry_interfaces.h"
#include "host/geometry/obj_reader.h"
#include "host/geometry/shapes.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/registry.h"
#include "host/scene/contents_check.h"

#include <fmt/format.h>

#include <optional>
#include <set>

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

// What is wrong with a mesh, and in which parameter it shows.
struct MeshFault {
    const char* parameter;
    std::string text;
};

void check(const char* parameter, const std::string& problem)
{
    if (!problem.empty()) throw MeshFault{parameter, problem};
}

class Mesh : public OmbrixPlugin, public MeshGeometryInterface, public ContentsCheckInterface {
public:
    explicit Mesh(OmbrixPluginDesc* desc) : OmbrixPlugin(desc) {}

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kMeshGeometryId) return static_cast<MeshGeometryInterface*>(this);
        if (id == kContentsCheckId) return static_cast<ContentsCheckInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    const MeshData* getMesh() override { return mesh ? &*mesh : nullptr; }

    // Throws WorkError for a mesh that cannot be made any more: its file has changed since the scene was
    // read.
    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        const double time = renderer ? renderer->getFrameData().time : FrameData{}.time;
        if (isCurrent(time)) return;
        mesh.reset();
        if (!findLack().empty()) {
            warn(renderer, findLack());
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
        if (isWritten(*paramList, "positions")) return {};
        for (const double time : sampleTimes(*paramList, {"file", "shape"}))
            if (!fileAt(time).empty() || shapeAt(time) != 0) return {};
        return "there is nothing to show; give it a file, a shape, or positions and faces";
    }

private:
    std::string fileAt(double time) { return paramList->getParam("file")->getString(-1, time); }
    int shapeAt(double time) { return paramList->getParam("shape")->getInt(-1, time); }
    float smoothAngleAt(double time) { return paramList->getParam("smooth_angle")->getFloat(-1, time); }

    // A file or a shape of earlier frames stays as it is.
    bool isCurrent(double time)
    {
        const bool changing = fileAt(time).empty() && shapeAt(time) == 0;
        return mesh && !changing && builtFile == fileAt(time) && builtShape == shapeAt(time) &&
               builtAngle == smoothAngleAt(time) && readPlugins(*paramList, "map_channels").empty();
    }

    std::vector<double> changingTimes()
    {
        const std::vector<double> own =
            sampleTimes(*paramList, {"file", "shape", "positions", "faces", "uvs", "uv_faces"});
        std::set<double> all(own.begin(), own.end());
        for (PluginBase* plugin : readPlugins(*paramList, "map_channels")) {
            auto* source = findInterface<MapChannelSourceInterface>(plugin, kMapChannelSourceId);
            if (!source) continue;
            const std::vector<double> times = source->getSampleTimes();
            all.insert(times.begin(), times.end());
        }
        return {all.begin(), all.end()};
    }

    void build(double time)
    {
        MeshData made = assemble(time);
        builtFile = fileAt(time);
        builtShape = shapeAt(time);
        builtAngle = smoothAngleAt(time);
        if (isWritten(*paramList, "smooth_angle") || made.normals.empty())
            computeSmoothNormals(made, builtAngle);
        mesh = std::move(made);
    }

    // All but normals that the scene leaves to be computed. Throws MeshFault, and WorkError for a file that
    // cannot be read.
    MeshData assemble(double time)
    {
        MeshData made;
        const int shape = shapeAt(time);
        if (const std::string file = fileAt(time); !file.empty()) {
            made = fromFile(file);
        } else if (shape != 0) {
            made = makeShape(static_cast<Shape>(shape));
            if (made.positions.empty())
                throw MeshFault{"shape", fmt::format("there is no shape of number {}", shape)};
        } else {
            made = fromLists(time);
        }
        addFurtherChannels(made, time);
        return made;
    }

    // The file is read once as long as the scene does not name another one.
    MeshData fromFile(const std::string& file)
    {
        if (fileMesh && readFile == file) return *fileMesh;
        fileMesh.reset();
        readFile = file;
        try {
            fileMesh = readObj(readFile);
        } catch (const MeshFileError& error) {
            if (error.unreadable) throw WorkError{error.message};
            throw MeshFault{"file", error.message};
        }
        return *fileMesh;
    }

    MeshData fromLists(double time)
    {
        MeshData made;
        made.positions = readPoints(*paramList, "positions", time);
        check("positions", findPositionProblem(made));
        const FaceLists faces = separateFaces(readInts(*paramList, "faces", time));
        check("faces", splitFaces(faces.corners, faces.sizes, "faces", &made.triangles));
        check("faces", findFaceProblem(made));
        addUvs(made, faces, time);
        computeBounds(made);
        return made;
    }

    void addUvs(MeshData& made, const FaceLists& faces, double time)
    {
        const std::size_t cornerCount = faces.corners.size();
        MapChannel uvs;
        uvs.name = "map1";
        uvs.values = readPoints(*paramList, "uvs", time);
        std::vector<int> corners = readInts(*paramList, "uv_faces", time);
        if (uvs.values.empty()) {
            if (!corners.empty())
                throw MeshFault{"uv_faces", "it picks out of uvs, and there are none; give uvs too"};
            return;
        }
        const bool ownFaces = !corners.empty();
        if (!ownFaces && uvs.values.size() == made.positions.size()) {
            uvs.corners = made.triangles;
        } else {
            if (!ownFaces && uvs.values.size() == cornerCount)
                for (std::size_t i = 0; i < cornerCount; ++i)
                    corners.push_back(static_cast<int>(i));
            if (corners.empty())
                throw MeshFault{"uvs",
                                fmt::format("there are {} uvs for {} positions and {} corners; give one for "
                                            "each, or uv_faces",
                                            uvs.values.size(), made.positions.size(), cornerCount)};
            check("uv_faces", splitFaces(corners, faces.sizes, "uv_faces", &uvs.corners));
        }
        check(ownFaces ? "uv_faces" : "uvs", findChannelProblem(made, uvs));
        addChannel(made, std::move(uvs));
    }

    void addFurtherChannels(MeshData& made, double time)
    {
        for (PluginBase* plugin : readPlugins(*paramList, "map_channels")) {
            auto* source = findInterface<MapChannelSourceInterface>(plugin, kMapChannelSourceId);
            if (!source) throw MeshFault{"map_channels", "takes plugins of the type MapChannel"};
            MapChannel channel;
            check("map_channels", source->makeChannel(made, time, &channel));
            check("map_channels", findChannelProblem(made, channel));
            addChannel(made, std::move(channel));
        }
    }

    const char* ownName() const { return getPluginName() ? getPluginName() : ""; }
    void warn(OmbrixRenderer* renderer, const std::string& text) const
    {
        if (RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
            logger->warning("mesh \"%s\": %s", ownName(), text.c_str());
    }

    std::optional<MeshData> mesh, fileMesh;
    std::string builtFile, readFile;
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

class MapChannelSource : public OmbrixPlugin,
                         public MapChannelSourceInterface,
                         public ContentsCheckInterface {
public:
    explicit MapChannelSource(OmbrixPluginDesc* desc) : OmbrixPlugin(desc) {}

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kMapChannelSourceId) return static_cast<MapChannelSourceInterface*>(this);
        if (id == kContentsCheckId) return static_cast<ContentsCheckInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }

    std::string makeChannel(const MeshData& mesh, double time, MapChannel* result) override
    {
        result->number = paramList->getParam("channel")->getInt(-1, time);
        result->name = paramList->getParam("name")->getString(-1, time);
        result->values = readPoints(*paramList, "values", time);
        const std::vector<int> faces = readInts(*paramList, "faces", time);
        const std::size_t count = result->values.size();
        const char* own = getPluginName();
        const auto named = [own](const std::string& problem) {
            return problem.empty() ? problem : fmt::format("map channel \"{}\": {}", own ? own : "", problem);
        };
        if (!faces.empty()) return named(splitFaces(faces, {}, "faces", &result->corners));
        result->corners = mesh.triangles;
        if (count == mesh.positions.size()) return {};
        return named(fmt::format("it has {} values for {} positions; give one for each, or faces", count,
                                 mesh.positions.size()));
    }
    std::vector<double> getSampleTimes() override { return sampleTimes(*paramList, {"values", "faces"}); }

    std::optional<ContentsProblem> findProblem() override
    {
        for (const double time : sampleTimes(*paramList, {"channel"})) {
            const int number = paramList->getParam("channel")->getInt(-1, time);
            if (number < 0)
                return ContentsProblem{"channel", fmt::format("takes 0 or above, not {}", number)};
        }
        return {};
    }
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
