// The same on threads of its own, for the thread sanitizer: it does not see how TBB, which is built
// without it, hands work from thread to thread, and takes everything about it for races.
#include "host/parallel/parallel_for.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace ombrix {

void parallelFor(int count, int threads, const std::function<void(int index, int thread)>& work)
{
    std::atomic<int> next{0};
    std::mutex mutex;
    std::exception_ptr thrown;
    const auto run = [&](int thread) {
        try {
            for (int index; (index = next++) < count;)
                work(index, thread);
        } catch (...) {
            next = count;
            const std::lock_guard lock(mutex);
            if (!thrown) thrown = std::current_exception();
        }
    };
    std::vector<std::thread> running;
    for (int thread = 0; thread < std::min(threads, count); ++thread)
        running.emplace_back(run, thread);
    for (std::thread& thread : running)
        thread.join();
    if (thrown) std::rethrow_exception(thrown);
}

} // namespace ombrix
