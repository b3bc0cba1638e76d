// SPDX-License-Identifier: MIT
#include "discoplan/core/worker_pool.h"

#include <chrono>

namespace discoplan {
namespace {

/// Plots come in bursts, and waking a thread takes a good part of a small lattice's time.
constexpr std::chrono::microseconds kStaysAwake{300};

}  // namespace

WorkerPool::WorkerPool(int threads) {
  try {
    for (int i = 1; i < threads; ++i) threads_.emplace_back([this] { StandBy(); });
  } catch (...) {
    Stop();
    throw;
  }
}

WorkerPool::~WorkerPool() { Stop(); }

void WorkerPool::Stop() {
  ends_ = true;
  ++calls_;
  calls_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void WorkerPool::RunParts(const Job& job, std::int32_t parts) {
  const std::unique_lock is_ours(at_work_, std::try_to_lock);
  if (!is_ours || threads_.empty()) {
    for (std::int32_t i = 0; i < parts; ++i) job.call(job.context, i);
    return;
  }
  job_ = job;
  unfinished_ = parts;
  left_ = parts;
  ++calls_;
  calls_.notify_all();
  Work();
  while (const std::int32_t unfinished = unfinished_) unfinished_.wait(unfinished);
}

void WorkerPool::StandBy() {
  std::int32_t seen = 0;
  while (!ends_) {
    const auto asleep = std::chrono::steady_clock::now() + kStaysAwake;
    while (calls_ == seen && std::chrono::steady_clock::now() < asleep) std::this_thread::yield();
    calls_.wait(seen);
    seen = calls_;
    Work();
  }
}

/// A thread that comes late finds nothing left, or parts of the next job.
void WorkerPool::Work() {
  for (std::int32_t part = --left_; part >= 0; part = --left_) {
    job_.call(job_.context, part);
    if (--unfinished_ == 0) unfinished_.notify_one();
  }
}

}  // namespace discoplan
