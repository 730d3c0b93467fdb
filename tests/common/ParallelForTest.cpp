// Splitting a loop over threads: every index exactly once, also when the
// system refuses threads or the body throws.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "common/ParallelFor.h"

namespace tarvex {
namespace {

// Starts real threads for the first `allowed` requests, then fails as the
// system does when it has no thread left to give.
struct FailingStarter {
    int allowed;
    int requests = 0;
    std::thread operator()(std::function<void()> work) {
        if (requests++ >= allowed) throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
        return std::thread(std::move(work));
    }
};

TEST(ParallelFor, EveryIndexOnceWhenThreadsCannotBeCreated) {
    const int64_t count = 1001;
    for (int allowed : {0, 1, 3, 6}) {
        FailingStarter failing{allowed};
        std::vector<std::atomic<int>> done(count);
        std::mutex mutex;
        std::set<std::thread::id> ran;
        parallelForWith(count, 7, std::ref(failing), [&](int64_t begin, int64_t end) {
            for (int64_t i = begin; i < end; ++i) ++done[size_t(i)];
            std::lock_guard<std::mutex> lock(mutex);
            ran.insert(std::this_thread::get_id());
        });
        for (int64_t i = 0; i < count; ++i) ASSERT_EQ(done[size_t(i)], 1) << allowed << " " << i;
        EXPECT_TRUE(ran.count(std::this_thread::get_id())) << allowed;
        EXPECT_LE(ran.size(), size_t(allowed) + 1) << allowed;
    }

    // The ordinary entry covers the range too.
    std::vector<std::atomic<int>> done(100000);
    parallelFor(int64_t(done.size()), 1000, [&](int64_t begin, int64_t end) {
        for (int64_t i = begin; i < end; ++i) ++done[size_t(i)];
    });
    for (size_t i = 0; i < done.size(); ++i) ASSERT_EQ(done[i], 1) << i;
}

TEST(ParallelFor, BodyExceptionReachesTheCaller) {
    // Index 900 lies in a worker's range, index 10 in the caller's.
    for (int64_t bad : {int64_t(900), int64_t(10)}) {
        FailingStarter starter{16};
        std::atomic<int64_t> done{0};
        EXPECT_THROW(parallelForWith(1000, 4, std::ref(starter),
                                     [&](int64_t begin, int64_t end) {
                                         for (int64_t i = begin; i < end; ++i) {
                                             if (i == bad) throw std::runtime_error("bad index");
                                             ++done;
                                         }
                                     }),
                     std::runtime_error)
            << bad;
        // The other ranges ran to their end before the exception came out.
        EXPECT_EQ(done, 750 + bad % 250) << bad;
    }
}

}  // namespace
}  // namespace tarvex
