// Runs a probe: the whole life of a scene's plugins, with the requests between.
#pragma once

#include "host/probe/probe_file.h"
#include "host/report/json_output.h"

namespace ombrix {

struct ProbeAnswer {
    OutputJson json;         // {"frames": [...], "log": [...], "progress": [...]}
    bool allAnswered = true; // false when a request could not run, or a frame's "set" failed
};

// What a request cannot do stands in the answer and is reported in diagnostics. A "set" that would close a
// cycle ends the run after the frames before it. Lets pass what plugins throw.
ProbeAnswer runProbe(Scene& scene, const ProbeFile& probe, Diagnostics& diagnostics);

} // namespace ombrix
