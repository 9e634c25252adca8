#include "host/parallel/parallel_for.h"

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

namespace ombrix {

void parallelFor(int count, int threads, const std::function<void(int index, int thread)>& work)
{
    // More threads than processors are started only when they are asked for by this name.
    const tbb::global_control allowance(tbb::global_control::max_allowed_parallelism,
                                        static_cast<std::size_t>(threads));
    tbb::task_arena arena(threads);
    const auto workOn = [&](const tbb::blocked_range<int>& indices) {
        for (int index = indices.begin(); index != indices.end(); ++index)
            work(index, tbb::this_task_arena::current_thread_index());
    };
    arena.execute(
        [&] { tbb::parallel_for(tbb::blocked_range<int>(0, count, 1), workOn, tbb::simple_partitioner()); });
}

} // namespace ombrix
