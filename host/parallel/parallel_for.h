// Independent pieces of work, spread over threads.
#pragma once

#include <functional>

namespace ombrix {

// Calls work(index, thread) once for each index from 0 to count - 1, in any order, on as many threads as
// asked for at most, 1 or above, and returns when all are done. thread is 0 to threads - 1, and is used by
// one call at a time. Of what the calls throw, the first comes out, and pieces that had not begun by then
// may be left out.
void parallelFor(int count, int threads, const std::function<void(int index, int thread)>& work);

} // namespace ombrix
