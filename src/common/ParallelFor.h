#pragma once
// Splits a loop over [0, count) into contiguous ranges run on worker threads,
// and returns when all are done. Only for pure numeric kernels whose
// iterations share nothing they write: the program's own state stays on its
// one thread, and callers see an ordinary function call.
#include <cstdint>
#include <functional>
#include <thread>

namespace tarvex {

using ParallelBody = std::function<void(int64_t begin, int64_t end)>;

// body(begin, end) for disjoint ranges covering [0, count). Runs on the
// calling thread alone when count is below minPerThread * 2 or only one
// processor is available. The result never depends on the number of threads.
void parallelFor(int64_t count, int64_t minPerThread, const ParallelBody& body);

// Starts a thread running `work`; std::thread's constructor throws
// std::system_error when the system cannot create one.
using ThreadStarter = std::function<std::thread(std::function<void()> work)>;

// The same over `threads` ranges of equal length, each but the first on a
// thread of its own started by `start`. When a thread cannot be started, its
// range and the ones after it run on the calling thread: every index is still
// done once, and the process is not ended for want of a thread. An exception
// thrown by `body` comes out of this call, after every range has ended.
void parallelForWith(int64_t count, int64_t threads, const ThreadStarter& start, const ParallelBody& body);

}  // namespace tarvex
