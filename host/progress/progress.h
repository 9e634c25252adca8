// Progress of long work on standard error.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

namespace ombrix {

// A bar with the time left when standard error is a terminal, else a plain line every ten percent at
// most. Quiet shows nothing. Thread-safe.
class ProgressBar {
public:
    ProgressBar(std::string title, std::int64_t totalSteps);
    ~ProgressBar();
    void advance(std::int64_t steps = 1);
    // Ends the display with a closing line that tells the time taken, or how far the work came.
    void finish();

private:
    void show(std::int64_t done, bool last);

    std::string title;
    std::int64_t total;
    std::atomic<std::int64_t> done{0};
    std::mutex mutex;
    std::chrono::steady_clock::time_point start, lastShown;
    bool onTerminal;
    int shownPercent = 0; // of the last plain line, a multiple of ten
    bool finished = false;
};

// A duration for people, 0 and above: "0.4 s", "42 s", "3 min 05 s", "2 h 10 min".
std::string durationText(double seconds);

} // namespace ombrix
