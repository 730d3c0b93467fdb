#pragma once
// Splits a loop over [0, count) into contiguous ranges run on worker threads,
// and returns when all are done. Only for pure numeric kernels whose
// iterations share nothing they write: the program's own state stays on its
// one thread, and callers see an ordinary function call.
#include <cstdint>
#include <functional>

namespace tarvex {

// body(begin, end) for disjoint ranges covering [0, count). Runs on the
// calling thread alone when count is below minPerThread * 2 or only one
// processor is available. The result never depends on the number of threads.
void parallelFor(int64_t count, int64_t minPerThread, const std::function<void(int64_t begin, int64_t end)>& body);

}  // namespace tarvex
