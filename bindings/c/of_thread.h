// SPDX-License-Identifier: MIT
#pragma once

/// An object for each thread, told apart by its type: made when a thread first asks for it, gone
/// when the thread ends.
///
///     struct Last { std::string text; };
///     OfThread<Last>().text = "none";
///
/// As `thread_local` does it; but MinGW frees the memory of such objects before it destroys them,
/// so that on Windows the system's own slots hold them.

#include <memory>

namespace discoplan::c {

#ifdef _WIN32
/// A pointer for each thread. Raises `std::bad_alloc` where the system has no more.
class ThreadSlot {
 public:
  /// Calls `destroy` for each pointer as its thread ends.
  explicit ThreadSlot(void(__stdcall* destroy)(void*));
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;
  ~ThreadSlot();

  void* Get() const;
  void Set(void* pointer) const;

 private:
  const unsigned long index_;
};
#endif

template <class T>
T& OfThread() {
#ifdef _WIN32
  struct Slot : ThreadSlot {
    Slot() : ThreadSlot(Destroy) {}
    static void __stdcall Destroy(void* mine) { delete static_cast<T*>(mine); }
  };
  static const Slot slot;
  if (void* const mine = slot.Get()) return *static_cast<T*>(mine);
  auto made = std::make_unique<T>();
  slot.Set(made.get());
  return *made.release();
#else
  thread_local T mine;
  return mine;
#endif
}

}  // namespace discoplan::c
