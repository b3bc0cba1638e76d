// SPDX-License-Identifier: MIT
#include "bindings/c/handles.h"

using namespace discoplan::c;

const char* discoplan_version(void) { return DISCOPLAN_C_VERSION; }

const char* discoplan_error(void) { return LastError(); }

discoplan_status discoplan_free(void* handle) {
  return Guarded([&] {
    if (handle != nullptr) Release(handle);
  });
}
