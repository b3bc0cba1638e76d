// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "data/condition.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace discoplan::data;
  const TableHead head{{"X", "Y", "Value (nm)", "Slot"}, true, {"a", 1}};
  try {
    const Condition condition({reinterpret_cast<const char*>(bytes), size}, head);
    Condition::Fault fault;
    condition.Holds({"1", "-2.5", "abc", ""}, fault);
  } catch (const DataError&) {
  }
  return 0;
}
