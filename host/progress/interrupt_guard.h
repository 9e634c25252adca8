// The clean interruption of long work.
#pragma once

namespace ombrix {

// While one lives, Ctrl-C and SIGTERM ask for a clean end instead of ending the process; a second one
// ends it at once. Make and destroy guards on one thread.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    // Whether one came since the outermost guard was made; false while there is none. Any thread may ask.
    static bool interrupted();
};

} // namespace ombrix
