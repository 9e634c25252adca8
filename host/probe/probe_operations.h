// The operations that a probe can ask a plugin for.
#pragma once

#include "host/gpu/host_gpu.h"
#include "host/probe/probe_file.h"
#include "host/report/json_output.h"

#include <ombrix/renderer.h>

#include <optional>
#include <string>
#include <vector>

namespace ombrix {

// What the requests of one frame share.
struct ProbeFrame {
    const Scene& scene;
    OUtils::MapChannelNames& names;
    HostOCLData& gpuData;
    class StampSource& stamps;
};

// Makes up the stamps of contexts that give none: each once in a run, within 1,000 to 900,000, and none
// that the probe gives itself, because plugins keep what they computed by stamp.
class StampSource {
public:
    explicit StampSource(const ProbeFile& probe);
    // Throws WorkError when all are used.
    std::int32_t next();

private:
    static constexpr std::int32_t kFirst = 1000, kLast = 900000;
    std::int32_t upcoming = kFirst;
    std::vector<std::int32_t> taken; // given ones within the range, sorted
};

// The keys that an operation looks at, beside those of every request; nothing for an unknown operation.
std::optional<std::vector<std::string>> keysOfOperation(const std::string& operation);

// {"values": [...]}, or {"error": "..."} when the request cannot run.
OutputJson answerRequest(const RequestSpec& request, const ProbeFrame& frame);

} // namespace ombrix
