// SPDX-License-Identifier: MIT
#include "discoplan/platform/property_bag.h"

#include <algorithm>
#include <array>

#include "discoplan/base/algorithms.h"

namespace discoplan {

std::string_view NameOf(StoredKind kind) {
  constexpr std::array<std::string_view, 6> kNames = {"int16",   "int32",  "double",
                                                      "boolean", "string", "object"};
  return kNames[static_cast<std::size_t>(kind)];
}

void MemoryBag::WriteProperty(std::string_view key, StoredKind kind, const Variant& value,
                              const Variant& default_value) {
  const auto entry = FindIn(entries_, key, &Entry::key);
  if (entry != entries_.end()) entries_.erase(entry);
  entries_.push_back(
      {.key = std::string(key), .kind = kind, .value = value, .default_value = default_value});
}

Variant MemoryBag::ReadProperty(std::string_view key, const Variant& default_value) const {
  const auto entry = FindIn(entries_, key, &Entry::key);
  return entry == entries_.end() ? default_value : entry->value;
}

}  // namespace discoplan
