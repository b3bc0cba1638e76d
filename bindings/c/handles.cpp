// SPDX-License-Identifier: MIT
#include "bindings/c/handles.h"

#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace discoplan::c {
namespace {

struct Register {
  std::shared_mutex mutex;
  std::unordered_map<std::uintptr_t, std::shared_ptr<Held>> alive;
  std::uintptr_t last = 0;
};

/// Never destroyed: another thread may still hold handles while the program ends.
Register& TheRegister() {
  static auto& the_register = *new Register;
  return the_register;
}

const char* NameOf(Kind kind) {
  static constexpr const char* kNames[] = {"wafer", "lot", "picture", "result", "control"};
  return kNames[static_cast<int>(kind)];
}

[[noreturn]] void RefuseHandle(const std::string& text) { throw Error(DISCOPLAN_BAD_HANDLE, text); }

}  // namespace

void* Hold(std::shared_ptr<Held> object) {
  Register& all = TheRegister();
  const std::unique_lock lock(all.mutex);
  do {
    ++all.last;
  } while (all.last == 0 || all.alive.contains(all.last));  // once round, in 32 bits
  all.alive.emplace(all.last, std::move(object));
  return reinterpret_cast<void*>(all.last);
}

std::shared_ptr<Held> Find(const void* handle, Kind kind) {
  if (handle == nullptr) RefuseHandle(std::string("the ") + NameOf(kind) + "'s handle is null");
  Register& all = TheRegister();
  const std::shared_lock lock(all.mutex);
  const auto found = all.alive.find(reinterpret_cast<std::uintptr_t>(handle));
  if (found == all.alive.end()) {
    RefuseHandle(std::string("the ") + NameOf(kind) + "'s handle was freed or never given");
  }
  if (found->second->kind != kind) {
    RefuseHandle(std::string("the handle is a ") + NameOf(found->second->kind) + "'s, not a " +
                 NameOf(kind) + "'s");
  }
  return found->second;
}

void Release(const void* handle) {
  std::shared_ptr<Held> last;  // goes without the lock
  Register& all = TheRegister();
  const std::unique_lock lock(all.mutex);
  const auto found = all.alive.find(reinterpret_cast<std::uintptr_t>(handle));
  if (found == all.alive.end()) RefuseHandle("the handle was freed before or never given");
  last = std::move(found->second);
  all.alive.erase(found);
}

}  // namespace discoplan::c
