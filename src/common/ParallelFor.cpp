#include "common/ParallelFor.h"

#include <algorithm>
#include <exception>
#include <vector>

namespace tarvex {

void parallelFor(int64_t count, int64_t minPerThread, const ParallelBody& body) {
    if (count <= 0) return;
    const int64_t hardware = std::max<int64_t>(1, std::thread::hardware_concurrency());
    const int64_t threads = std::min<int64_t>({hardware, 16, count / std::max<int64_t>(1, minPerThread)});
    if (threads <= 1) {
        body(0, count);
        return;
    }
    parallelForWith(count, threads, [](std::function<void()> work) { return std::thread(std::move(work)); }, body);
}

void parallelForWith(int64_t count, int64_t threads, const ThreadStarter& start, const ParallelBody& body) {
    if (count <= 0) return;
    threads = std::clamp<int64_t>(threads, 1, count);
    const int64_t chunk = (count + threads - 1) / threads;
    const int64_t ranges = (count + chunk - 1) / chunk;
    // One slot per range: a worker writes only its own.
    std::vector<std::exception_ptr> failures(static_cast<size_t>(ranges));
    auto run = [&body, &failures, chunk, count](int64_t range) {
        try {
            body(range * chunk, std::min(count, (range + 1) * chunk));
        } catch (...) {
            failures[size_t(range)] = std::current_exception();
        }
    };
    std::vector<std::thread> workers;
    workers.reserve(size_t(ranges - 1));  // no reallocation once threads run
    int64_t started = 1;
    for (; started < ranges; ++started) {
        try {
            workers.push_back(start([&run, started] { run(started); }));
        } catch (...) {
            // No thread to be had (std::system_error, or no memory for one):
            // this range and the ones after it run here.
            break;
        }
    }
    run(0);
    for (int64_t range = started; range < ranges; ++range) run(range);
    for (std::thread& w : workers) w.join();
    for (const std::exception_ptr& failure : failures)
        if (failure) std::rethrow_exception(failure);
}

}  // namespace tarvex
