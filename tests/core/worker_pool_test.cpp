// SPDX-License-Identifier: MIT
#include "discoplan/core/worker_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace discoplan {
namespace {

TEST(WorkerPool, DoesEachPartOnce) {
  for (const int threads : {-1, 0, 1, 2, 5}) {
    WorkerPool pool(threads);
    for (const std::int32_t parts : {0, 1, 2, 3, 100}) {
      std::vector<std::atomic<int>> done(static_cast<std::size_t>(parts));
      pool.Run(parts, [&](std::int32_t i) { ++done[static_cast<std::size_t>(i)]; });
      for (const std::atomic<int>& times : done) EXPECT_EQ(times, 1);
    }
  }
}

TEST(WorkerPool, SharesThePartsAmongItsThreads) {
  WorkerPool pool(3);
  // Each part waits for the others, so that three threads are needed for three parts.
  std::atomic<int> arrived = 0;
  std::mutex mutex;
  std::set<std::thread::id> threads;
  pool.Run(3, [&](std::int32_t) {
    ++arrived;
    while (arrived < 3) std::this_thread::yield();
    const std::lock_guard lock(mutex);
    threads.insert(std::this_thread::get_id());
  });
  EXPECT_EQ(threads.size(), 3U);
  EXPECT_TRUE(threads.contains(std::this_thread::get_id()));
}

TEST(WorkerPool, StaysOnTheCallersThreadWithoutOthers) {
  WorkerPool pool(1);
  std::set<std::thread::id> threads;
  pool.Run(9, [&](std::int32_t) { threads.insert(std::this_thread::get_id()); });
  EXPECT_EQ(threads, std::set{std::this_thread::get_id()});
}

TEST(WorkerPool, ServesManyShortRunsOneAfterTheOther) {
  WorkerPool pool(2);
  std::atomic<std::int64_t> sum = 0;
  for (int run = 0; run < 20000; ++run) {
    const std::int64_t before = sum;
    pool.Run(3, [&](std::int32_t i) { sum += i + 1; });
    ASSERT_EQ(sum, before + 6);
  }
}

TEST(WorkerPool, ServesTwoCallersAtATime) {
  WorkerPool pool(2);
  std::atomic<std::int64_t> sum = 0;
  const auto call = [&] {
    for (int run = 0; run < 2000; ++run) pool.Run(5, [&](std::int32_t i) { sum += i; });
  };
  std::thread other(call);
  call();
  other.join();
  EXPECT_EQ(sum, 2 * 2000 * 10);
}

}  // namespace
}  // namespace discoplan
