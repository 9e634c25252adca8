// A probe, as its file describes it: frames, requests, and the shading contexts to ask at.
#pragma once

#include "host/context/host_context.h"
#include "host/scene/json_values.h"
#include "host/scene/scene.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ombrix {

// What a context says of the shaded surface.
struct SurfaceSpec {
    // A surface that offers a mapping at all; {} does not.
    bool isMapped() const { return everyChannel || hasChannels; }

    std::optional<OUtils::Transform> everyChannel; // the map of all channels, where no channels are given
    bool hasChannels = false;
    std::map<int, OUtils::Transform> channels;
    std::map<std::string, int> uvSets; // names of channels
};

struct MapChannelSpec {
    int index = 0;
    OUtils::Vector value;
    float missing = 0.0f;
};

struct TypedAttributeSpec {
    bool unknown = false; // the instance cannot answer
    int type = 0;
    float value[4] = {0.0f, 0.0f, 0.0f, 0.0f};
};

struct ColorSetSpec {
    OUtils::AColor value;
    float missing = 0.0f;
};

struct HairSpec {
    OUtils::AColor color, incandescence, transparency;
    float distance = 0.0f, random = 0.0f, length = 0.0f;
};

// What a context says of the hit's instance. An absent part is an interface that is not offered.
struct InstanceSpec {
    std::optional<std::map<std::string, OUtils::AColor>> namedChannels;
    std::optional<std::map<std::string, MapChannelSpec>> mapChannels;
    std::optional<std::map<std::string, TypedAttributeSpec>> typedAttributes;
    std::optional<std::map<std::string, std::string>> textAttributes;
    std::optional<std::map<std::string, std::string>> legacyTextAttributes;
    std::optional<std::map<std::string, ColorSetSpec>> colorSets;
    std::optional<HairSpec> hair;
};

// What a context says of the hit primitive.
struct PrimitiveSpec {
    int kind = 0;
    std::vector<OUtils::Vector> points, endPoints;
    int segment = 0, firstSegment = 0;
    float fraction = 0.0f;
    std::optional<int> ownerStrand;
    std::vector<std::vector<OUtils::Vector>> strands;
    std::vector<OUtils::AColor> colors;
    int strandIndex = 0, segmentIndex = 0;
    float segmentFraction = 0.0f;
};

// A UVWValue's value in a context; what is absent is the plugin's own.
struct UVWPart {
    std::optional<bool> valid;
    std::optional<OUtils::Vector> uvw, du, dv;
    std::optional<OUtils::Matrix> columns;
};

using ContextValue =
    std::variant<float, int, OUtils::AColor, OUtils::Vector, OUtils::TraceTransform, UVWPart>;

struct ContextSpec {
    std::vector<std::pair<const PluginInstance*, ContextValue>> values;
    std::optional<std::int32_t> stamp; // absent: one is made up
    int thread = 0;
    std::uint32_t flags = 0;
    bool filtering = false;
    OUtils::Vector shadePoint, positionDiffU, positionDiffV;
    std::optional<OUtils::Vector> referencePoint; // absent: the shade point
    float filterWidths[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    double rayTime = 0.0;
    int rayDepth = 0, rayId = 1;
    std::uint32_t rayFlags = 0;
    std::shared_ptr<const SurfaceSpec> surface; // null: no surface object
    int faceIndex = 0;
    float barycentric[3] = {1.0f, 0.0f, 0.0f};
    std::shared_ptr<const InstanceSpec> instance;   // null: no instance
    std::shared_ptr<const PrimitiveSpec> primitive; // null: none that is hair
    OUtils::Vector normal{0.0f, 0.0f, 1.0f}, view{0.0f, 0.0f, -1.0f};
    int diffuseDepth = 0;
    float streakPosition = 0.0f;
    bool volumeRef = false;
};

// Why a well-formed request cannot run. An empty text is no problem.
struct RequestProblem {
    std::string path; // the place in the file, within the request
    std::string text;
};

struct RequestSpec {
    std::string path; // its place in the file
    std::string plugin, operation;
    std::optional<std::string> output;
    std::vector<ContextSpec> contexts;
    std::string name, tag, descriptor = "MaterialDescriptor"; // of "source"
    bool pixels = false;                                      // of "source"
    double time = 0.0;                                        // of the fluid ranges
    RequestProblem problem;                                   // the first one
};

struct FrameSpec {
    double frame = 1.0;
    std::optional<nlohmann::json> set;
    std::string setPath;
    std::vector<RequestSpec> requests;
};

struct ProbeFile {
    std::vector<FrameSpec> frames;
};

// Reads a probe for a scene. Well-formed requests that cannot run are no errors of the file; all else that
// is wrong is reported.
ProbeFile readProbe(const JsonPlace& file, const Scene& scene);
// One frame without requests, at the scene's frame.
ProbeFile emptyProbe(const Scene& scene);

// The parts of readProbe that stand in files of their own. problem takes what makes a request impossible.
void readContext(const JsonPlace& place, const Scene& scene, ContextSpec& context, RequestProblem& problem);
void readSurface(const JsonPlace& place, SurfaceSpec& surface);
void readInstance(const JsonPlace& place, InstanceSpec& instance);
void readPrimitive(const JsonPlace& place, PrimitiveSpec& primitive);

} // namespace ombrix
