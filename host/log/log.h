// The host's log: what plugins and the host itself say goes to the console, and can be recorded.
#pragma once

#include <ombrix/renderer.h>

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

// Says a line of the host itself, as the verbosity allows: "error: ...", "warning: ..." or "info: ...".
// Thread-safe.
void say(OUtils::LogLevel level, std::string_view text);

struct LogLine {
    OUtils::LogLevel level;
    std::string text;
};

// A renderer's log and progress text. Shows each line, and keeps it word for word until it is taken.
// Progress texts show as informations.
class RecordingLogger : public OUtils::RendererLogger, public OUtils::ProgressDisplay {
public:
    // With show false the lines are kept but not shown.
    explicit RecordingLogger(bool show = true) : shown(show) {}

    void log(OUtils::LogLevel level, const char* text) override;
    void setText(const char* text) override;

    // What was logged since the last call.
    std::vector<LogLine> takeLines();
    // The progress texts since the last call.
    std::vector<std::string> takeProgress();

private:
    std::mutex mutex;
    std::vector<LogLine> lines;
    std::vector<std::string> progress;
    bool shown;
};

} // namespace ombrix
