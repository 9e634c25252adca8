// Frames and requests of a probe.

#include "host/probe/probe_file.h"
#include "host/probe/probe_operations.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr int kProbeVersion = 1;

const std::vector<std::string> kRequestKeys = {"plugin", "output",     "op",     "contexts", "name",
                                               "tag",    "descriptor", "pixels", "time"};

void takeText(const JsonPlace& place, const char* key, std::string& text)
{
    if (!place.has(key)) return;
    if (auto read = readText(place.at(key))) text = std::move(*read);
}

void requireText(const JsonPlace& place, const char* key, const char* meaning, std::string& text)
{
    if (place.has(key))
        takeText(place, key, text);
    else
        place.error(fmt::format("a request needs \"{}\", {}", key, meaning));
}

void readContexts(const JsonPlace& place, const Scene& scene, RequestSpec& request)
{
    if (!checkList(place, "\"contexts\"")) return;
    for (std::size_t i = 0; i < place->size(); ++i)
        readContext(place.at(i), scene, request.contexts.emplace_back(), request.problem);
}

// The keys of a request that some operations alone look at.
constexpr const char* kOperationKeys[] = {"contexts", "name", "tag", "descriptor", "pixels", "time"};

void warnOfIdleKeys(const JsonPlace& place, const std::string& operation)
{
    const std::optional<std::vector<std::string>> taken = keysOfOperation(operation);
    if (!taken) return;
    for (const char* key : kOperationKeys)
        if (place.has(key) && std::find(taken->begin(), taken->end(), key) == taken->end())
            place.at(key).warning(
                fmt::format("\"{}\" does not look at \"{}\"; leave it out", operation, key));
}

RequestSpec readRequest(const JsonPlace& place, const Scene& scene, double frame)
{
    RequestSpec request;
    request.path = place.path();
    request.time = frame;
    if (!checkObject(place, "a request", kRequestKeys) && !place->is_object()) return request;
    requireText(place, "plugin", "the name of a plugin", request.plugin);
    requireText(place, "op", "the operation to ask for", request.operation);
    warnOfIdleKeys(place, request.operation);
    if (place.has("output")) request.output = readText(place.at("output"));
    takeText(place, "name", request.name);
    takeText(place, "tag", request.tag);
    takeText(place, "descriptor", request.descriptor);
    if (place.has("pixels"))
        if (const auto pixels = readBool(place.at("pixels"))) request.pixels = *pixels;
    if (place.has("time"))
        if (const auto time = readDouble(place.at("time"))) request.time = *time;
    if (place.has("contexts"))
        readContexts(place.at("contexts"), scene, request);
    else
        request.contexts.emplace_back();
    return request;
}

void readRequests(const JsonPlace& place, const Scene& scene, FrameSpec& frame)
{
    if (!checkList(place, "\"requests\"")) return;
    for (std::size_t i = 0; i < place->size(); ++i)
        frame.requests.push_back(readRequest(place.at(i), scene, frame.frame));
}

FrameSpec readFrame(const JsonPlace& place, const Scene& scene)
{
    FrameSpec frame;
    frame.frame = scene.settings().frame;
    if (!checkObject(place, "a frame", {"frame", "set", "requests"}) && !place->is_object()) return frame;
    if (place.has("frame"))
        if (const auto time = readFiniteDouble(place.at("frame"))) frame.frame = *time;
    if (place.has("set")) {
        const JsonPlace set = place.at("set");
        frame.set = *set;
        frame.setPath = set.path();
        scene.check(*set, frame.setPath, set.reports());
    }
    if (place.has("requests")) readRequests(place.at("requests"), scene, frame);
    return frame;
}

void checkProbeVersion(const JsonPlace& file)
{
    if (!file.has("ombrix_probe")) {
        file.error("a probe needs \"ombrix_probe\": 1 at its top level");
        return;
    }
    const JsonPlace version = file.at("ombrix_probe");
    if (!version->is_number() || version->get<double>() != kProbeVersion)
        version.error(
            fmt::format("takes the format's version, {}, not {}", kProbeVersion, describeJson(*version)));
}

} // namespace

ProbeFile readProbe(const JsonPlace& file, const Scene& scene)
{
    ProbeFile probe;
    if (!file->is_object()) {
        file.error(fmt::format("a probe holds an object, {{\"ombrix_probe\": 1, \"frames\": [...]}}, not {}",
                               describeJson(*file)));
        return probe;
    }
    checkObject(file, "a probe", {"ombrix_probe", "frames", "requests"});
    checkProbeVersion(file);
    const bool frames = file.has("frames"), requests = file.has("requests");
    if (frames == requests) {
        file.error(frames ? "write \"frames\" or \"requests\", not both; \"requests\" is short for one frame"
                          : "a probe needs \"frames\", or \"requests\" for the scene's frame");
        return probe;
    }
    if (requests) {
        FrameSpec& frame = probe.frames.emplace_back();
        frame.frame = scene.settings().frame;
        readRequests(file.at("requests"), scene, frame);
        return probe;
    }
    const JsonPlace list = file.at("frames");
    if (!checkList(list, "\"frames\"")) return probe;
    for (std::size_t i = 0; i < list->size(); ++i)
        probe.frames.push_back(readFrame(list.at(i), scene));
    return probe;
}

ProbeFile emptyProbe(const Scene& scene)
{
    ProbeFile probe;
    probe.frames.emplace_back().frame = scene.settings().frame;
    return probe;
}

} // namespace ombrix
