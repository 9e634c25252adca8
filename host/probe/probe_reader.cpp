// Frames and requests of a probe.

#include "host/probe/probe_file.h"
#include "host/probe/probe_operations.h"
#include "host/scene/key_table.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr int kProbeVersion = 1;

struct RequestReading {
    const Scene& scene;
    RequestSpec& request;
};

void readContexts(const JsonPlace& place, RequestReading& reading)
{
    if (!checkList(place, "\"contexts\"")) return;
    RequestSpec& request = reading.request;
    for (std::size_t i = 0; i < place->size(); ++i)
        readContext(place.at(i), reading.scene, request.contexts.emplace_back(), request.problem);
}

template <auto member, auto read>
void intoRequest(const JsonPlace& place, RequestReading& reading)
{
    into<member, read>(place, reading.request);
}

struct RequestKey : KeyReader<RequestReading> {
    bool ofAllOperations = false; // others are looked at by some alone
};

constexpr RequestKey kRequestKeys[] = {
    {{"plugin", intoRequest<&RequestSpec::plugin, readText>,
      "a request needs \"plugin\", the name of a plugin"},
     true},
    {{"op", intoRequest<&RequestSpec::operation, readText>,
      "a request needs \"op\", the operation to ask for"},
     true},
    {{"output", intoRequest<&RequestSpec::output, readText>}, true},
    {{"name", intoRequest<&RequestSpec::name, readText>}},
    {{"tag", intoRequest<&RequestSpec::tag, readText>}},
    {{"descriptor", intoRequest<&RequestSpec::descriptor, readText>}},
    {{"pixels", intoRequest<&RequestSpec::pixels, readBool>}},
    {{"time", intoRequest<&RequestSpec::time, readDouble>}},
    {{"contexts", readContexts}},
};

void warnOfIdleKeys(const JsonPlace& place, const std::string& operation)
{
    const std::optional<std::vector<std::string>> taken = keysOfOperation(operation);
    if (!taken) return;
    for (const RequestKey& known : kRequestKeys)
        if (place.has(known.key) && !known.ofAllOperations &&
            std::find(taken->begin(), taken->end(), known.key) == taken->end())
            place.at(known.key).warning(
                fmt::format("\"{}\" does not look at \"{}\"; leave it out", operation, known.key));
}

RequestSpec readRequest(const JsonPlace& place, const Scene& scene, double frame)
{
    RequestSpec request;
    request.path = place.path();
    request.time = frame;
    RequestReading reading{scene, request};
    readKeys(place, "a request", kRequestKeys, reading);
    warnOfIdleKeys(place, request.operation);
    if (!place.has("contexts")) request.contexts.emplace_back();
    return request;
}

struct FrameReading {
    const Scene& scene;
    FrameSpec& frame;
};

void readRequests(const JsonPlace& place, FrameReading& reading)
{
    if (!checkList(place, "\"requests\"")) return;
    FrameSpec& frame = reading.frame;
    for (std::size_t i = 0; i < place->size(); ++i)
        frame.requests.push_back(readRequest(place.at(i), reading.scene, frame.frame));
}

void readSet(const JsonPlace& place, FrameReading& reading)
{
    FrameSpec& frame = reading.frame;
    frame.set = *place;
    frame.setPath = place.path();
    reading.scene.check(*place, frame.setPath, place.reports());
}

constexpr KeyReader<FrameReading> kFrameKeys[] = {
    {"frame", [](const JsonPlace& place,
                 FrameReading& reading) { store(readFiniteDouble(place), reading.frame.frame); }},
    {"set", readSet},
    {"requests", readRequests}, // when their frame is known
};

struct ProbeReading {
    const Scene& scene;
    ProbeFile& probe;
};

FrameSpec& addFrame(ProbeReading& reading)
{
    FrameSpec& frame = reading.probe.frames.emplace_back();
    frame.frame = reading.scene.settings().frame;
    return frame;
}

void readFrames(const JsonPlace& place, ProbeReading& reading)
{
    if (!checkList(place, "\"frames\"")) return;
    for (std::size_t i = 0; i < place->size(); ++i) {
        FrameReading frame{reading.scene, addFrame(reading)};
        readKeys(place.at(i), "a frame", kFrameKeys, frame);
    }
}

constexpr KeyReader<ProbeReading> kProbeKeys[] = {
    {"ombrix_probe", [](const JsonPlace& place, ProbeReading&) { readVersion(place, kProbeVersion); },
     "a probe needs \"ombrix_probe\": 1 at its top level"},
    {"frames", readFrames},
    {"requests",
     [](const JsonPlace& place, ProbeReading& reading) {
         FrameReading frame{reading.scene, addFrame(reading)};
         readRequests(place, frame);
     }},
};

} // namespace

ProbeFile readProbe(const JsonPlace& file, const Scene& scene)
{
    ProbeFile probe;
    if (!file->is_object()) {
        file.error(fmt::format("a probe holds an object, {{\"ombrix_probe\": 1, \"frames\": [...]}}, not {}",
                               describeJson(*file)));
        return probe;
    }
    const bool frames = file.has("frames"), requests = file.has("requests");
    if (frames == requests)
        file.error(frames ? "write \"frames\" or \"requests\", not both; \"requests\" is short for one frame"
                          : "a probe needs \"frames\", or \"requests\" for the scene's frame");
    ProbeReading reading{scene, probe};
    readKeys(file, "a probe", kProbeKeys, reading);
    return probe;
}

ProbeFile emptyProbe(const Scene& scene)
{
    ProbeFile probe;
    probe.frames.emplace_back().frame = scene.settings().frame;
    return probe;
}

} // namespace ombrix
