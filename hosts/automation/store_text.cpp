// SPDX-License-Identifier: MIT
#include "hosts/automation/store_text.h"

namespace discoplan {

using nlohmann::json;

MemoryBag StoreFromJson(const json& store, const PlotControl& control, const ObjectNames& names) {
  if (!store.is_object()) throw RequestError("A store is an object of keys and values.");
  MemoryBag bag;
  for (const StoredProperty& row : control.Class().SettingsRead()) {
    const auto found = store.find(row.key);
    if (found == store.end()) continue;
    const Type type = row.kind == StoredKind::String ? Type::String : Type::None;
    bag.WriteProperty(row.key, row.kind, ToVariant(*found, type, names), row.default_value);
  }
  return bag;
}

json StoreToJson(PlotControl& control, const ObjectNames& names) {
  MemoryBag bag;
  control.WriteProperties(bag);
  json list = json::array();
  for (const MemoryBag::Entry& entry : bag.entries()) {
    list.push_back({{"key", entry.key},
                    {"kind", NameOf(entry.kind)},
                    {"value", ToJson(entry.value, names)},
                    {"default", ToJson(entry.default_value, names)}});
  }
  return list;
}

}  // namespace discoplan
