// SPDX-License-Identifier: MIT
#include "bindings/c/of_thread.h"

#ifdef _WIN32
#include <windows.h>

#include <new>

namespace discoplan::c {

ThreadSlot::ThreadSlot(void(__stdcall* destroy)(void*)) : index_(FlsAlloc(destroy)) {
  if (index_ == FLS_OUT_OF_INDEXES) throw std::bad_alloc();
}

// The library may go before the threads do; this destroys what they have.
ThreadSlot::~ThreadSlot() { FlsFree(index_); }

void* ThreadSlot::Get() const { return FlsGetValue(index_); }

void ThreadSlot::Set(void* pointer) const {
  if (FlsSetValue(index_, pointer) == 0) throw std::bad_alloc();
}

}  // namespace discoplan::c
#endif
