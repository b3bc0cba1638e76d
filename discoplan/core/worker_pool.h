// SPDX-License-Identifier: MIT
#pragma once

/// Threads that stand by to share the interpolation of a lattice with the thread that draws. The
/// library starts none by itself: a program that wants them makes a pool and hands it to its
/// wafers or plots. One pool serves any number of them.
///
///     const auto workers = std::make_shared<WorkerPool>(2);
///     lot_wafer.UseWorkers(workers);
///
/// What is drawn doesn't depend on it, and drawing stays on the caller's thread.

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

#include "discoplan/export.h"

namespace discoplan {

class WorkerPool {
 public:
  /// `threads` counts the one that calls `Run`, so that one less is started; none for 1 or less.
  /// `std::system_error` if the system has no more threads.
  DISCOPLAN_EXPORT explicit WorkerPool(int threads);
  DISCOPLAN_EXPORT ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  /// Calls `part(i)` for each i below `parts`, on any of the threads, and returns when all are
  /// done. A part must not throw, nor call `Run` of the same pool. While the pool is at work for
  /// another thread the caller does all parts itself.
  template <class Part>
  void Run(std::int32_t parts, const Part& part) {
    const auto call = [](const void* context, std::int32_t i) {
      (*static_cast<const Part*>(context))(i);
    };
    RunParts({.call = call, .context = &part}, parts);
  }

 private:
  struct Job {
    void (*call)(const void* context, std::int32_t part) = nullptr;
    const void* context = nullptr;
  };

  DISCOPLAN_EXPORT void RunParts(const Job& job, std::int32_t parts);
  void StandBy();
  void Work();
  void Stop();

  std::mutex at_work_;
  Job job_;                                   // of the parts that are left
  std::atomic<std::int32_t> left_ = 0;        // parts that nobody has taken, below zero for none
  std::atomic<std::int32_t> unfinished_ = 0;  // parts that aren't done
  std::atomic<std::int32_t> calls_ = 0;       // grows when there is work, and at the end
  std::atomic<bool> ends_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace discoplan
