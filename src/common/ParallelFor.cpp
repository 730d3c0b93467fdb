#include "common/ParallelFor.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace tarvex {

void parallelFor(int64_t count, int64_t minPerThread, const std::function<void(int64_t, int64_t)>& body) {
    if (count <= 0) return;
    const int64_t hardware = std::max<int64_t>(1, std::thread::hardware_concurrency());
    const int64_t threads = std::min<int64_t>({hardware, 16, count / std::max<int64_t>(1, minPerThread)});
    if (threads <= 1) {
        body(0, count);
        return;
    }
    std::vector<std::thread> workers;
    workers.reserve(size_t(threads - 1));
    const int64_t chunk = (count + threads - 1) / threads;
    for (int64_t t = 1; t < threads; ++t) {
        const int64_t begin = t * chunk, end = std::min(count, begin + chunk);
        if (begin < end) workers.emplace_back(body, begin, end);
    }
    body(0, std::min(count, chunk));
    for (std::thread& w : workers) w.join();
}

}  // namespace tarvex
