// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <new>

namespace discoplan {

/// Memory kept back for the way out: where an allocation fails, it is given up before the error is
/// raised, since what is then destroyed, JSON above all, may need a little to go. One at a time in
/// a thread holds; others within its life do nothing until it is spent.
class MemoryReserve {
 public:
  MemoryReserve() : outer_(std::set_new_handler(GiveUp)) {
    if (!Kept()) Kept().reset(new (std::nothrow) char[kSize]);
  }
  ~MemoryReserve() { std::set_new_handler(outer_); }
  MemoryReserve(const MemoryReserve&) = delete;
  MemoryReserve& operator=(const MemoryReserve&) = delete;

 private:
  static constexpr std::size_t kSize = std::size_t{4} << 20;

  static std::unique_ptr<char[]>& Kept() {
    static thread_local std::unique_ptr<char[]> kept;
    return kept;
  }
  [[noreturn]] static void GiveUp() {
    Kept().reset();
    throw std::bad_alloc();
  }

  const std::new_handler outer_;
};

}  // namespace discoplan
