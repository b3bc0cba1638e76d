// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "fuzz/one_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const discoplan::fuzz::Reader& reader = discoplan::fuzz::ReaderNamed(DISCOPLAN_READER);
  discoplan::fuzz::ReadOne(reader, {reinterpret_cast<const char*>(bytes), size});
  return 0;
}
